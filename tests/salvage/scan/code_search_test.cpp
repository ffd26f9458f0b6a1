// Where codes may begin, many bytes at a time as byte by byte.
#include "salvage/scan/code_search.h"

#include <gtest/gtest.h>

#include <random>
#include <string_view>

#include "tests/support/avi_builder.h"

namespace zelvo::tests {
namespace {

using Positions = std::vector<std::uint32_t>;

Positions found(platform::Bytes bytes, std::size_t positions) {
  bytes.resize(std::max(bytes.size(), positions) + salvage::kSearchMargin);
  Positions fast;
  Positions literal;
  salvage::findCodeBeginnings(bytes, positions, fast);
  salvage::findCodeBeginningsPortably(bytes, positions, literal);
  EXPECT_EQ(fast, literal);
  return fast;
}

TEST(CodeSearch, FindsEachCodeAtEveryPositionOfAVector) {
  for (const std::string_view code : {"00dc", "99wb", "07__", "LIST", "RIFF", "JUNK", "idx1", "ix04"}) {
    for (std::size_t at = 0; at < 90; ++at) {
      platform::Bytes bytes(96);
      overwrite(bytes, at, code.substr(0, 2));
      EXPECT_EQ(found(bytes, 80), at < 80 ? Positions{static_cast<std::uint32_t>(at)} : Positions{}) << code << at;
    }
  }
}

TEST(CodeSearch, NeighboursOfTheAsciiDigitsAreNoDigits) {
  platform::Bytes bytes;
  appendText(bytes, "/0 0/ :9 9: 5a a5 LU JI RU id ix iI Ix");
  EXPECT_EQ(found(bytes, bytes.size()), (Positions{27, 30}));
}

TEST(CodeSearch, NothingIsFoundBehindTheLastPosition) {
  platform::Bytes bytes;
  appendText(bytes, "..00d0");
  EXPECT_EQ(found(bytes, 3), (Positions{2}));
  EXPECT_EQ(found(bytes, 0), Positions{});
}

TEST(CodeSearch, LastTwoDigitsOfARowBeginACode) {
  platform::Bytes bytes;
  appendText(bytes, "12345dc 00000000000000000000000000000000wb ix00 00");
  EXPECT_EQ(found(bytes, bytes.size()), (Positions{3, 38, 43, 45, 48}));
}

TEST(CodeSearch, AgreesWithTheLiteralSearchOnAnyBytes) {
  constexpr std::string_view kLikely = "0123456789LRJiIUdx/:";
  std::mt19937 random(7);
  for (int round = 0; round < 200; ++round) {
    platform::Bytes bytes(random() % 300 + 1);
    for (std::byte& byte : bytes)
      byte = static_cast<std::byte>(round % 2 == 0 ? random()
                                                   : static_cast<unsigned long>(kLikely[random() % kLikely.size()]));
    static_cast<void>(found(bytes, bytes.size()));
  }
}

}  // namespace
}  // namespace zelvo::tests
