#include "salvage/payloads/ms_video.h"

#include <gtest/gtest.h>

#include "tests/salvage/codec_films.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using salvage::msVideoCount;
using salvage::msVideoSize;
using salvage::PictureSize;

void put(Bytes& bytes, std::initializer_list<unsigned> values) {
  const Bytes added = numbered(values);
  bytes.insert(bytes.end(), added.begin(), added.end());
}

TEST(MsVideo, EachInstructionCounts) {
  Bytes bytes;
  put(bytes, {7, 0x81});                          // one colour
  put(bytes, {1, 0x7f, 2, 3});                    // two
  put(bytes, {1, 0x90, 2, 3, 4, 5, 6, 7, 8, 9});  // eight
  put(bytes, {4, 0x85});                          // 260 blocks are skipped
  const auto count = msVideoCount(bytes, 8);
  ASSERT_TRUE(count);
  EXPECT_EQ(count->blocks, 263U);
  EXPECT_EQ(count->skipped, 260U);
}

TEST(MsVideo, ColoursOfSixteenBitsTellHowManyThereAre) {
  Bytes bytes;
  put(bytes, {1, 0x7f, 2, 0x03, 4, 0x05});
  put(bytes, {1, 0x7f, 2, 0x83, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17});
  put(bytes, {0x11, 0x92});
  put(bytes, {0, 0});
  const auto count = msVideoCount(bytes, 16);
  ASSERT_TRUE(count);
  EXPECT_EQ(count->blocks, 3U);
}

TEST(MsVideo, PayloadMustEndWithItsLastInstruction) {
  const Bytes whole = msVideoPicture(8, 8);
  EXPECT_TRUE(msVideoCount(whole, 8));
  Bytes longer = whole;
  put(longer, {7, 0x81});
  EXPECT_FALSE(msVideoCount(longer, 8));
  for (std::size_t size : {whole.size() - 1, whole.size() - 3, std::size_t{3}, std::size_t{1}})
    EXPECT_FALSE(msVideoCount(std::span(whole).first(size), 8)) << size;
  EXPECT_FALSE(msVideoCount({}, 8));
}

TEST(MsVideo, PictureOfEndlessSkipsIsNone) {
  Bytes bytes;
  for (int i = 0; i < 2000; ++i) put(bytes, {0xff, 0x87});
  EXPECT_FALSE(msVideoCount(bytes, 8));
}

TEST(MsVideo, WidthIsWhereBlocksGoOnBelow) {
  EXPECT_EQ(msVideoSize(msVideoPicture(40, 30), 8, std::nullopt), (PictureSize{160, 120}));
  EXPECT_EQ(msVideoSize(msVideoPicture(24, 50), 8, std::nullopt), (PictureSize{96, 200}));
}

TEST(MsVideo, KnownSizeThatFitsIsTaken) {
  const Bytes bytes = msVideoPicture(40, 30);
  EXPECT_EQ(msVideoSize(bytes, 8, PictureSize{240, 80}), (PictureSize{240, 80}));
  EXPECT_EQ(msVideoSize(bytes, 8, PictureSize{320, 240}), (PictureSize{160, 120}));
}

TEST(MsVideo, SizeThatNothingTellsIsNone) {
  Bytes flat;
  for (int i = 0; i < 1200; ++i) put(flat, {9, 0x80});
  EXPECT_EQ(msVideoSize(flat, 8, std::nullopt), std::nullopt);
}

}  // namespace
}  // namespace zelvo::tests
