#include "platform/linux/folder_trees.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>

#include "tests/platform/linux/processes.h"
#include "tests/support/temp_folder.h"

namespace zelvo::tests {
namespace {

namespace fs = std::filesystem;
using platform::linux_::LinuxFolderTrees;

class FolderTrees : public testing::Test {
 protected:
  [[nodiscard]] std::vector<std::string> names() const {
    std::vector<std::string> found;
    for (const auto& entry : fs::directory_iterator(temp.path())) found.push_back(entry.path().filename());
    std::sort(found.begin(), found.end());
    return found;
  }

  TempFolder temp;
  LinuxFolderTrees trees;
};

TEST_F(FolderTrees, FolderIsCopiedWithItsModes) {
  writeFile(temp / "from/a/program", "content");
  fs::permissions(temp / "from/a/program", fs::perms(0751));
  fs::permissions(temp / "from/a", fs::perms(0710));
  ASSERT_FALSE(trees.copy(temp / "from", temp / "to"));
  EXPECT_EQ(readFile(temp / "to/a/program"), "content");
  EXPECT_EQ(fs::status(temp / "to/a/program").permissions(), fs::perms(0751));
  EXPECT_EQ(fs::status(temp / "to/a").permissions(), fs::perms(0710));
  EXPECT_EQ(names(), (std::vector<std::string>{"from", "to"}));
}

TEST_F(FolderTrees, FileIsCopied) {
  writeFile(temp / "from", "content");
  ASSERT_FALSE(trees.copy(temp / "from", temp / "to"));
  EXPECT_EQ(readFile(temp / "to"), "content");
}

TEST_F(FolderTrees, LinksAreCopiedAsLinks) {
  writeFile(temp / "outside/secret", "secret");
  fs::create_directory(temp / "from");
  fs::create_symlink("nowhere", temp / "from/dangling");
  fs::create_symlink(temp / "outside", temp / "from/folder");
  fs::create_symlink("../outside/secret", temp / "from/file");
  ASSERT_FALSE(trees.copy(temp / "from", temp / "to"));
  EXPECT_EQ(fs::read_symlink(temp / "to/dangling"), "nowhere");
  EXPECT_EQ(fs::read_symlink(temp / "to/folder"), temp / "outside");
  EXPECT_EQ(fs::read_symlink(temp / "to/file"), "../outside/secret");
}

TEST_F(FolderTrees, LinkItselfIsCopiedAsALink) {
  writeFile(temp / "outside/secret", "secret");
  fs::create_symlink("outside", temp / "from");
  ASSERT_FALSE(trees.copy(temp / "from", temp / "to"));
  EXPECT_EQ(fs::read_symlink(temp / "to"), "outside");
}

TEST_F(FolderTrees, WhatIsThereAlreadyIsNotReplaced) {
  writeFile(temp / "from/file", "new");
  fs::create_directory(temp / "folder");
  writeFile(temp / "file", "old");
  fs::create_symlink("nowhere", temp / "link");
  EXPECT_EQ(trees.copy(temp / "from", temp / "folder"), std::errc::file_exists);
  EXPECT_EQ(trees.copy(temp / "from", temp / "file"), std::errc::file_exists);
  EXPECT_EQ(trees.copy(temp / "from", temp / "link"), std::errc::file_exists);
  EXPECT_EQ(readFile(temp / "file"), "old");
  EXPECT_TRUE(fs::is_empty(temp / "folder"));
}

TEST_F(FolderTrees, CopyThatCannotBeWholeLeavesNothing) {
  writeFile(temp / "from/a", "content");
  ASSERT_EQ(::mkfifo((temp / "from/pipe").c_str(), 0600), 0);
  EXPECT_TRUE(trees.copy(temp / "from", temp / "to"));
  EXPECT_TRUE(trees.copy(temp / "missing", temp / "to"));
  EXPECT_TRUE(trees.copy(temp / "from", temp / "no folder/to"));
  EXPECT_EQ(names(), std::vector<std::string>{"from"});
}

TEST_F(FolderTrees, FolderIsRemovedWithAllItHolds) {
  writeFile(temp / "a/b/c/file", "");
  writeFile(temp / "a/file", "");
  fs::create_directory(temp / "a/empty");
  EXPECT_FALSE(trees.remove(temp / "a"));
  EXPECT_TRUE(fs::is_empty(temp.path()));
}

TEST_F(FolderTrees, FileIsRemovedAndNothingThereIsNoError) {
  writeFile(temp / "file", "");
  EXPECT_FALSE(trees.remove(temp / "file"));
  EXPECT_FALSE(trees.remove(temp / "file"));
  EXPECT_FALSE(trees.remove(temp / "no folder/file"));
}

TEST_F(FolderTrees, LinksAreRemovedAndWhatTheyLeadToStays) {
  writeFile(temp / "outside/file", "kept");
  fs::create_directory(temp / "a");
  fs::create_symlink(temp / "outside", temp / "a/link");
  fs::create_symlink(temp / "outside", temp / "link");
  EXPECT_FALSE(trees.remove(temp / "a"));
  EXPECT_FALSE(trees.remove(temp / "link"));
  EXPECT_EQ(names(), std::vector<std::string>{"outside"});
  EXPECT_EQ(readFile(temp / "outside/file"), "kept");
}

TEST_F(FolderTrees, PathsWithoutANameAreRefused) {
  fs::create_directory(temp / "a");
  for (const std::string& path : {std::string("/"), std::string(""), (temp / "a/"), (temp / "a/."), (temp / "a/..")}) {
    EXPECT_EQ(trees.remove(path), std::errc::invalid_argument) << path;
  }
  EXPECT_TRUE(fs::exists(temp / "a"));
}

/// In a mount table of its own; what is mounted is another place of this file system, or one of its own.
class FolderTreesAndMounts : public FolderTrees {
 protected:
  void SetUp() override {
    const std::string reason = whyNoNamespaces("-Urm");
    if (!reason.empty()) GTEST_SKIP() << reason;
    writeFile(temp / "outside/file", "kept");
    writeFile(temp / "a/b/gone", "");
    writeFile(temp / "a/mounted/below", "below");
    writeFile(temp / "a/one file", "");
  }
  /// Mounts, removes "a", and lists what is left in "outside" and in "a" while it is mounted.
  [[nodiscard]] std::string afterRemoval(const std::string& mount) const {
    const std::string commands = "cd " + quoted(temp.path()) + "\n" + mount + "\n" + quoted(ZELVO_SERVICE_PROBE) +
                                 " remove \"$PWD/a\"; find outside a | sort";
    return runShell("unshare -Urm sh -ec " + quoted(commands)).output;
  }
};

TEST_F(FolderTreesAndMounts, AnotherPlaceOfTheSameFileSystemStays) {
  EXPECT_EQ(afterRemoval("mount --bind outside a/mounted"),
            "Invalid cross-device link\na\na/mounted\na/mounted/file\noutside\noutside/file\n");
}

TEST_F(FolderTreesAndMounts, AnotherFileSystemStays) {
  EXPECT_EQ(afterRemoval("mount -t tmpfs none a/mounted; echo > a/mounted/file"),
            "Invalid cross-device link\na\na/mounted\na/mounted/file\noutside\noutside/file\n");
}

TEST_F(FolderTreesAndMounts, MountedFileStays) {
  EXPECT_EQ(afterRemoval("rm -r a/mounted; mount --bind outside/file 'a/one file'"),
            "Invalid cross-device link\na\na/one file\noutside\noutside/file\n");
}

TEST_F(FolderTreesAndMounts, MountAtThePathItselfStays) {
  EXPECT_EQ(afterRemoval("mount --bind outside a"), "Invalid cross-device link\na\na/file\noutside\noutside/file\n");
}

}  // namespace
}  // namespace zelvo::tests
