// Silent payloads.
#include "salvage/payloads/silence.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "salvage/payloads/sound_frame.h"
#include "tests/salvage/codec_films.h"
#include "tests/support/byte_text.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using salvage::Silence;

Bytes filled(const Silence& silence, std::size_t size) {
  Bytes bytes(size, std::byte{0x77});
  silence.fill(bytes);
  return bytes;
}

TEST(Silence, SamplesRestAtTheirMiddle) {
  EXPECT_EQ(filled(Silence(soundStream(1, 2, 44100, 4, 16, 4)), 5), Bytes(5, std::byte{0}));
  EXPECT_EQ(filled(Silence(soundStream(1, 1, 11025, 1, 8, 1)), 5), Bytes(5, std::byte{0x80}));
  EXPECT_EQ(filled(Silence(soundStream(6, 1, 8000, 1, 8, 1)), 2), Bytes(2, std::byte{0xd5}));
  EXPECT_EQ(filled(Silence(soundStream(7, 1, 8000, 1, 8, 1)), 2), Bytes(2, std::byte{0xff}));
}

TEST(Silence, Mp3HasFramesLikeTheLastGoodOneWithoutAChecksum) {
  Silence silence(soundStream(0x55, 2, 44100, 1, 0, 0));
  silence.learn(numbered({0xff, 0xfa, 0x90, 0x00, 1, 2, 3, 4}));
  const Bytes bytes = filled(silence, 2 * 417);
  EXPECT_EQ(hexAt(bytes, 0, 6), "ff fb 90 00 00 00");
  EXPECT_EQ(hexAt(bytes, 417, 6), "ff fb 90 00 00 00");
}

TEST(Silence, Mp3OfAnotherLengthTakesAnotherBitRate) {
  Silence silence(soundStream(0x55, 2, 44100, 1, 0, 0));
  silence.learn(numbered({0xff, 0xfb, 0x90, 0x40, 1, 2, 3, 4}));
  for (const std::size_t size : {418U, 626U, 104U}) {
    const Bytes bytes = filled(silence, size);
    const auto frame = salvage::mpegAudioFrame(bytes);
    ASSERT_TRUE(frame.has_value());
    EXPECT_EQ(frame->size, size);
  }
}

TEST(Silence, Mp3ThatWasNeverSeenIsZero) {
  EXPECT_EQ(filled(Silence(soundStream(0x55, 2, 44100, 1, 0, 0)), 9), Bytes(9, std::byte{0}));
}

TEST(Silence, ASizeThatHoldsNoFrameIsZero) {
  Silence silence(soundStream(0x55, 2, 44100, 1, 0, 0));
  silence.learn(numbered({0xff, 0xfb, 0x90, 0x40, 1, 2, 3, 4}));
  EXPECT_EQ(filled(silence, 100), Bytes(100, std::byte{0}));
}

TEST(Silence, AacIsAFrameWithoutBands) {
  EXPECT_EQ(hexOf(filled(Silence(soundStream(0xff, 1, 44100, 1, 0, 0)), 4)), "00 00 00 07");
  EXPECT_EQ(hexOf(filled(Silence(soundStream(0xff, 2, 44100, 1, 0, 0)), 7)), "20 00 00 00 00 00 0e");
}

TEST(Silence, SizesComeInWholeBlocksAndFrames) {
  EXPECT_EQ(Silence(soundStream(1, 2, 44100, 4, 16, 4)).sizeFor(0.04), 7056U);
  EXPECT_EQ(Silence(soundStream(1, 2, 44100, 4, 16, 4)).sizeFor(0.00001), 0U);
  Silence silence(soundStream(0x55, 2, 44100, 1, 0, 0));
  EXPECT_EQ(silence.sizeFor(0.026), 0U);
  silence.learn(numbered({0xff, 0xfb, 0x90, 0x40, 1, 2, 3, 4}));
  EXPECT_EQ(silence.sizeFor(0.026), 417U);
  EXPECT_EQ(silence.sizeFor(0.053), 834U);
  EXPECT_EQ(Silence(soundStream(0x160, 2, 44100, 1, 0, 0)).sizeFor(1), 0U);
}

}  // namespace
}  // namespace zelvo::tests
