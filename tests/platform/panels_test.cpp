#include "platform/panels.h"

#include <gtest/gtest.h>

namespace zelvo::tests {
namespace {

using platform::AlertPanel;
using platform::dismissalAnswer;
using platform::hasAllowedFileType;

TEST(AlertPanel, EscIsCancelWhereverItStands) {
  EXPECT_EQ(dismissalAnswer({"", "", "Cancel", "Yes", {}}), platform::kAlertDefault);
  EXPECT_EQ(dismissalAnswer({"", "", "Yes", "Cancel", {}}), platform::kAlertAlternate);
  EXPECT_EQ(dismissalAnswer({"", "", "Yes", "No", "Cancel"}), platform::kAlertOther);
}

TEST(AlertPanel, WithoutCancelEscIsTheAlternateButton) {
  EXPECT_EQ(dismissalAnswer({"", "", "YES", "NO", ""}), platform::kAlertAlternate);
}

TEST(AlertPanel, WithOneButtonEscIsThatButton) {
  EXPECT_EQ(dismissalAnswer({"", "", "OK", {}, {}}), platform::kAlertDefault);
  EXPECT_EQ(dismissalAnswer({"", "", "OK", "", ""}), platform::kAlertDefault);
  EXPECT_EQ(dismissalAnswer({}), platform::kAlertDefault);
}

TEST(FileType, MatchesTheExtensionInAnyLetterCase) {
  const std::vector<std::string> types = {"avi", "divx"};
  EXPECT_TRUE(hasAllowedFileType("/a/b.avi", types));
  EXPECT_TRUE(hasAllowedFileType("/a/b.DivX", types));
  EXPECT_TRUE(hasAllowedFileType("b.c.avi", types));
}

TEST(FileType, RefusesEverythingElse) {
  const std::vector<std::string> types = {"avi", "divx"};
  for (const char* path : {"/a/b.mov", "/a/b", "/a.avi/b", "/a/b.avi2", "/a/b.av", "/a/b.", "", "/a/b.avi/"}) {
    EXPECT_FALSE(hasAllowedFileType(path, types)) << path;
  }
}

TEST(FileType, NoListAllowsEverything) { EXPECT_TRUE(hasAllowedFileType("/a/b.mov", {})); }

}  // namespace
}  // namespace zelvo::tests
