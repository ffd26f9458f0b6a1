#include "avi/byte_ranges.h"

#include <gtest/gtest.h>

namespace zelvo::tests {
namespace {

using avi::ByteRanges;

TEST(ByteRanges, CountsEachByteOnce) {
  ByteRanges ranges;
  ranges.add(100, 200);
  ranges.add(150, 250);
  ranges.add(120, 130);
  EXPECT_EQ(ranges.bytes(), 150U);
}

TEST(ByteRanges, JoinsWhatTouches) {
  ByteRanges ranges;
  ranges.add(0, 10);
  ranges.add(20, 30);
  ranges.add(10, 20);
  EXPECT_EQ(ranges.bytes(), 30U);
  ranges.add(0, 40);
  EXPECT_EQ(ranges.bytes(), 40U);
}

TEST(ByteRanges, OneThatCoversOthersTakesTheirPlace) {
  ByteRanges ranges;
  ranges.add(50, 60);
  ranges.add(70, 80);
  ranges.add(90, 95);
  ranges.add(40, 85);
  EXPECT_EQ(ranges.bytes(), 50U);
}

TEST(ByteRanges, AnEmptyRangeAddsNothing) {
  ByteRanges ranges;
  ranges.add(7, 7);
  ranges.add(9, 8);
  EXPECT_EQ(ranges.bytes(), 0U);
}

TEST(ByteRanges, KeepsNoMoreThanItsLimitButGoesOnJoining) {
  ByteRanges ranges;
  for (std::uint64_t i = 0; i < ByteRanges::kMax + 5; ++i) ranges.add(i * 10, i * 10 + 1);
  EXPECT_EQ(ranges.bytes(), ByteRanges::kMax);
  ranges.add(1, 10);  // between the first and the second
  EXPECT_EQ(ranges.bytes(), ByteRanges::kMax + 9);
}

}  // namespace
}  // namespace zelvo::tests
