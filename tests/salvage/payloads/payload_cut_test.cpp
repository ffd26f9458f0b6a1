// Where payloads without compression were cut apart.
#include "salvage/payloads/payload_cut.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/salvage/codec_films.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using salvage::insertionIn;
using salvage::tearIn;

Bytes garbage(std::size_t size) {
  std::mt19937 random(5);
  Bytes bytes(size);
  for (std::byte& byte : bytes) byte = static_cast<std::byte>(random() % 256);
  return bytes;
}

/// 40 x 30 pixels that grow brighter from left to right and from top to bottom, with a little noise.
Bytes cutPicture() {
  std::mt19937 random(9);
  Bytes bytes;
  for (unsigned y = 0; y < 30; ++y) {
    for (unsigned x = 0; x < 40; ++x) {
      for (unsigned colour = 0; colour < 3; ++colour)
        bytes.push_back(static_cast<std::byte>(3 * x + 2 * y + 20 * colour + random() % 4));
    }
  }
  return bytes;
}

/// Soft noise of 16 bits.
Bytes cutSound(std::size_t samples) {
  std::mt19937 random(9);
  Bytes bytes;
  for (std::size_t i = 0; i < samples; ++i) append16(bytes, static_cast<std::uint16_t>(random() % 6000 + 65536 - 3000));
  return bytes;
}

Bytes bytesWith(Bytes bytes, std::size_t at, const Bytes& added) {
  bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(at), added.begin(), added.end());
  return bytes;
}

Bytes bytesWithout(Bytes bytes, std::size_t at, std::size_t count) {
  const auto from = bytes.begin() + static_cast<std::ptrdiff_t>(at);
  bytes.erase(from, from + static_cast<std::ptrdiff_t>(count));
  return bytes;
}

std::uint32_t sizeOf(const Bytes& bytes) { return static_cast<std::uint32_t>(bytes.size()); }

TEST(PayloadCut, BytesPutIntoARawPictureAreFound) {
  const auto stream = pictureStream(std::string_view("\0\0\0\0", 4), 40, 30);
  const Bytes whole = cutPicture();
  for (const std::size_t at : {0U, 1U, 700U, 1801U, 3599U})
    EXPECT_EQ(insertionIn(stream, bytesWith(whole, at, garbage(501)), sizeOf(whole)), at);
}

TEST(PayloadCut, BytesPutIntoSoundAreFound) {
  const auto stream = soundStream(1, 2, 8000, 4, 16, 4);
  const Bytes whole = cutSound(2000);
  for (const std::size_t at : {200U, 1802U, 3700U}) {
    const auto found = insertionIn(stream, bytesWith(whole, at, garbage(801)), sizeOf(whole));
    ASSERT_TRUE(found);
    EXPECT_LE(*found, at + 8);
    EXPECT_LE(at, *found + 8);
  }
}

TEST(PayloadCut, BytesMissingFromARawPictureAreFound) {
  const auto stream = pictureStream(std::string_view("\0\0\0\0", 4), 40, 30);
  const Bytes whole = cutPicture();
  const auto found = tearIn(stream, bytesWithout(whole, 1500, 331), sizeOf(whole));
  ASSERT_TRUE(found);
  EXPECT_NEAR(*found, 1500, 9);
}

TEST(PayloadCut, AnOddNumberOfBytesMissingFromSoundIsFound) {
  const auto stream = soundStream(1, 2, 8000, 4, 16, 4);
  const Bytes whole = cutSound(2000);
  const auto found = tearIn(stream, bytesWithout(whole, 1500, 333), sizeOf(whole));
  ASSERT_TRUE(found);
  EXPECT_NEAR(*found, 1500, 8);
}

TEST(PayloadCut, WholeSamplesMissingLeaveNoTrace) {
  const auto stream = soundStream(1, 2, 8000, 4, 16, 4);
  const Bytes whole = cutSound(2000);
  EXPECT_FALSE(tearIn(stream, bytesWithout(whole, 1500, 332), sizeOf(whole)));
}

TEST(PayloadCut, CompressedPayloadsDoNotTell) {
  EXPECT_FALSE(insertionIn(pictureStream("MJPG"), garbage(2000), 1000));
  EXPECT_FALSE(tearIn(pictureStream("XVID"), garbage(1000), 2000));
  EXPECT_FALSE(insertionIn(soundStream(0x55, 2, 44100, 1, 0, 0), garbage(2000), 1000));
}

}  // namespace
}  // namespace zelvo::tests
