// Key pictures by the bits of their codecs.
#include "salvage/payloads/key_picture.h"

#include <gtest/gtest.h>

#include "tests/salvage/codec_films.h"

namespace zelvo::tests {
namespace {

using salvage::Codec;
using salvage::isKeyPicture;

constexpr std::optional<bool> kNothing;

TEST(KeyPicture, EmptyPayloadIsNone) {
  EXPECT_EQ(isKeyPicture(Codec::jpeg, {}), false);
  EXPECT_EQ(isKeyPicture(Codec::unknown, {}), false);
}

TEST(KeyPicture, UnknownCodecTellsNothing) { EXPECT_EQ(isKeyPicture(Codec::unknown, numbered({1, 2, 3})), kNothing); }

TEST(KeyPicture, CodecsOfWholePicturesHaveNothingElse) {
  for (const Codec codec : {Codec::rawPicture, Codec::intra, Codec::dv})
    EXPECT_EQ(isKeyPicture(codec, numbered({7})), true);
  EXPECT_EQ(isKeyPicture(Codec::jpeg, numbered({0xff, 0xd8, 0xff})), true);
  EXPECT_EQ(isKeyPicture(Codec::jpeg, numbered({0, 0, 0})), false);
}

TEST(KeyPicture, Mpeg4TellsByTheFirstPictureBehindItsHeaders) {
  EXPECT_EQ(isKeyPicture(Codec::mpeg4, numbered({0, 0, 1, 0xb6, 0x10, 0})), true);
  EXPECT_EQ(isKeyPicture(Codec::mpeg4, numbered({0, 0, 1, 0xb6, 0x50, 0})), false);
  EXPECT_EQ(isKeyPicture(Codec::mpeg4, numbered({0, 0, 1, 0xb0, 1, 0, 0, 1, 0xb6, 0x20, 0, 0, 1, 0xb6, 0x90})), true);
  EXPECT_EQ(isKeyPicture(Codec::mpeg4, numbered({9, 9, 9, 9, 9, 9})), false);
  EXPECT_EQ(isKeyPicture(Codec::mpeg4, numbered({0, 0, 1, 0xb6})), false);
}

TEST(KeyPicture, H264TellsByItsFirstSliceWithStartCodesOrLengths) {
  EXPECT_EQ(isKeyPicture(Codec::h264, numbered({0, 0, 0, 1, 0x67, 1, 0, 0, 1, 0x68, 1, 0, 0, 1, 0x65, 9})), true);
  EXPECT_EQ(isKeyPicture(Codec::h264, numbered({0, 0, 0, 1, 0x09, 1, 0, 0, 1, 0x41, 9})), false);
  EXPECT_EQ(isKeyPicture(Codec::h264, numbered({0, 0, 0, 2, 0x06, 1, 0, 0, 0, 9, 0x65, 1})), true);
  EXPECT_EQ(isKeyPicture(Codec::h264, numbered({0, 0, 0, 9, 0x41, 1, 2, 3})), false);
  EXPECT_EQ(isKeyPicture(Codec::h264, numbered({0xff, 0xff, 0xff, 0xff, 0x65, 1})), false);
}

TEST(KeyPicture, HevcKeysAreTypes16To23) {
  EXPECT_EQ(isKeyPicture(Codec::hevc, numbered({0, 0, 1, 0x40, 1, 0, 0, 1, 19 << 1, 1})), true);
  EXPECT_EQ(isKeyPicture(Codec::hevc, numbered({0, 0, 1, 1 << 1, 1})), false);
}

TEST(KeyPicture, SorensonsFirstHasItsTypeBehindTheNumber) {
  EXPECT_EQ(isKeyPicture(Codec::svq1, numbered({0, 0, 0x80, 0x7c, 0x16})), true);
  EXPECT_EQ(isKeyPicture(Codec::svq1, numbered({0, 0, 0x80, 0x7d, 0x16})), false);
  EXPECT_EQ(isKeyPicture(Codec::svq1, numbered({0, 0, 0x80})), kNothing);
}

TEST(KeyPicture, Vp9KeysAreNoPicturesShownBefore) {
  EXPECT_EQ(isKeyPicture(Codec::vp9, numbered({0x82, 0x49})), true);
  EXPECT_EQ(isKeyPicture(Codec::vp9, numbered({0x86, 0x49})), false);
  EXPECT_EQ(isKeyPicture(Codec::vp9, numbered({0x88, 0x49})), false);
  EXPECT_EQ(isKeyPicture(Codec::vp9, numbered({0xb1, 0x49})), true);
}

TEST(KeyPicture, MpegVideoHasItsTypeBehindTheNumber) {
  EXPECT_EQ(isKeyPicture(Codec::mpegVideo, numbered({0, 0, 1, 0xb3, 9, 9, 9, 9, 0, 0, 1, 0, 0x00, 0x08})), true);
  EXPECT_EQ(isKeyPicture(Codec::mpegVideo, numbered({0, 0, 1, 0, 0x00, 0x10})), false);
}

TEST(KeyPicture, MicrosoftsMpeg4DiffersByVersion) {
  EXPECT_EQ(isKeyPicture(Codec::msMpeg4, numbered({0x3f})), true);
  EXPECT_EQ(isKeyPicture(Codec::msMpeg4, numbered({0x40})), false);
  EXPECT_EQ(isKeyPicture(Codec::wmv2, numbered({0x40})), true);
  EXPECT_EQ(isKeyPicture(Codec::wmv2, numbered({0x80})), false);
  EXPECT_EQ(isKeyPicture(Codec::msMpeg4v1, numbered({0, 0, 1, 0, 0xf9})), true);
  EXPECT_EQ(isKeyPicture(Codec::msMpeg4v1, numbered({0, 0, 1, 0, 0xfa})), false);
  EXPECT_EQ(isKeyPicture(Codec::msMpeg4v1, numbered({0, 0, 2, 0, 0xf9})), false);
}

TEST(KeyPicture, CinepakTellsByItsFirstStrip) {
  EXPECT_EQ(isKeyPicture(Codec::cinepak, numbered({1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x10})), true);
  EXPECT_EQ(isKeyPicture(Codec::cinepak, numbered({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x11})), false);
  EXPECT_EQ(isKeyPicture(Codec::cinepak, numbered({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x12})), false);
}

TEST(KeyPicture, OthersHaveABitForIt) {
  EXPECT_EQ(isKeyPicture(Codec::ffv1, numbered({0x7f, 0x80})), true);
  EXPECT_EQ(isKeyPicture(Codec::ffv1, numbered({0x7f, 0x7f})), false);
  EXPECT_EQ(isKeyPicture(Codec::vp8, numbered({0x10})), true);
  EXPECT_EQ(isKeyPicture(Codec::vp8, numbered({0x11})), false);
  EXPECT_EQ(isKeyPicture(Codec::zmbv, numbered({1, 0, 1})), true);
  EXPECT_EQ(isKeyPicture(Codec::zmbv, numbered({2, 0, 1})), false);
  EXPECT_EQ(isKeyPicture(Codec::vp3OrVp6, numbered({0x7f})), true);
  EXPECT_EQ(isKeyPicture(Codec::vp3OrVp6, numbered({0x80})), false);
  EXPECT_EQ(isKeyPicture(Codec::h263, numbered({0, 0, 0x80, 0, 0x00})), true);
  EXPECT_EQ(isKeyPicture(Codec::h263, numbered({0, 0, 0x80, 0, 0x02})), false);
}

TEST(KeyPicture, FlashTellsBehindASizeOfAnyKind) {
  // 30 bits, the size code, its size, two bits of type.
  EXPECT_EQ(isKeyPicture(Codec::flv1, numbered({0, 0, 0x84, 0b00000001, 0b0'00'00000, 0, 0, 0})), true);
  EXPECT_EQ(isKeyPicture(Codec::flv1, numbered({0, 0, 0x84, 0b00000001, 0b0'01'00000, 0, 0, 0})), false);
  EXPECT_EQ(isKeyPicture(Codec::flv1, numbered({0, 0, 0x84, 0, 0, 0xff, 0b1'01'00000, 0})), false);
}

TEST(KeyPicture, MicrosoftVideoKeysSkipNoBlock) {
  EXPECT_EQ(isKeyPicture(Codec::msVideo8, numbered({1, 0x80, 2, 0x81, 0, 0})), true);
  EXPECT_EQ(isKeyPicture(Codec::msVideo8, numbered({1, 0x80, 5, 0x84, 0, 0})), false);
  // The skip's bytes as colours of a block of two, and of eight.
  EXPECT_EQ(isKeyPicture(Codec::msVideo8, numbered({1, 0x10, 5, 0x84, 1, 0x80, 0, 0})), true);
  EXPECT_EQ(isKeyPicture(Codec::msVideo8, numbered({1, 0x90, 5, 0x84, 5, 0x84, 5, 0x84, 5, 0x84, 0, 0, 0, 0})), true);
  EXPECT_EQ(isKeyPicture(Codec::msVideo16, numbered({1, 0x10, 5, 0x04, 5, 0x84, 1, 0x80, 0, 0})), true);
  EXPECT_EQ(isKeyPicture(Codec::msVideo16, numbered({1, 0x10, 5, 0x04, 1, 0x10, 5, 0x84, 0, 0})), false);
}

}  // namespace
}  // namespace zelvo::tests
