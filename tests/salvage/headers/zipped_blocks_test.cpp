#include "salvage/headers/zipped_blocks.h"

#include <gtest/gtest.h>

#include "platform/bytes.h"
#include "tests/salvage/codec_films.h"
#include "tests/support/byte_text.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;

/// Of 32 bits a pixel, blocks of 16, zipped; as the end of each picture is.
Bytes key() { return numbered({1, 0, 1, 1, 8, 16, 16, 0x78, 0x9c, 1, 2, 3, 0, 0, 0xff, 0xff}); }

TEST(ZippedBlocks, HeadOfAKeyTellsBitsAPixel) {
  for (const auto& [format, bits] : {std::pair{4U, 8}, {5U, 16}, {6U, 16}, {7U, 24}, {8U, 32}}) {
    Bytes payload = key();
    payload[4] = static_cast<std::byte>(format);
    ASSERT_TRUE(salvage::zippedKey(payload));
    EXPECT_EQ(salvage::zippedKey(payload)->bits, bits);
  }
}

TEST(ZippedBlocks, EveryFieldOfTheHeadIsAsked) {
  EXPECT_TRUE(salvage::zippedKey(key()));
  const std::vector<std::pair<std::size_t, unsigned>> wrong{{0, 0}, {0, 5},    {1, 1},    {2, 2}, {3, 0},
                                                            {3, 2}, {4, 3},    {4, 9},    {5, 0}, {5, 65},
                                                            {6, 0}, {6, 0xff}, {7, 0x79}, {8, 0}};
  for (const auto& [at, value] : wrong) {
    Bytes payload = key();
    payload[at] = static_cast<std::byte>(value);
    EXPECT_FALSE(salvage::zippedKey(payload)) << at << " " << value;
  }
  const Bytes whole = key();
  for (std::size_t size = 0; size < 9; ++size) EXPECT_FALSE(salvage::zippedKey(std::span(whole).first(size)));
}

TEST(ZippedBlocks, OthersHaveOneFlagAndTheSameEnd) {
  const auto may = [](const Bytes& payload) { return salvage::mayBeZipped(payload, payload.size()); };
  EXPECT_TRUE(may(key()));
  EXPECT_TRUE(may(numbered({0, 9, 9, 0, 0, 0xff, 0xff})));
  EXPECT_TRUE(may(numbered({2, 9, 9, 0, 0, 0xff, 0xff})));
  EXPECT_FALSE(may(numbered({4, 9, 9, 0, 0, 0xff, 0xff})));
  EXPECT_FALSE(may(numbered({1, 9, 9, 0, 0, 0xff, 0xff})));
  EXPECT_FALSE(may(numbered({0, 9, 9, 0, 0, 0xff, 0xfe})));
  EXPECT_FALSE(may(numbered({0, 0, 0xff})));
  // Of the front of a longer one the end is not there.
  EXPECT_TRUE(salvage::mayBeZipped(numbered({0, 9, 9, 9, 9}), 100));
}

}  // namespace
}  // namespace zelvo::tests
