#include "salvage/payloads/picture_distance.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zelvo::tests {
namespace {

using platform::Bytes;
using platform::PicturePlane;
using salvage::pictureDistance;
using salvage::stripDistances;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<PicturePlane> plain(std::uint32_t width, std::uint32_t height, std::byte value) {
  return {{width, height, Bytes(std::size_t{width} * height, value)}};
}

TEST(PictureDistance, IsThatOfTheSamples) {
  EXPECT_EQ(pictureDistance(plain(8, 8, std::byte{10}), plain(8, 8, std::byte{10})), 0U);
  EXPECT_EQ(pictureDistance(plain(8, 8, std::byte{10}), plain(8, 8, std::byte{13})), 3U * 64);
}

TEST(PictureDistance, BordersOfBlocksCountMore) {
  const auto grey = plain(16, 8, std::byte{10});
  auto atBorder = grey;
  auto within = grey;
  for (std::size_t y = 0; y < 8; ++y) {
    for (std::size_t x = 8; x < 16; ++x) atBorder.front().samples[y * 16 + x] = std::byte{20};
    for (std::size_t x = 4; x < 12; ++x) within.front().samples[y * 16 + x] = std::byte{20};
  }
  EXPECT_EQ(pictureDistance(within, grey), 640U);
  EXPECT_EQ(pictureDistance(atBorder, grey), 640U + 80 / 2);
}

TEST(PictureDistance, PicturesOfOtherSizesCannotBeCompared) {
  EXPECT_EQ(pictureDistance(plain(8, 8, std::byte{0}), plain(8, 16, std::byte{0})), salvage::kNoDistance);
  EXPECT_EQ(pictureDistance({}, {}), salvage::kNoDistance);
  EXPECT_THAT(stripDistances(plain(8, 8, std::byte{0}), plain(16, 8, std::byte{0})), IsEmpty());
  EXPECT_THAT(stripDistances({}, plain(16, 8, std::byte{0})), IsEmpty());
}

TEST(PictureDistance, StripsAreOfSixteenRows) {
  const auto one = plain(8, 40, std::byte{50});
  auto other = one;
  other.front().samples[16 * 8] = std::byte{50 + 128};
  other.front().samples[39 * 8] = std::byte{50 + 64};
  EXPECT_THAT(stripDistances(one, other), ElementsAre(0U, 100U, 100U));
}

}  // namespace
}  // namespace zelvo::tests
