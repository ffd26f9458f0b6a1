#include "salvage/payloads/dv_cuts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "platform/bytes.h"
#include "tests/salvage/payloads/foreign_bytes.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using salvage::dvCuts;

constexpr std::size_t kBlock = 80;

Bytes dvPicture(unsigned sequences) {
  std::mt19937 random(4);
  Bytes bytes;
  const auto block = [&](unsigned section, unsigned sequence, unsigned number) {
    bytes.push_back(static_cast<std::byte>(section << 5U | 0x16U));
    bytes.push_back(static_cast<std::byte>(sequence << 4U | 7U));
    bytes.push_back(static_cast<std::byte>(number));
    for (std::size_t i = 3; i < kBlock; ++i) bytes.push_back(static_cast<std::byte>(random() % 256));
  };
  for (unsigned sequence = 0; sequence < sequences; ++sequence) {
    block(0, sequence, 0);
    for (unsigned i = 0; i < 2; ++i) block(1, sequence, i);
    for (unsigned i = 0; i < 3; ++i) block(2, sequence, i);
    for (unsigned i = 0; i < 135; ++i) {
      if (i % 15 == 0) block(3, sequence, i / 15);
      block(4, sequence, i);
    }
  }
  return bytes;
}

void expectAround(const Bytes& picture, std::size_t cut) {
  const auto cuts = dvCuts(withForeign(picture, cut, 3333), static_cast<std::uint32_t>(picture.size()));
  EXPECT_EQ(std::ranges::count(cuts, cut), 1) << cut;
  EXPECT_LE(cuts.size(), 2 * kBlock);
}

TEST(DvCutsTest, TheRightCutIsAmongThoseOfTheBrokenBlock) {
  for (const unsigned sequences : {10U, 12U}) {
    const Bytes picture = dvPicture(sequences);
    for (const std::size_t cut : {3U, 80U, 81U, 83U, 12'345U, 60'001U, 60'002U}) expectAround(picture, cut);
    expectAround(picture, picture.size() - 40);
    expectAround(picture, picture.size());
  }
}

TEST(DvCutsTest, TwoChannelsCountTheirSequencesAnew) {
  Bytes both = dvPicture(12);
  const Bytes other = dvPicture(12);
  both.insert(both.end(), other.begin(), other.end());
  expectAround(both, 200'000);
}

TEST(DvCutsTest, LastBlockGoesOnToItsEnd) {
  const Bytes picture = dvPicture(12);
  const auto cuts = dvCuts(withForeign(picture, 1000, 801), static_cast<std::uint32_t>(picture.size()));
  ASSERT_FALSE(cuts.empty());
  EXPECT_EQ(cuts.front(), 1042U);  // the name of the next block may be torn
  EXPECT_EQ(cuts.back(), 960U);
}

TEST(DvCutsTest, BlocksThatAreOutOfPlaceElsewhereTooLeaveNone) {
  const Bytes picture = dvPicture(12);
  Bytes bytes = withForeign(picture, 60'000, 3333);
  bytes[100 * kBlock] ^= std::byte{0x40};
  EXPECT_TRUE(dvCuts(bytes, static_cast<std::uint32_t>(picture.size())).empty());
}

TEST(DvCutsTest, OtherSizesHaveNone) {
  const Bytes picture = dvPicture(12);
  EXPECT_TRUE(dvCuts(picture, static_cast<std::uint32_t>(picture.size() - 1)).empty());
  EXPECT_TRUE(dvCuts(picture, 0).empty());
  EXPECT_TRUE(dvCuts(Bytes(500), 400).empty());
}

}  // namespace
}  // namespace zelvo::tests
