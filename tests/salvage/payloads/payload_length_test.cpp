// How long a payload is by what its codec says.
#include "salvage/payloads/payload_length.h"

#include <gtest/gtest.h>

#include "tests/salvage/codec_films.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using salvage::Codec;
using salvage::payloadLength;

/// A picture with one table, one scan, a restart marker and a stuffed byte in it.
Bytes jpegPayload() {
  return numbered({0xff, 0xd8, 0xff, 0xdb, 0x00, 0x04, 0xff, 0xd9, 0xff, 0xda, 0x00,
                   0x03, 0x01, 0x11, 0xff, 0x00, 0x22, 0xff, 0xd0, 0x33, 0xff, 0xd9});
}

Bytes followedBy(Bytes bytes, const Bytes& more) {
  bytes.insert(bytes.end(), more.begin(), more.end());
  return bytes;
}

TEST(PayloadLength, OfAPictureIsUpToItsEnd) {
  EXPECT_EQ(payloadLength(Codec::jpeg, jpegPayload()), jpegPayload().size());
  EXPECT_EQ(payloadLength(Codec::jpeg, followedBy(jpegPayload(), Bytes(100, std::byte{0xff}))), jpegPayload().size());
}

TEST(PayloadLength, OfTwoFieldsIsThatOfBoth) {
  EXPECT_EQ(payloadLength(Codec::jpeg, followedBy(jpegPayload(), jpegPayload())), 2 * jpegPayload().size());
}

TEST(PayloadLength, OfADamagedPictureIsNotTold) {
  Bytes cut = jpegPayload();
  cut.pop_back();
  EXPECT_FALSE(payloadLength(Codec::jpeg, cut));
  Bytes broken = jpegPayload();
  broken[2] = std::byte{0x12};
  EXPECT_FALSE(payloadLength(Codec::jpeg, broken));
  EXPECT_FALSE(payloadLength(Codec::jpeg, {}));
}

TEST(PayloadLength, OfSoundIsThatOfItsWholeFrames) {
  // 128 kbit/s at 44100 Hz: 417 bytes.
  Bytes frame = numbered({0xff, 0xfb, 0x90, 0x00});
  frame.resize(417);
  const Bytes two = followedBy(frame, frame);
  EXPECT_EQ(payloadLength(Codec::mp3, frame), 417U);
  EXPECT_EQ(payloadLength(Codec::mp3, followedBy(two, Bytes(300))), 834U);
  Bytes cut = two;
  cut.resize(800);
  EXPECT_EQ(payloadLength(Codec::mp3, cut), 417U);
  EXPECT_FALSE(payloadLength(Codec::mp3, Bytes(500)));
}

TEST(PayloadLength, OfOtherCodecsIsNotTold) { EXPECT_FALSE(payloadLength(Codec::mpeg4, Bytes(100))); }

}  // namespace
}  // namespace zelvo::tests
