// How much of decoding a film may ask for.
#include "salvage/payloads/trial_budget.h"

#include <gtest/gtest.h>

namespace zelvo::tests {
namespace {

using salvage::TrialBudget;

const platform::TrialStream kSmallPicture{.codec = 1, .width = 16, .height = 16, .bits = 24, .extra = {}};

std::size_t timesOf(const TrialBudget& budget) { return budget.timesOf(kSmallPicture, 1, 0); }

TEST(TrialBudget, BytesCostWherePixelsDoNot) {
  TrialBudget budget(TrialBudget::kLeast * 4);
  EXPECT_EQ(timesOf(budget), 4U);
  EXPECT_TRUE(budget.take(kSmallPicture, 2));
  EXPECT_EQ(timesOf(budget), 2U);
  EXPECT_FALSE(budget.take(kSmallPicture, 2, 1));
  EXPECT_TRUE(budget.take(kSmallPicture, 1, TrialBudget::kLeast / 2));
  EXPECT_EQ(timesOf(budget), 0U);
}

TEST(TrialBudget, ShareIsNotLessThanItMustBeAndNotMoreThanThereIs) {
  TrialBudget budget(TrialBudget::kLeast * 90);
  const TrialBudget third = budget.share(3);
  EXPECT_EQ(timesOf(third), 30U);
  EXPECT_EQ(timesOf(budget), 60U);
  TrialBudget more = budget.share(3, TrialBudget::kLeast * 50);
  EXPECT_EQ(timesOf(more), 50U);
  EXPECT_EQ(timesOf(budget.share(3, TrialBudget::kLeast * 50)), 10U);
  EXPECT_EQ(timesOf(budget), 0U);
  budget.giveBack(more);
  EXPECT_EQ(timesOf(budget), 50U);
}

TEST(TrialBudget, WalksAreTakenFromItToo) {
  TrialBudget budget(TrialBudget::kLeast * 60);
  EXPECT_EQ(budget.bytesToWalk(), TrialBudget::kLeast * 60 / 16);
  budget.takeWalk(budget.bytesToWalk() / 3);
  EXPECT_EQ(timesOf(budget), 40U);
  budget.takeWalk(TrialBudget::kLeast * 60);
  EXPECT_EQ(timesOf(budget), 0U);
}

TEST(TrialBudget, LongFilmGetsLessForItsPicturesUntilItsOwnSizeIsMore) {
  constexpr std::uint64_t kMb = std::uint64_t{1} << 20U;
  const auto ofPictures = [](std::uint64_t size) { return timesOf(TrialBudget::ofPictures(size)); };
  const std::size_t all = timesOf(TrialBudget());
  EXPECT_EQ(ofPictures(0), all);
  EXPECT_EQ(ofPictures(8 * kMb), all);
  EXPECT_EQ(ofPictures(16 * kMb), all / 2);
  EXPECT_EQ(ofPictures(64 * kMb), all / 8);
  EXPECT_EQ(ofPictures(256 * kMb), 256 * kMb * 3 / 2 / TrialBudget::kLeast);
  EXPECT_EQ(ofPictures(std::uint64_t{1} << 40U), all);
}

}  // namespace
}  // namespace zelvo::tests
