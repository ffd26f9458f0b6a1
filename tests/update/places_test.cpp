#include "update/places.h"

#include <gtest/gtest.h>

#include "update/update_paths.h"

namespace zelvo::tests {
namespace {

using update::withoutLastComponent;
using update::withoutLastComponents;

TEST(PathComponents, TheLastOneIsTakenOff) {
  EXPECT_EQ(withoutLastComponent("/a/b c/d.app"), "/a/b c");
  EXPECT_EQ(withoutLastComponent("a/b"), "a");
}

TEST(PathComponents, SlashesAtTheEndCountForNothing) {
  EXPECT_EQ(withoutLastComponent("/a/b/"), "/a");
  EXPECT_EQ(withoutLastComponent("/a//b//"), "/a");
}

TEST(PathComponents, TheRootStays) {
  EXPECT_EQ(withoutLastComponent("/a"), "/");
  EXPECT_EQ(withoutLastComponent("/"), "/");
  EXPECT_EQ(withoutLastComponents("/a/b", 4), "/");
}

TEST(PathComponents, ASingleNameLeavesNothing) {
  EXPECT_EQ(withoutLastComponent("a"), "");
  EXPECT_EQ(withoutLastComponent(""), "");
}

TEST(PathComponents, FourLevelsAboveTheInstalledBundleLiesTheMakersFolder) {
  EXPECT_EQ(update::paths::kLevelsUp, 4);
  EXPECT_EQ(withoutLastComponents("/opt/zelvo/avi-repair/Applications/Zelvo AVI Repair/Zelvo AVI Repair.app", 4),
            "/opt/zelvo");
}

TEST(WebAddress, OnlySpacesAreEscaped) {
  EXPECT_EQ(update::withSpacesEscaped("http://a/b c/%41?d=\xC3\xA4 \t"), "http://a/b%20c/%41?d=\xC3\xA4%20\t");
  EXPECT_EQ(update::withSpacesEscaped(""), "");
}

}  // namespace
}  // namespace zelvo::tests
