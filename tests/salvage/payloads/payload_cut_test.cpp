// Where payloads were cut apart, as far as their bytes tell.
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

/// What is left when the bytes from `begin` to `end` were doubled and the second time is cut out as it is found.
std::optional<Bytes> withoutRepetition(const Bytes& payload, std::size_t begin, std::size_t end) {
  const auto at = [](const Bytes& bytes, std::size_t place) {
    return bytes.begin() + static_cast<std::ptrdiff_t>(place);
  };
  Bytes bytes(payload.begin(), at(payload, end));
  bytes.insert(bytes.end(), at(payload, begin), payload.end());
  const auto cut = salvage::repetitionIn(bytes, static_cast<std::uint32_t>(payload.size()));
  if (!cut) return std::nullopt;
  bytes.erase(at(bytes, *cut), at(bytes, *cut + end - begin));
  return bytes;
}

TEST(PayloadCut, DoubledBytesAreFoundWhereverTheyAre) {
  const Bytes payload = garbage(3000);
  for (const std::size_t count : {16U, 17U, 500U, 1400U}) {
    for (const std::size_t begin : {std::size_t{0}, std::size_t{1}, std::size_t{800}, payload.size() - count})
      EXPECT_EQ(withoutRepetition(payload, begin, begin + count), payload) << begin << " " << count;
  }
  EXPECT_EQ(withoutRepetition(payload, 0, payload.size()), payload);
}

TEST(PayloadCut, FewBytesOrManyOfAKindTellNothing) {
  EXPECT_FALSE(withoutRepetition(garbage(3000), 100, 115));
  Bytes flat(3000, std::byte{7});
  EXPECT_FALSE(withoutRepetition(flat, 100, 400));
  // What is doubled behind a row of one value is found.
  const Bytes mixed = garbage(400);
  std::ranges::copy(mixed, flat.begin() + 2000);
  EXPECT_EQ(withoutRepetition(flat, 2050, 2250), flat);
}

TEST(PayloadCut, ForeignBytesAreNoRepetition) {
  Bytes bytes = garbage(5000);
  EXPECT_FALSE(salvage::repetitionIn(bytes, 3000));
  // One byte less than all of them.
  std::copy_n(bytes.begin(), 1999, bytes.begin() + 2000);
  bytes[3999] = ~bytes[1999];
  EXPECT_FALSE(salvage::repetitionIn(bytes, 3000));
  bytes[3999] = bytes[1999];
  EXPECT_EQ(salvage::repetitionIn(bytes, 3000), 2000U);
}

}  // namespace
}  // namespace zelvo::tests
