#include "avi/byte_order.h"

#include <gtest/gtest.h>

#include <array>
#include <span>

namespace zelvo::tests {
namespace {

using avi::loadLittleEndian;
using avi::loadLittleEndian16;
using avi::loadLittleEndian32;
using avi::loadLittleEndian64;
using avi::storeLittleEndian32;
using avi::storeLittleEndian64;

std::array<std::byte, 4> four(unsigned a, unsigned b, unsigned c, unsigned d) {
  return {static_cast<std::byte>(a), static_cast<std::byte>(b), static_cast<std::byte>(c), static_cast<std::byte>(d)};
}

TEST(ByteOrder, FirstByteIsTheLowest) { EXPECT_EQ(loadLittleEndian32(four(0x04, 0x03, 0x02, 0x01)), 0x01020304U); }

TEST(ByteOrder, EveryByteIsUnsigned) {
  EXPECT_EQ(loadLittleEndian32(four(0xff, 0, 0, 0)), 0xffU);
  EXPECT_EQ(loadLittleEndian32(four(0, 0xff, 0, 0)), 0xff00U);
  EXPECT_EQ(loadLittleEndian32(four(0, 0, 0xff, 0)), 0xff0000U);
  EXPECT_EQ(loadLittleEndian32(four(0, 0, 0, 0xff)), 0xff000000U);
}

TEST(ByteOrder, NumbersOfOtherWidthsBeginWithTheirLowestByteToo) {
  std::array<std::byte, 8> bytes{};
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<std::byte>(0xf8 - i);
  const std::span<const std::byte> all = bytes;
  EXPECT_EQ(loadLittleEndian16(all.first<2>()), 0xf7f8U);
  EXPECT_EQ(loadLittleEndian64(all.first<8>()), 0xf1f2f3f4f5f6f7f8U);
  EXPECT_EQ(loadLittleEndian(all.first(1)), 0xf8U);
  EXPECT_EQ(loadLittleEndian(all.first(3)), 0xf6f7f8U);
  EXPECT_EQ(loadLittleEndian(all), 0xf1f2f3f4f5f6f7f8U);
}

TEST(ByteOrder, StoringAndLoadingGiveTheNumberBack) {
  for (const std::uint32_t value : {0U, 1U, 0x80U, 0x8000U, 0x800000U, 0x80000000U, 0x12345678U, 0xffffffffU}) {
    std::array<std::byte, 4> bytes{};
    storeLittleEndian32(bytes, value);
    EXPECT_EQ(loadLittleEndian32(bytes), value);
  }
}

TEST(ByteOrder, StoringPutsTheLowestByteFirst) {
  std::array<std::byte, 4> bytes{};
  storeLittleEndian32(bytes, 0x01020304);
  EXPECT_EQ(bytes, four(4, 3, 2, 1));
}

TEST(ByteOrder, StoringEightBytesPutsTheLowestFirst) {
  std::array<std::byte, 8> bytes{};
  storeLittleEndian64(bytes, 0x0102030405060708U);
  for (std::size_t i = 0; i < bytes.size(); ++i) EXPECT_EQ(std::to_integer<std::size_t>(bytes[i]), 8 - i) << i;
}

}  // namespace
}  // namespace zelvo::tests
