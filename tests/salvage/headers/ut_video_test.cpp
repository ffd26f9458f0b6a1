#include "salvage/headers/ut_video.h"

#include <gtest/gtest.h>

#include <array>
#include <span>

#include "tests/salvage/headers/ut_pictures.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using salvage::CountRange;

TEST(UtVideo, CodesTellHowManySamplesThePlanesHave) {
  for (const unsigned slices : {1U, 4U, 256U}) {
    const auto picture = salvage::utVideoPicture(utPicture({76800, 19200, 19200}, slices, slices));
    ASSERT_TRUE(picture) << slices;
    EXPECT_EQ(picture->slices, slices);
    ASSERT_EQ(picture->samples.size(), 3U);
    const std::array<std::uint64_t, 3> true_{76800 / slices * slices, 19200 / slices * slices, 19200 / slices * slices};
    for (std::size_t i = 0; i < 3; ++i) {
      EXPECT_LE(picture->samples[i].least, true_[i]);
      EXPECT_GE(picture->samples[i].most, true_[i]);
      // Fewer than 32 zeros fill a slice up, and fifteen are a sample. Behind its last code may come one of these, too.
      EXPECT_LE(picture->samples[i].most - picture->samples[i].least, 3U * slices);
    }
  }
}

TEST(UtVideo, PlaneOfOneValueMayHaveAnyNumberOfSamples) {
  std::mt19937 random(1);
  Bytes picture = utPlane(4096, 2, random);
  for (int i = 0; i < 2; ++i) {
    const Bytes grey = utPlane(1024, 2, random, true);
    picture.insert(picture.end(), grey.begin(), grey.end());
  }
  appendNumber(picture, 0);
  const auto found = salvage::utVideoPicture(picture);
  ASSERT_TRUE(found);
  EXPECT_EQ(found->samples[1], (CountRange{0, salvage::kMaxUtVideoSamples}));
}

TEST(UtVideo, WhatIsNotWholeOrNotPackedSoIsNone) {
  const Bytes good = utPicture({4096, 1024, 1024}, 1, 9);
  ASSERT_TRUE(salvage::utVideoPicture(good));
  EXPECT_TRUE(salvage::beginsUtVideo(std::span(good).first(300), good.size()));
  for (const std::size_t size : {std::size_t{0}, std::size_t{100}, std::size_t{258}, good.size() / 2, good.size() - 4})
    EXPECT_FALSE(salvage::utVideoPicture(std::span(good).first(size))) << size;
  // Lengths of no full set, and of more than one.
  for (const unsigned length : {2U, 0U, 33U}) {
    Bytes bad = good;
    bad[0] = static_cast<std::byte>(length);
    EXPECT_FALSE(salvage::utVideoPicture(bad));
    EXPECT_FALSE(salvage::beginsUtVideo(std::span(bad).first(300), bad.size()));
  }
  // An end that is not one.
  for (const unsigned end : {2U, 0xfcU}) {
    Bytes bad = good;
    bad[256] = bad[256] ^ static_cast<std::byte>(end);
    EXPECT_FALSE(salvage::utVideoPicture(bad));
  }
  Bytes two = utPicture({4096, 1024}, 1, 9);
  EXPECT_FALSE(salvage::utVideoPicture(two));
  EXPECT_FALSE(salvage::utVideoPicture(utPicture({64, 64, 64, 64, 64}, 1, 9)));
  EXPECT_TRUE(salvage::utVideoPicture(utPicture({64, 64, 64, 64}, 1, 9)));
}

TEST(UtVideo, SliceIsFilledUpWithZerosAlone) {
  Bytes picture = utPicture({4096, 1024, 1024}, 1, 9);
  // The last plane's last word: what fills it up is no code any more.
  std::fill_n(picture.end() - 8, 4, std::byte{0});
  picture[picture.size() - 7] = std::byte{1};
  const auto filled = salvage::utVideoPicture(picture);
  picture[picture.size() - 8] = std::byte{4};  // two zeros at the end
  ASSERT_TRUE(filled);
  const auto changed = salvage::utVideoPicture(picture);
  ASSERT_TRUE(changed);
  EXPECT_NE(changed->samples[2], filled->samples[2]);
}

TEST(UtVideo, MoreSamplesThanAnyPictureHasAreNone) {
  std::mt19937 random(1);
  Bytes plane(256, std::byte{0xff});
  plane[0] = plane[1] = std::byte{1};
  appendNumber(plane, 1U << 20U);
  plane.resize(plane.size() + (1U << 20U), std::byte{0x55});
  Bytes picture;
  for (int i = 0; i < 3; ++i) picture.insert(picture.end(), plane.begin(), plane.end());
  appendNumber(picture, 0);
  EXPECT_FALSE(salvage::utVideoPicture(picture));
}

TEST(UtVideo, NoiseIsNone) {
  std::mt19937 random(3);
  for (int round = 0; round < 200; ++round) {
    Bytes noise(2000);
    for (std::byte& byte : noise) byte = static_cast<std::byte>(round % 2 == 0 ? random() : random() % 16);
    EXPECT_FALSE(salvage::beginsUtVideo(noise, noise.size()));
    EXPECT_FALSE(salvage::utVideoPicture(noise));
  }
}

TEST(UtVideo, AnyByteMayBeWrong) {
  const Bytes good = utPicture({512, 128, 128}, 2, 5);
  std::mt19937 random(7);
  for (int round = 0; round < 3000; ++round) {
    Bytes bad = good;
    for (int i = 0; i < 4; ++i) bad[random() % bad.size()] = static_cast<std::byte>(random());
    bad.resize(random() % 4 == 0 ? random() % bad.size() : bad.size());
    const auto picture = salvage::utVideoPicture(bad);
    if (picture) {
      EXPECT_GE(picture->samples.size(), 3U);
    }
  }
}

}  // namespace
}  // namespace zelvo::tests
