#include "platform/linux/log.h"

#include <gtest/gtest.h>

#include <string>

namespace zelvo::tests {
namespace {

using platform::linux_::StandardErrorLog;
using platform::linux_::withoutControlCharacters;

TEST(LinuxLog, ControlCharactersAreShownAsHexNumbers) {
  EXPECT_EQ(withoutControlCharacters("a\nb\tc\x1b[31m\x7f"), "a\\x0ab\\x09c\\x1b[31m\\x7f");
  EXPECT_EQ(withoutControlCharacters({"a\0b", 3}), "a\\x00b");
}

TEST(LinuxLog, OtherTextStaysAsItIs) {
  EXPECT_EQ(withoutControlCharacters("Pfad=/tmp/\u00e4 %s%n \\x0a"), "Pfad=/tmp/\u00e4 %s%n \\x0a");
  EXPECT_EQ(withoutControlCharacters(""), "");
}

TEST(LinuxLog, StandardErrorGetsOneLineWithThePrefix) {
  StandardErrorLog log("zelvo: ", false);
  testing::internal::CaptureStderr();
  log.line("Sector=1\nforged");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "zelvo: Sector=1\\x0aforged\n");
}

TEST(LinuxLog, PercentSignsAreNoFormat) {
  StandardErrorLog log("", false);
  testing::internal::CaptureStderr();
  log.line("%s%n%i");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "%s%n%i\n");
}

TEST(LinuxLog, TracesPositionsOnlyWhenToldTo) {
  EXPECT_FALSE(StandardErrorLog("", false).tracesPositions());
  EXPECT_TRUE(StandardErrorLog("", true).tracesPositions());
}

TEST(LinuxLog, SystemLogTakesAnyTextAndTracesNoPositions) {
  platform::linux_::SystemLog log("zelvo-test");
  log.line("%s%n \x1b " + std::string(10000, 'x'));
  EXPECT_FALSE(log.tracesPositions());
}

}  // namespace
}  // namespace zelvo::tests
