#include "platform/linux/bundle.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "platform/linux/files.h"
#include "platform/linux/property_lists.h"
#include "platform/path_mapper.h"
#include "tests/support/temp_folder.h"

namespace zelvo::tests {
namespace {

using Bundle = platform::linux_::LinuxBundle;

class LinuxBundle : public testing::Test {
 protected:
  [[nodiscard]] Bundle bundleOf(const std::string& program) { return {files_, lists_, program}; }

  /// A bundle in the test's folder whose list is `content`, seen by a program in it.
  [[nodiscard]] Bundle bundleWithList(const std::string& content) {
    std::filesystem::create_directories(folder_.path("A.app/Contents"));
    folder_.put("A.app/Contents/Info.plist", content);
    return bundleOf(folder_.path("A.app/Contents/MacOS/program"));
  }

  [[nodiscard]] static std::string listOf(const std::string& members) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>" + members + "</dict></plist>\n";
  }

  TempFolder folder_;

 private:
  platform::linux_::LinuxFiles files_;
  platform::linux_::LinuxPropertyLists lists_;
};

TEST_F(LinuxBundle, PathIsTheFolderThatHoldsContents) {
  EXPECT_EQ(bundleOf("/some where/Any Name.app/Contents/MacOS/program").bundlePath(), "/some where/Any Name.app");
}

TEST_F(LinuxBundle, PrefixIsWhatComesBeforeTheBundle) {
  const std::string below(Bundle::kBelowPrefix);
  EXPECT_EQ(bundleOf("/opt" + below + "/Contents/MacOS/zelvo-avi-repair").prefix(), "/opt");
  EXPECT_EQ(bundleOf("/home/a user/b" + below + "/Contents/MacOS/zelvo-avi-repair").prefix(), "/home/a user/b");
}

TEST_F(LinuxBundle, BundleBelowTheRootHasTheRootAsPrefix) {
  EXPECT_EQ(bundleOf(std::string(Bundle::kBelowPrefix) + "/Contents/MacOS/zelvo-avi-repair").prefix(), "/");
}

TEST_F(LinuxBundle, BundleElsewhereHasNoPrefix) {
  EXPECT_FALSE(bundleOf("/Applications/Zelvo AVI Repair.app/Contents/MacOS/program").prefix());
  EXPECT_FALSE(bundleOf("/zelvo/avi-repair/Applications/Zelvo AVI Repair.app/Contents/MacOS/program").prefix());
}

TEST_F(LinuxBundle, MapperWithThePrefixFindsTheBundle) {
  const auto bundle = bundleOf("/opt" + std::string(Bundle::kBelowPrefix) + "/Contents/MacOS/zelvo-avi-repair");
  const platform::PathMapper mapper(*bundle.prefix());
  EXPECT_EQ(mapper.mapped(platform::FixedPath("/Applications/Zelvo AVI Repair/Zelvo AVI Repair.app")),
            bundle.bundlePath());
}

TEST_F(LinuxBundle, FolderOfAProgramOutsideABundleStandsForThePrefix) {
  const auto bundle = bundleOf("/home/someone/build/bin/zelvo-avi-repair");
  EXPECT_EQ(bundle.bundlePath(), "/home/someone/build/bin" + std::string(Bundle::kBelowPrefix));
  EXPECT_EQ(bundle.prefix(), "/home/someone/build/bin");
}

TEST_F(LinuxBundle, ContentsMacOSAtTheRootIsNoBundle) {
  EXPECT_EQ(bundleOf("/Contents/MacOS/program").prefix(), "/Contents/MacOS");
}

TEST_F(LinuxBundle, UnknownProgramStillHasABundlePathThatNothingElseUses) {
  EXPECT_EQ(bundleOf("").bundlePath(), std::string(Bundle::kBelowPrefix));
}

TEST_F(LinuxBundle, TextsOfTheListAreAnswered) {
  const auto bundle = bundleWithList(
      listOf("<key>CFBundleShortVersionString</key><string>1.2</string><key>cloudPlistUrl</key><string></string>"));
  EXPECT_EQ(bundle.infoText("CFBundleShortVersionString"), "1.2");
  EXPECT_EQ(bundle.infoText("cloudPlistUrl"), "");
}

TEST_F(LinuxBundle, MissingKeyAndOneThatIsNoTextAnswerNothing) {
  const auto bundle = bundleWithList(listOf("<key>a</key><true/>"));
  EXPECT_FALSE(bundle.infoText("a"));
  EXPECT_FALSE(bundle.infoText("b"));
}

TEST_F(LinuxBundle, ListIsReadOnceWhenTheBundleIsMade) {
  const auto bundle = bundleWithList(listOf("<key>a</key><string>before</string>"));
  folder_.put("A.app/Contents/Info.plist", listOf("<key>a</key><string>after</string>"));
  EXPECT_EQ(bundle.infoText("a"), "before");
}

TEST_F(LinuxBundle, WithoutAReadableListEveryKeyIsMissing) {
  EXPECT_FALSE(bundleOf(folder_.path("B.app/Contents/MacOS/program")).infoText("a"));
  EXPECT_FALSE(bundleWithList("no list").infoText("a"));
  EXPECT_FALSE(bundleWithList("<plist><array/></plist>").infoText("a"));
}

TEST_F(LinuxBundle, ListTooLargeToBeOursIsNotRead) {
  const std::string text(std::size_t{1024} * 1024, 'x');
  EXPECT_FALSE(bundleWithList(listOf("<key>a</key><string>" + text + "</string>")).infoText("a"));
}

TEST_F(LinuxBundle, RunningProgramIsThisTest) {
  const std::string program = Bundle::runningProgram();
  EXPECT_EQ(::access(program.c_str(), X_OK), 0);
  EXPECT_TRUE(std::filesystem::equivalent(program, "/proc/self/exe"));
}

}  // namespace
}  // namespace zelvo::tests
