// Picture size and clock of MPEG-4.
#include "salvage/payloads/mpeg4_headers.h"

#include <gtest/gtest.h>

#include "tests/salvage/codec_films.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;

/// Writes bits from the top of each byte down.
class Bits {
 public:
  Bits& put(std::uint32_t value, unsigned count) {
    for (unsigned i = count; i > 0; --i) {
      if (used_ % 8 == 0) bytes_.push_back(std::byte{0});
      bytes_.back() |= static_cast<std::byte>((value >> (i - 1) & 1U) << (7 - used_ % 8));
      ++used_;
    }
    return *this;
  }
  [[nodiscard]] const Bytes& bytes() const { return bytes_; }

 private:
  Bytes bytes_;
  unsigned used_ = 0;
};

/// The layer's front, up to its ratio of pixels.
Bits layer() { return Bits().put(0x120, 32).put(0, 1).put(1, 8); }

/// From the shape on.
Bytes rest(Bits bits, std::uint32_t resolution, std::optional<std::uint32_t> increment, unsigned ticks) {
  bits.put(0, 2).put(1, 1).put(resolution, 16).put(1, 1).put(increment ? 1 : 0, 1);
  if (increment) bits.put(*increment, ticks);
  return bits.put(1, 1).put(352, 13).put(1, 1).put(288, 13).put(1, 1).put(0, 32).bytes();
}

Bytes picture(unsigned type, unsigned seconds, std::uint32_t ticks, unsigned bitsOfTicks, unsigned coded = 1) {
  Bits bits;
  bits.put(0x1b6, 32).put(type, 2);
  for (unsigned i = 0; i < seconds; ++i) bits.put(1, 1);
  return bits.put(0, 1).put(1, 1).put(ticks, bitsOfTicks).put(1, 1).put(coded, 1).put(0, 16).bytes();
}

TEST(Mpeg4Layer, ShortestFormIsRead) {
  const auto found = salvage::mpeg4Layer(rest(layer().put(0, 1).put(1, 4).put(0, 1), 25, 1, 5));
  ASSERT_TRUE(found.has_value());
  EXPECT_EQ(found->resolution, 25U);
  EXPECT_EQ(found->increment, 1U);
  EXPECT_EQ(found->width, 352U);
  EXPECT_EQ(found->height, 288U);
}

TEST(Mpeg4Layer, LongestFormIsRead) {
  Bits bits = layer().put(1, 1).put(2, 4).put(1, 3).put(15, 4).put(0x1234, 16).put(1, 1).put(1, 2).put(1, 1).put(1, 1);
  bits.put(0x7fff, 15).put(1, 1).put(3, 15).put(1, 1).put(4, 15).put(1, 1).put(5, 3).put(6, 11).put(1, 1);
  bits.put(7, 15).put(1, 1);
  const auto found = salvage::mpeg4Layer(rest(bits, 30000, std::nullopt, 15));
  ASSERT_TRUE(found.has_value());
  EXPECT_EQ(found->resolution, 30000U);
  EXPECT_EQ(found->increment, 0U);
  EXPECT_EQ(found->width, 352U);
}

TEST(Mpeg4Layer, NoneWithoutItsCodeOrItsEnd) {
  EXPECT_FALSE(salvage::mpeg4Layer(numbered({0, 0, 1, 0xb6, 0, 0, 0, 1, 0x20})).has_value());
  Bytes cut = rest(layer().put(0, 1).put(1, 4).put(0, 1), 25, 1, 5);
  cut.resize(9);
  EXPECT_FALSE(salvage::mpeg4Layer(cut).has_value());
  EXPECT_FALSE(salvage::mpeg4Layer(rest(layer().put(0, 1).put(1, 4).put(0, 1), 0, std::nullopt, 0)).has_value());
}

TEST(Mpeg4Picture, TellsTypeAndTime) {
  const auto found = salvage::mpeg4Picture(picture(1, 2, 13, 5), 25);
  ASSERT_TRUE(found.has_value());
  EXPECT_EQ(found->type, salvage::Mpeg4PictureType::predicted);
  EXPECT_EQ(found->seconds, 2U);
  EXPECT_EQ(found->ticks, 13U);
  EXPECT_TRUE(found->isCoded);
  EXPECT_FALSE(salvage::mpeg4Picture(picture(1, 0, 13, 5, 0), 25)->isCoded);
}

TEST(Mpeg4Picture, TicksTakeAsManyBitsAsTheLargestOne) {
  EXPECT_EQ(salvage::mpeg4Picture(picture(0, 0, 0, 1), 1)->ticks, 0U);
  EXPECT_EQ(salvage::mpeg4Picture(picture(0, 0, 15, 4), 16)->ticks, 15U);
  EXPECT_EQ(salvage::mpeg4Picture(picture(0, 0, 16, 5), 17)->ticks, 16U);
  EXPECT_EQ(salvage::mpeg4Picture(picture(0, 0, 29999, 15), 30000)->ticks, 29999U);
}

TEST(Mpeg4Picture, ImpossibleTimesAreNone) {
  EXPECT_FALSE(salvage::mpeg4Picture(picture(0, 0, 25, 5), 25).has_value());
  EXPECT_FALSE(salvage::mpeg4Picture(picture(0, 61, 1, 5), 25).has_value());
  EXPECT_TRUE(salvage::mpeg4Picture(picture(0, 60, 1, 5), 25).has_value());
  EXPECT_FALSE(salvage::mpeg4Picture(numbered({0, 0, 1, 0xb6, 0x10}), 25).has_value());
  EXPECT_FALSE(salvage::mpeg4Picture(numbered({0, 0, 1, 0xb0, 0x10}), 25).has_value());
}

}  // namespace
}  // namespace zelvo::tests
