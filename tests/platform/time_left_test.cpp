#include "platform/time_left.h"

#include <gtest/gtest.h>

namespace zelvo::tests {
namespace {

using platform::TimeLeft;

using namespace std::chrono_literals;
constexpr TimeLeft::Clock::time_point kStart{};

TEST(TimeLeft, IsByHowFastItWas) {
  TimeLeft left;
  left.note(kStart, 1, 0, 1000);
  left.note(kStart + 10s, 1, 250, 1000);
  EXPECT_DOUBLE_EQ(left.seconds().value_or(0), 30);
}

TEST(TimeLeft, IsNothingBeforeThereIsEnoughToJudgeBy) {
  TimeLeft left;
  EXPECT_FALSE(left.seconds());
  left.note(kStart, 1, 0, 1000);
  left.note(kStart + 1s, 1, 500, 1000);
  EXPECT_FALSE(left.seconds()) << "too early";
  left.note(kStart + 5s, 1, 0, 1000);
  left.note(kStart + 9s, 1, 9, 1000);
  EXPECT_FALSE(left.seconds()) << "too little";
  left.note(kStart + 10s, 1, 10, 1000);
  EXPECT_TRUE(left.seconds());
}

TEST(TimeLeft, BeginsAnewWithAnotherStage) {
  TimeLeft left;
  left.note(kStart, 1, 0, 1000);
  left.note(kStart + 100s, 1, 500, 1000);
  left.note(kStart + 101s, 2, 500, 1000);
  EXPECT_FALSE(left.seconds());
  left.note(kStart + 103s, 2, 700, 1000);
  EXPECT_DOUBLE_EQ(left.seconds().value_or(0), 3);
}

TEST(TimeLeft, IsNothingWhereMoreIsDoneThanThereIs) {
  TimeLeft left;
  left.note(kStart, 1, 0, 100);
  left.note(kStart + 5s, 1, 200, 100);
  EXPECT_FALSE(left.seconds());
}

}  // namespace
}  // namespace zelvo::tests
