#include "cli/console.h"

#include <gtest/gtest.h>

namespace zelvo::tests {
namespace {

using cli::Console;
using cli::ConsoleLog;

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

TEST(Console, ProgressLineGivesWayToAResultOnTheTerminal) {
  Console console(true, true);
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  console.progress("50 %");
  console.result("a line\n");
  console.progress("");

  EXPECT_EQ(testing::internal::GetCapturedStderr(), "\r\033[K50 %\r\033[K50 %\r\033[K");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "a line\n");
}

TEST(Console, ProgressLineNeverErasesThePartOfAResult) {
  Console console(true, true);
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  console.progress("50 %");
  console.result("{\"a\":");
  console.progress("60 %");
  console.progress("");
  console.result("1}\n");
  console.progress("70 %");

  EXPECT_EQ(testing::internal::GetCapturedStderr(), "\r\033[K50 %\r\033[K\r\033[K70 %");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "{\"a\":1}\n");
}

TEST(Console, ProgressLineStaysWhereTheResultGoesElsewhere) {
  Console console(true, false);
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  console.progress("50 %");
  console.result("{");
  console.progress("60 %");

  EXPECT_EQ(testing::internal::GetCapturedStderr(), "\r\033[K50 %\r\033[K60 %");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "{");
}

TEST(Console, ProgressIsNotDrawnWithoutATerminal) {
  Console console(false);
  testing::internal::CaptureStderr();
  console.progress("50 %");

  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(Console, NothingThatSteersATerminalReachesStandardError) {
  const std::string hostile = "\x1b[2J\n\xc2\x9b\x9b\xe2\x80\xae.";
  const std::string shown = "\\x1b[2J\\x0a\\u009b\\x9b\\u202e.";
  Console console(true);
  testing::internal::CaptureStderr();
  console.error(hostile);
  console.warning(hostile);
  console.note(hostile);
  console.logLine(hostile);
  console.progress(hostile);

  EXPECT_EQ(testing::internal::GetCapturedStderr(), "zelvo-avi: " + shown + "\nzelvo-avi: warning: " + shown + "\n" +
                                                        shown + "\n" + shown + "\n\r\033[K" + shown);
}

TEST(ConsoleLog, LinesComeOnlyWhenWanted) {
  Console console(false);
  testing::internal::CaptureStderr();
  ConsoleLog(console, 0).line("silent");
  ConsoleLog(console, 1).line("one\ntwo\x9b");

  EXPECT_EQ(testing::internal::GetCapturedStderr(), "one\\x0atwo\\x9b\n");
  EXPECT_FALSE(ConsoleLog(console, 1).tracesPositions());
  EXPECT_TRUE(ConsoleLog(console, 2).tracesPositions());
}

}  // namespace
}  // namespace zelvo::tests
