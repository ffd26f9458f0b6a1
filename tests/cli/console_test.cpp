#include "cli/console.h"

#include <gtest/gtest.h>

namespace zelvo::cli {
namespace {

TEST(Console, QuietLeavesErrorsOnly) {
  Console console(false);
  console.setQuiet(true);
  testing::internal::CaptureStderr();
  console.error("bad");
  console.warning("odd");
  console.note("by the way");

  EXPECT_EQ(testing::internal::GetCapturedStderr(), "zelvo-avi: bad\n");
}

TEST(Console, WarningSaysThatItIsOne) {
  Console console(false);
  testing::internal::CaptureStderr();
  console.warning("odd");

  EXPECT_EQ(testing::internal::GetCapturedStderr(), "zelvo-avi: warning: odd\n");
}

TEST(Console, ProgressLineGivesWayToMessagesAndComesBack) {
  Console console(true);
  testing::internal::CaptureStderr();
  console.progress("50 %");
  console.error("bad");
  console.progress("");

  EXPECT_EQ(testing::internal::GetCapturedStderr(), "\r\033[K50 %\r\033[Kzelvo-avi: bad\n50 %\r\033[K");
}

TEST(Console, ProgressIsNotDrawnWithoutATerminal) {
  Console console(false);
  testing::internal::CaptureStderr();
  console.progress("50 %");

  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(ConsoleLog, LinesComeOnlyWhenWanted) {
  Console console(false);
  testing::internal::CaptureStderr();
  ConsoleLog(console, 0).line("silent");
  ConsoleLog(console, 1).line("one\ntwo");

  EXPECT_EQ(testing::internal::GetCapturedStderr(), "one\\x0atwo\n");
  EXPECT_FALSE(ConsoleLog(console, 1).tracesPositions());
  EXPECT_TRUE(ConsoleLog(console, 2).tracesPositions());
}

}  // namespace
}  // namespace zelvo::cli
