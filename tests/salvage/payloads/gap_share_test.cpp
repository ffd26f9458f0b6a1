// Missing pictures shared out among gaps.
#include "salvage/payloads/gap_share.h"

#include <gtest/gtest.h>

namespace zelvo::tests {
namespace {

using salvage::GapEstimate;
using salvage::shareOut;

std::vector<std::size_t> sharedNumbers(const std::vector<GapEstimate>& gaps) {
  std::vector<std::size_t> numbers;
  for (const GapEstimate& gap : gaps) numbers.push_back(gap.pictures);
  return numbers;
}

using Numbers = std::vector<std::size_t>;

TEST(GapShare, EstimatesThatAddUpStay) {
  std::vector<GapEstimate> gaps{{2, 100, false}, {3, 100, false}};
  EXPECT_FALSE(shareOut(gaps, 5, 100));
  EXPECT_EQ(sharedNumbers(gaps), (Numbers{2, 3}));
}

TEST(GapShare, TooManyAreTakenOffInProportion) {
  std::vector<GapEstimate> gaps{{8, 100, false}, {4, 100, false}, {1, 0, true}};
  EXPECT_TRUE(shareOut(gaps, 7, 100));
  EXPECT_EQ(sharedNumbers(gaps), (Numbers{4, 2, 1}));
}

TEST(GapShare, TooFewGoToAllInEqualPartsWhereBytesAreMissing) {
  std::vector<GapEstimate> gaps{{1, 500, false}, {4, 0, true}, {2, 0, false}};
  EXPECT_TRUE(shareOut(gaps, 12, 100));
  EXPECT_EQ(sharedNumbers(gaps), (Numbers{4, 4, 4}));
}

TEST(GapShare, MoreThanTheMissingBytesHoldIsNotBelieved) {
  std::vector<GapEstimate> gaps{{0, 0, false}, {0, 0, false}};
  EXPECT_TRUE(shareOut(gaps, 1000, 6));
  EXPECT_EQ(sharedNumbers(gaps), (Numbers{3, 3}));
  EXPECT_FALSE(shareOut(gaps, 6, 0));
}

TEST(GapShare, WhereNoBytesAreMissingTooFewGoByTheBytes) {
  std::vector<GapEstimate> gaps{{3, 3000, false}, {1, 1000, false}};
  EXPECT_TRUE(shareOut(gaps, 100, 0));
  EXPECT_EQ(sharedNumbers(gaps), (Numbers{5, 1}));
}

TEST(GapShare, ExactOnesNeverChange) {
  std::vector<GapEstimate> gaps{{3, 100, true}};
  EXPECT_FALSE(shareOut(gaps, 9, 100));
  EXPECT_FALSE(shareOut(gaps, 1, 100));
  EXPECT_EQ(sharedNumbers(gaps), Numbers{3});
}

TEST(GapShare, WithoutGapsNothingIsShared) {
  std::vector<GapEstimate> none;
  EXPECT_FALSE(shareOut(none, 9, 100));
}

}  // namespace
}  // namespace zelvo::tests
