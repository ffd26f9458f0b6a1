// Time codes of groups of MPEG-1 and MPEG-2.
#include "salvage/payloads/picture_group.h"

#include <gtest/gtest.h>

#include <optional>

#include "salvage/payloads/picture_clock.h"
#include "tests/salvage/codec_films.h"
#include "tests/salvage/picture_groups.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using salvage::numberByGroup;

TEST(PictureGroup, TimeCodeTellsTheNumberHoweverPicturesAreReordered) {
  EXPECT_EQ(numberByGroup(groupPicture({0, 0, 0, 0}, 0), 25), 0U);
  for (const std::uint32_t reference : {0U, 2U})
    EXPECT_EQ(numberByGroup(groupPicture({1, 2, 3, 4}, reference), 25), (62U * 60 + 3) * 25 + 4);
}

TEST(PictureGroup, LeftOutNumbersAreNoPictures) {
  constexpr bool kDrops = true;
  EXPECT_EQ(numberByGroup(groupPicture({0, 1, 0, 2}, 0, kDrops), 30), 1800U);
  EXPECT_EQ(numberByGroup(groupPicture({0, 10, 0, 0}, 0, kDrops), 30), 17'982U);
}

TEST(PictureGroup, WhatIsNoTimeCodeTellsNothing) {
  for (const GroupTime& time : {GroupTime{24, 0, 0, 0}, GroupTime{0, 60, 0, 0}, GroupTime{0, 0, 60, 0},
                                GroupTime{0, 0, 0, 25}, GroupTime{0, 0, 0, 0, false}})
    EXPECT_EQ(numberByGroup(groupPicture(time, 0), 25), std::nullopt);
  EXPECT_NE(numberByGroup(groupPicture({23, 59, 59, 24}, 0), 25), std::nullopt);
}

TEST(PictureGroup, PictureWithoutAGroupInFrontOfItTellsNothing) {
  const Bytes whole = groupPicture({0, 0, 1, 0}, 5);
  const std::span<const std::byte> picture = std::span(whole).subspan(8);
  EXPECT_EQ(numberByGroup(picture, 25), std::nullopt);
  Bytes behind(picture.begin(), picture.end());
  behind.insert(behind.end(), whole.begin(), whole.end());
  EXPECT_EQ(numberByGroup(behind, 25), std::nullopt);
  for (std::size_t size = 0; size < 8; ++size)
    EXPECT_EQ(numberByGroup(std::span(whole).first(size), 25), std::nullopt) << size;
}

TEST(PictureGroup, ClockIsReadOnceAGroupWasMet) {
  salvage::PictureClock clock(pictureStream("MPG2"));
  EXPECT_TRUE(clock.isOfGroups());
  EXPECT_FALSE(clock.isKnown());
  EXPECT_EQ(clock.ticks(groupPicture({0, 0, 1, 0}, 5)), std::nullopt);
  clock.learn(groupPicture({0, 0, 1, 0}, 5));
  ASSERT_TRUE(clock.isKnown());
  EXPECT_EQ(clock.ticksPerPicture(), 1.0);
  EXPECT_EQ(clock.turn(), 24U * 3600 * 25);
  EXPECT_EQ(clock.ticks(groupPicture({0, 0, 1, 0}, 5)), 25U);
}

}  // namespace
}  // namespace zelvo::tests
