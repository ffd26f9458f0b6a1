#include "platform/linux/chooser_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>

#include "tests/platform/linux/ordinary_user.h"
#include "tests/support/temp_folder.h"

namespace zelvo::tests {
namespace {

using platform::FileFilter;
using platform::FolderEntry;
using platform::FolderListing;
using platform::PathKind;
using testing::ElementsAre;
using testing::IsEmpty;

class ChooserFilesTest : public testing::Test {
 protected:
  [[nodiscard]] FolderListing read(const std::string& path,
                                   const FileFilter& filter = {.files = true, .extensions = {"avi"}}) {
    FolderListing listing = files.read(path, filter, std::atomic<bool>(false));
    std::sort(listing.entries.begin(), listing.entries.end(),
              [](const FolderEntry& left, const FolderEntry& right) { return left.name < right.name; });
    return listing;
  }
  [[nodiscard]] static std::vector<std::string> namesOf(const FolderListing& listing) {
    std::vector<std::string> names;
    for (const FolderEntry& one : listing.entries) names.push_back(one.name);
    return names;
  }

  TempFolder folder;
  platform::linux_::LinuxChooserFiles files;
};

TEST_F(ChooserFilesTest, FileHasItsSize) {
  folder.put("b.avi", "12");
  const FolderListing listing = read(folder.path());
  ASSERT_EQ(listing.entries.size(), 1U);
  EXPECT_EQ(listing.folder, folder.path());
  EXPECT_EQ(listing.entries.front().size, 2U);
  EXPECT_GT(listing.entries.front().changed, 0);
  EXPECT_FALSE(listing.entries.front().isFolder);
}

TEST_F(ChooserFilesTest, OnlyWhatTheFilterLetsThroughIsTold) {
  folder.put("b.avi", "12");
  folder.put("B.AVI", "12");
  folder.put("c.txt", "12");
  folder.put(".hidden.avi", "12");
  std::filesystem::create_directory(folder.path("folder"));
  std::filesystem::create_symlink(folder.path("gone"), folder.path("lost.avi"));
  EXPECT_THAT(namesOf(read(folder.path())), ElementsAre("B.AVI", "b.avi", "folder"));
  EXPECT_THAT(namesOf(read(folder.path(), {.files = false, .extensions = {}})), ElementsAre("folder"));
}

TEST_F(ChooserFilesTest, FolderThatCannotBeReadSaysWhy) {
  EXPECT_EQ(read(folder.path("gone")).failure, std::errc::no_such_file_or_directory);
  EXPECT_EQ(read(folder.put("f.avi", "")).failure, std::errc::not_a_directory);
}

TEST_F(ChooserFilesTest, LinkToAFolderIsAFolder) {
  std::filesystem::create_directory(folder.path("real"));
  std::filesystem::create_directory_symlink(folder.path("real"), folder.path("link"));
  EXPECT_THAT(namesOf(read(folder.path(), {.files = false, .extensions = {}})), ElementsAre("link", "real"));
  EXPECT_EQ(files.kindOf(folder.path("link")), PathKind::folder);
}

TEST_F(ChooserFilesTest, AbandonedReadingEnds) {
  folder.put("b.avi", "12");
  EXPECT_THAT(files.read(folder.path(), {}, std::atomic<bool>(true)).entries, IsEmpty());
}

TEST_F(ChooserFilesTest, KindIsThatOfWhatThePathLeadsTo) {
  EXPECT_EQ(files.kindOf(folder.path()), PathKind::folder);
  EXPECT_EQ(files.kindOf(folder.put("a", "")), PathKind::ordinaryFile);
  EXPECT_EQ(files.kindOf(folder.path("gone")), PathKind::nothing);
  EXPECT_EQ(files.kindOf("/dev/null"), PathKind::other);
}

TEST_F(ChooserFilesTest, OneMoreFolderOfANameIsRefused) {
  EXPECT_FALSE(files.makeFolder(folder.path("made")));
  EXPECT_EQ(files.kindOf(folder.path("made")), PathKind::folder);
  EXPECT_EQ(files.makeFolder(folder.path("made")), std::errc::file_exists);
  EXPECT_EQ(files.makeFolder(folder.path("gone/made")), std::errc::no_such_file_or_directory);
}

TEST_F(ChooserFilesTest, PermissionsAreThoseOfTheUser) {
  EXPECT_TRUE(files.mayRead(folder.put("a", "")));
  EXPECT_FALSE(files.mayRead(folder.path("gone")));
  EXPECT_TRUE(files.mayMakeEntriesIn(folder.path()));
  EXPECT_FALSE(files.mayMakeEntriesIn(folder.path("gone")));
}

}  // namespace
}  // namespace zelvo::tests
