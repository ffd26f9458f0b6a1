#include "platform/linux/new_files.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/linux/file_manager.h"
#include "tests/support/temp_folder.h"

namespace zelvo::platform::linux_ {
namespace {

namespace fs = std::filesystem;

class NewFilesOnLinux : public testing::Test {
 protected:
  const tests::TempFolder folder_;
  LinuxNewFiles newFiles_;
};

TEST_F(NewFilesOnLinux, FileIsCreatedEmpty) {
  EXPECT_TRUE(newFiles_.createNewFile(folder_ / "a").file);
  EXPECT_EQ(fs::file_size(folder_ / "a"), 0U);
}

TEST_F(NewFilesOnLinux, ExistingFileIsNotTouched) {
  tests::writeFile(folder_ / "a", "mine");
  EXPECT_EQ(newFiles_.createNewFile(folder_ / "a").error, std::errc::file_exists);
  EXPECT_EQ(tests::readFile(folder_ / "a"), "mine");
}

TEST_F(NewFilesOnLinux, DanglingLinkIsNotFollowed) {
  fs::create_symlink("nowhere", folder_ / "a");
  EXPECT_EQ(newFiles_.createNewFile(folder_ / "a").error, std::errc::file_exists);
  EXPECT_FALSE(fs::exists(folder_ / "nowhere"));
}

TEST_F(NewFilesOnLinux, RenameTakesAFreeName) {
  tests::writeFile(folder_ / "a", "content");
  EXPECT_FALSE(newFiles_.renameToNew(folder_ / "a", folder_ / "b"));
  EXPECT_EQ(folder_.names(), std::vector<std::string>{"b"});
}

TEST_F(NewFilesOnLinux, RenameReplacesNothing) {
  tests::writeFile(folder_ / "a", "new");
  tests::writeFile(folder_ / "b", "mine");
  EXPECT_EQ(newFiles_.renameToNew(folder_ / "a", folder_ / "b"), std::errc::file_exists);
  EXPECT_EQ(tests::readFile(folder_ / "a"), "new");
  EXPECT_EQ(tests::readFile(folder_ / "b"), "mine");
}

TEST_F(NewFilesOnLinux, RenameOfNothingIsAnError) {
  EXPECT_EQ(newFiles_.renameToNew(folder_ / "a", folder_ / "b"), std::errc::no_such_file_or_directory);
}

TEST_F(NewFilesOnLinux, PermissionsAreSetAndTold) {
  tests::writeFile(folder_ / "a", "");
  LinuxFileManager manager;
  for (const std::uint32_t permissions : {0600U, 0644U, 0751U}) {
    EXPECT_FALSE(newFiles_.setPermissions(folder_ / "a", permissions));
    EXPECT_EQ(manager.attributes(folder_ / "a")->permissions, permissions);
  }
  EXPECT_EQ(newFiles_.setPermissions(folder_ / "b", 0600), std::errc::no_such_file_or_directory);
}

TEST_F(NewFilesOnLinux, FolderIsFlushedAndNothingElse) {
  tests::writeFile(folder_ / "a", "");
  EXPECT_FALSE(newFiles_.flushFolder(folder_.path()));
  EXPECT_FALSE(newFiles_.flushFolder("/proc")) << "a file system that cannot do it";
  EXPECT_EQ(newFiles_.flushFolder(folder_ / "none"), std::errc::no_such_file_or_directory);
  EXPECT_EQ(newFiles_.flushFolder(folder_ / "a"), std::errc::not_a_directory);
}

}  // namespace
}  // namespace zelvo::platform::linux_
