// Which chunks of one size fill a gap to the byte.
#include "salvage/plan/whole_chunks.h"

#include <gtest/gtest.h>

namespace zelvo::tests {
namespace {

using salvage::WholeChunks;
using salvage::wholeChunks;

TEST(WholeChunks, SoundAloneFillsWhereSizesOfPicturesVary) {
  EXPECT_EQ(wholeChunks(2 * 2056, std::nullopt, 2048, 5), (WholeChunks{0, 2}));
  EXPECT_EQ(wholeChunks(2 * 2056 + 2, std::nullopt, 2048, 5), std::nullopt);
  EXPECT_EQ(wholeChunks(0, std::nullopt, 2048, 0), std::nullopt);
  // An odd size has a pad byte.
  EXPECT_EQ(wholeChunks(3 * 892, std::nullopt, 883, 0), (WholeChunks{0, 3}));
  // Hundreds of chunks would fill anything.
  EXPECT_EQ(wholeChunks(400 * 10, std::nullopt, 2, 0), std::nullopt);
}

TEST(WholeChunks, BothFillWhereBothHaveOneSize) {
  EXPECT_EQ(wholeChunks(2 * 144'008 + 7688, 144'000, 7680, 0), (WholeChunks{2, 1}));
  EXPECT_EQ(wholeChunks(144'008, 144'000, 7680, 7), (WholeChunks{1, 0}));
  EXPECT_EQ(wholeChunks(144'000, 144'000, 7680, 1), std::nullopt);
}

TEST(WholeChunks, NearestNumberOfPicturesWins) {
  // Two pictures are as long as three chunks of sound.
  EXPECT_EQ(wholeChunks(6 * 300, 292, 192, 6), (WholeChunks{6, 0}));
  EXPECT_EQ(wholeChunks(6 * 300, 292, 192, 1), (WholeChunks{0, 9}));
  EXPECT_EQ(wholeChunks(6 * 300, 292, 192, 3), (WholeChunks{2, 6}));
}

}  // namespace
}  // namespace zelvo::tests
