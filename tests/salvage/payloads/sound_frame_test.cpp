// Headers of compressed sound frames.
#include "salvage/payloads/sound_frame.h"

#include <gtest/gtest.h>

#include "tests/salvage/codec_films.h"

namespace zelvo::tests {
namespace {

using salvage::Codec;
using salvage::soundFrame;

TEST(SoundFrame, Mp3TellsItsLengthWithAndWithoutPadding) {
  const auto plain = soundFrame(Codec::mp3, numbered({0xff, 0xfb, 0x90, 0x00}));
  ASSERT_TRUE(plain.has_value());
  EXPECT_EQ(plain->size, 417U);
  EXPECT_EQ(plain->samples, 1152U);
  EXPECT_EQ(plain->rate, 44100U);
  EXPECT_EQ(plain->channels, 2);
  EXPECT_EQ(soundFrame(Codec::mp3, numbered({0xff, 0xfb, 0x92, 0x00}))->size, 418U);
  EXPECT_EQ(soundFrame(Codec::mp3, numbered({0xff, 0xfb, 0x90, 0xc0}))->channels, 1);
}

TEST(SoundFrame, SlowerVersionsOfMp3HaveHalfTheSamples) {
  const auto half = soundFrame(Codec::mp3, numbered({0xff, 0xf3, 0x80, 0x00}));
  ASSERT_TRUE(half.has_value());
  EXPECT_EQ(half->rate, 22050U);
  EXPECT_EQ(half->samples, 576U);
  EXPECT_EQ(half->size, 208U);
  EXPECT_EQ(soundFrame(Codec::mp3, numbered({0xff, 0xe3, 0x80, 0x00}))->rate, 11025U);
}

TEST(SoundFrame, HeaderIsMadeForAnyLengthThatAFrameMayHave) {
  for (const auto& made : {numbered({0xff, 0xfb, 0x90, 0x00}), numbered({0xff, 0xfd, 0xa4, 0x00}),
                           numbered({0xff, 0xff, 0x92, 0x00}), numbered({0xff, 0xe3, 0x80, 0x00})}) {
    for (std::size_t size = 0; size < 3200; ++size) {
      // Every bit rate and padding in turn.
      platform::Bytes expected = made;
      bool isFound = false;
      for (unsigned third = 0x10; !isFound && third < 0xf0; third += third % 0x10 == 0 ? 2U : 14U) {
        expected[2] = static_cast<std::byte>(third | (static_cast<unsigned>(made[2]) & 0x0dU));
        const auto frame = salvage::mpegAudioFrame(expected);
        isFound = frame && frame->size == size;
      }
      platform::Bytes head = made;
      EXPECT_EQ(salvage::fitMpegFrame(head, size), isFound) << size;
      EXPECT_EQ(head, isFound ? expected : made) << size;
    }
  }
  platform::Bytes none = numbered({0x00, 0xfb, 0x90, 0x00});
  EXPECT_FALSE(salvage::fitMpegFrame(none, 417));
}

TEST(SoundFrame, LayersAreOfTheirOwnCodec) {
  const auto layer2 = numbered({0xff, 0xfd, 0xa4, 0x00});
  EXPECT_EQ(soundFrame(Codec::mp2, layer2)->size, 576U);
  EXPECT_FALSE(soundFrame(Codec::mp3, layer2).has_value());
  EXPECT_EQ(soundFrame(Codec::mp2, numbered({0xff, 0xff, 0x92, 0x00}))->size, 316U);
}

TEST(SoundFrame, ForbiddenFieldsAreNoFrame) {
  for (const auto& head : {numbered({0xff, 0xfb, 0xf0, 0}), numbered({0xff, 0xfb, 0x00, 0}),
                           numbered({0xff, 0xfb, 0x9c, 0}), numbered({0xff, 0xeb, 0x90, 0}),
                           numbered({0xff, 0xf9, 0x90, 0}), numbered({0xfe, 0xfb, 0x90, 0}), numbered({0xff, 0xfb})})
    EXPECT_FALSE(salvage::mpegAudioFrame(head).has_value());
}

TEST(SoundFrame, Ac3TellsItsLengthAtEveryRate) {
  const auto frame = soundFrame(Codec::ac3, numbered({0x0b, 0x77, 0, 0, 20, 0x40, 0x40, 0}));
  ASSERT_TRUE(frame.has_value());
  EXPECT_EQ(frame->size, 768U);
  EXPECT_EQ(frame->rate, 48000U);
  EXPECT_EQ(frame->channels, 2);
  EXPECT_EQ(soundFrame(Codec::ac3, numbered({0x0b, 0x77, 0, 0, 0x40 | 20, 0x40, 0x40, 0}))->size, 834U);
  EXPECT_EQ(soundFrame(Codec::ac3, numbered({0x0b, 0x77, 0, 0, 0x40 | 21, 0x40, 0x40, 0}))->size, 836U);
  EXPECT_FALSE(soundFrame(Codec::ac3, numbered({0x0b, 0x77, 0, 0, 38, 0x40, 0x40, 0})).has_value());
  EXPECT_FALSE(soundFrame(Codec::ac3, numbered({0x0b, 0x77, 0, 0, 0xc0, 0x40, 0x40, 0})).has_value());
}

TEST(SoundFrame, OtherCodecsHaveNone) {
  EXPECT_FALSE(soundFrame(Codec::pcm, numbered({0xff, 0xfb, 0x90, 0x00})).has_value());
}

}  // namespace
}  // namespace zelvo::tests
