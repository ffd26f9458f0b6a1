#include "update/places.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "tests/platform/linux/processes.h"
#include "tests/support/temp_folder.h"

namespace zelvo::tests {
namespace {

namespace fs = std::filesystem;

/// Asks as an ordinary user, since root may do everything. The files belong to that user.
class WriteDeletablePath : public testing::Test {
 protected:
  void SetUp() override {
    fs::permissions(temp.path(), fs::perms(0755));
    fs::copy_file(ZELVO_SERVICE_PROBE, temp / "probe");
    writeFile(temp / "outer/inner/file", "");
    giveAway();
  }
  void TearDown() override {
    for (const char* folder : {"outer", "outer/inner"}) fs::permissions(temp / folder, fs::perms(0755));
  }
  void giveAway() const {
    if (::geteuid() != 0) return;
    for (const char* path : {"outer", "outer/inner", "outer/inner/file"}) {
      ASSERT_EQ(::lchown((temp / path).c_str(), 65534, 65534), 0);
    }
  }
  [[nodiscard]] std::string answer(const std::string& path) const {
    const std::string probe = quoted(temp / "probe") + " deletable " + quoted(path);
    const std::string asOther = "setpriv --reuid=65534 --regid=65534 --clear-groups ";
    const Ended ended = runShell(::geteuid() == 0 ? asOther + probe : probe);
    EXPECT_EQ(ended.status, 0) << ended.output;
    return ended.output;
  }

  TempFolder temp;
};

TEST_F(WriteDeletablePath, WritableFileInAWritableFolderIs) { EXPECT_EQ(answer(temp / "outer/inner/file"), "yes\n"); }

TEST_F(WriteDeletablePath, WritableFileInAFolderThatCannotBeWrittenIsNot) {
  fs::permissions(temp / "outer/inner", fs::perms(0555));
  EXPECT_EQ(answer(temp / "outer/inner/file"), "no\n");
}

TEST_F(WriteDeletablePath, FileThatCannotBeWrittenIsNot) {
  fs::permissions(temp / "outer/inner/file", fs::perms(0444));
  EXPECT_EQ(answer(temp / "outer/inner/file"), "no\n");
}

TEST_F(WriteDeletablePath, FolderThatCannotBeDeletedMakesItNot) {
  fs::permissions(temp / "outer", fs::perms(0555));
  EXPECT_EQ(answer(temp / "outer/inner/file"), "no\n");
}

TEST_F(WriteDeletablePath, MissingFileIsNot) { EXPECT_EQ(answer(temp / "outer/inner/missing"), "no\n"); }

TEST_F(WriteDeletablePath, FolderIsAskedAboutLikeAFile) {
  fs::create_directory(temp / "outer/inner/folder");
  if (::geteuid() == 0) {
    ASSERT_EQ(::lchown((temp / "outer/inner/folder").c_str(), 65534, 65534), 0);
  }
  EXPECT_EQ(answer(temp / "outer/inner/folder"), "yes\n");
}

/// A file and its folder, each of which may be written and deleted unless it is listed here.
class Permissions final : public platform::FileManager {
 public:
  std::optional<platform::FileAttributes> attributes(const std::string&) override { return std::nullopt; }
  std::optional<platform::FileAttributes> attributesFollowingLinks(const std::string&) override { return std::nullopt; }
  std::optional<std::uint64_t> freeSpace(const std::string&) override { return std::nullopt; }
  bool exists(const std::string&) override { return true; }
  std::error_code createFile(const std::string&) override { return {}; }
  std::error_code createFolder(const std::string&) override { return {}; }
  std::error_code rename(const std::string&, const std::string&) override { return {}; }
  std::error_code remove(const std::string&) override { return {}; }
  std::vector<std::string> list(const std::string&) override { return {}; }
  std::optional<std::string> linkTarget(const std::string&) override { return std::nullopt; }
  bool isWritable(const std::string& path) override { return refused != "write " + path; }
  bool isDeletable(const std::string& path) override { return refused != "delete " + path; }

  std::string refused;
};

TEST(WriteDeletablePathConditions, FileAndFolderMustEachBeWritableAndDeletable) {
  Permissions permissions;
  EXPECT_TRUE(update::isWriteDeletablePath(permissions, "/outer/inner/file"));
  for (const char* refused :
       {"write /outer/inner/file", "delete /outer/inner/file", "write /outer/inner", "delete /outer/inner"}) {
    permissions.refused = refused;
    EXPECT_FALSE(update::isWriteDeletablePath(permissions, "/outer/inner/file")) << refused;
  }
}

TEST(WriteDeletablePathConditions, WhatLiesAboveTheFolderIsNotAskedAbout) {
  Permissions permissions;
  for (const char* refused : {"write /outer", "delete /outer"}) {
    permissions.refused = refused;
    EXPECT_TRUE(update::isWriteDeletablePath(permissions, "/outer/inner/file")) << refused;
  }
}

TEST_F(WriteDeletablePath, RootOfAllIsNot) { EXPECT_EQ(answer("/"), "no\n"); }

}  // namespace
}  // namespace zelvo::tests
