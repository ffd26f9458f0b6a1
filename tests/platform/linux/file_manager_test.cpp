#include "platform/linux/file_manager.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/platform/linux/kept_blocks.h"
#include "tests/platform/linux/ordinary_user.h"
#include "tests/support/temp_folder.h"

namespace zelvo::tests {
namespace {

using Kind = platform::FileAttributes::Kind;
namespace fs = std::filesystem;

constexpr unsigned kNobody = 65534;

class LinuxFileManager : public testing::Test {
 protected:
  TempFolder folder;
  platform::linux_::LinuxFileManager manager;
};

TEST_F(LinuxFileManager, AttributesTellKindAndSize) {
  const auto file = manager.attributes(folder.put("a", "0123456789"));
  ASSERT_TRUE(file.has_value());
  EXPECT_EQ(file->kind, Kind::regularFile);
  EXPECT_EQ(file->size, 10U);
  EXPECT_EQ(manager.attributes(folder.path())->kind, Kind::folder);
  EXPECT_EQ(manager.attributes("/dev/null")->kind, Kind::other);
}

TEST_F(LinuxFileManager, AttributesOfALinkAreItsOwn) {
  folder.put("a", "0123456789");
  fs::create_symlink("a", folder.path("link"));
  EXPECT_EQ(manager.attributes(folder.path("link"))->kind, Kind::symbolicLink);
  EXPECT_EQ(manager.attributes(folder.path("link"))->size, 1U);
  EXPECT_EQ(manager.attributesFollowingLinks(folder.path("link"))->kind, Kind::regularFile);
  EXPECT_EQ(manager.attributesFollowingLinks(folder.path("link"))->size, 10U);
}

TEST_F(LinuxFileManager, NothingThereHasNoAttributes) {
  EXPECT_FALSE(manager.attributes(folder.path("none")).has_value());
  EXPECT_FALSE(manager.attributesFollowingLinks(folder.path("none")).has_value());
  EXPECT_FALSE(manager.exists(folder.path("none")));
}

TEST_F(LinuxFileManager, LinkToNothingIsALinkButDoesNotExist) {
  fs::create_symlink("none", folder.path("link"));
  EXPECT_TRUE(manager.attributes(folder.path("link")).has_value());
  EXPECT_FALSE(manager.attributesFollowingLinks(folder.path("link")).has_value());
  EXPECT_FALSE(manager.exists(folder.path("link")));
}

TEST_F(LinuxFileManager, LinkThatGoesInCirclesDoesNotExist) {
  fs::create_symlink("b", folder.path("a"));
  fs::create_symlink("a", folder.path("b"));
  EXPECT_FALSE(manager.exists(folder.path("a")));
}

TEST_F(LinuxFileManager, TwoNamesOfOneFileHaveOneIdentity) {
  folder.put("a", "x");
  folder.put("c", "x");
  fs::create_hard_link(folder.path("a"), folder.path("b"));
  const auto a = manager.attributes(folder.path("a"));
  const auto b = manager.attributes(folder.path("b"));
  const auto c = manager.attributes(folder.path("c"));
  EXPECT_EQ(a->identity, b->identity);
  EXPECT_EQ(a->device, b->device);
  EXPECT_NE(a->identity, c->identity);
}

TEST_F(LinuxFileManager, FreeSpaceIsWhatThisUserMayStillWrite) {
  const auto space = manager.freeSpace(folder.path());
  ASSERT_TRUE(space.has_value());
  const fs::space_info info = fs::space(folder.path());
  EXPECT_LE(*space, info.capacity);
  // Others write to the disk meanwhile; a wrong unit would be far off all the same.
  EXPECT_NEAR(static_cast<double>(*space), static_cast<double>(info.available),
              0.5 * static_cast<double>(info.available) + 1e9);
}

TEST_F(LinuxFileManager, BlocksThatAreKeptBackForRootAreNotFree) {
  const auto place = placeThatKeepsBlocksBack();
  if (!place) GTEST_SKIP() << "no file system here keeps blocks back";
  EXPECT_NEAR(static_cast<double>(*manager.freeSpace(place->path)), place->available, place->kept / 2);
}

TEST_F(LinuxFileManager, FreeSpaceOfNoPathIsNotKnown) {
  EXPECT_FALSE(manager.freeSpace(folder.path("none")).has_value());
}

TEST_F(LinuxFileManager, CreateFileCreatesOrEmpties) {
  EXPECT_FALSE(manager.createFile(folder.path("new")));
  EXPECT_EQ(manager.attributes(folder.path("new"))->size, 0U);
  folder.put("old", "content");
  EXPECT_FALSE(manager.createFile(folder.path("old")));
  EXPECT_EQ(folder.content("old"), "");
}

TEST_F(LinuxFileManager, CreateFileSaysWhyItCannot) {
  EXPECT_EQ(manager.createFile(folder.path("none/new")), std::errc::no_such_file_or_directory);
  EXPECT_EQ(manager.createFile(folder.path()), std::errc::is_a_directory);
  folder.put("file", "");
  EXPECT_EQ(manager.createFile(folder.path("file/new")), std::errc::not_a_directory);
}

TEST_F(LinuxFileManager, CreateFolderTakesOneThatIsThere) {
  EXPECT_FALSE(manager.createFolder(folder.path("new")));
  EXPECT_FALSE(manager.createFolder(folder.path("new")));
  EXPECT_EQ(manager.attributes(folder.path("new"))->kind, Kind::folder);
}

TEST_F(LinuxFileManager, CreateFolderSaysWhyItCannot) {
  EXPECT_EQ(manager.createFolder(folder.path("none/new")), std::errc::no_such_file_or_directory);
  folder.put("file", "");
  EXPECT_EQ(manager.createFolder(folder.path("file")), std::errc::file_exists);
}

TEST_F(LinuxFileManager, RenameReplaces) {
  folder.put("from", "new");
  folder.put("to", "old");
  EXPECT_FALSE(manager.rename(folder.path("from"), folder.path("to")));
  EXPECT_EQ(folder.content("to"), "new");
  EXPECT_FALSE(manager.exists(folder.path("from")));
}

TEST_F(LinuxFileManager, RenameSaysWhyItCannot) {
  EXPECT_EQ(manager.rename(folder.path("none"), folder.path("to")), std::errc::no_such_file_or_directory);
}

TEST_F(LinuxFileManager, RemovesFilesAndWholeFolders) {
  folder.put("file", "");
  fs::create_directories(folder.path("a/b/c"));
  folder.put("a/b/file", "");
  EXPECT_FALSE(manager.remove(folder.path("file")));
  EXPECT_FALSE(manager.remove(folder.path("a")));
  EXPECT_TRUE(manager.list(folder.path()).empty());
}

TEST_F(LinuxFileManager, RemovesALinkNotItsTarget) {
  fs::create_directory(folder.path("target"));
  folder.put("target/file", "x");
  fs::create_directory_symlink("target", folder.path("link"));
  EXPECT_FALSE(manager.remove(folder.path("link")));
  EXPECT_FALSE(manager.attributes(folder.path("link")).has_value());
  EXPECT_EQ(folder.content("target/file"), "x");
}

TEST_F(LinuxFileManager, RemovingNothingIsNoError) { EXPECT_FALSE(manager.remove(folder.path("none"))); }

TEST_F(LinuxFileManager, ListsNamesSortedHiddenOnesToo) {
  for (const char* name : {"b", "a", ".hidden", "C"}) folder.put(name, "");
  EXPECT_EQ(manager.list(folder.path()), (std::vector<std::string>{".hidden", "C", "a", "b"}));
}

TEST_F(LinuxFileManager, ListOfNoFolderIsEmpty) {
  EXPECT_TRUE(manager.list(folder.path("none")).empty());
  EXPECT_TRUE(manager.list(folder.put("file", "")).empty());
}

TEST_F(LinuxFileManager, LinkTargetIsAsItIsWritten) {
  fs::create_symlink("../some where/x", folder.path("link"));
  EXPECT_EQ(manager.linkTarget(folder.path("link")), "../some where/x");
  EXPECT_FALSE(manager.linkTarget(folder.put("file", "")).has_value());
  EXPECT_FALSE(manager.linkTarget(folder.path("none")).has_value());
}

TEST_F(LinuxFileManager, WritableIsWhatThisUserMayWrite) {
  const std::string open = folder.put("open", "");
  const std::string closed = folder.put("closed", "");
  ::chmod(open.c_str(), 0666);
  ::chmod(closed.c_str(), 0444);
  EXPECT_TRUE(holdsForAnOrdinaryUser([&] { return manager.isWritable(open); }));
  EXPECT_TRUE(holdsForAnOrdinaryUser([&] { return !manager.isWritable(closed); }));
  EXPECT_FALSE(manager.isWritable(folder.path("none")));
}

// ---- Deletable ----

TEST_F(LinuxFileManager, EntryOfAWritableFolderIsDeletable) {
  EXPECT_TRUE(manager.isDeletable(folder.put("a", "")));
  fs::create_directory(folder.path("sub"));
  EXPECT_TRUE(manager.isDeletable(folder.path("sub")));
  EXPECT_TRUE(manager.isDeletable(folder.path("sub/")));
}

TEST_F(LinuxFileManager, RootFolderAndWhatIsNotThereAreNeverDeletable) {
  EXPECT_FALSE(manager.isDeletable("/"));
  EXPECT_FALSE(manager.isDeletable(folder.path("none")));
}

TEST_F(LinuxFileManager, LinkToNothingIsDeletable) {
  fs::create_symlink("none", folder.path("link"));
  EXPECT_TRUE(manager.isDeletable(folder.path("link")));
}

TEST_F(LinuxFileManager, WritableFileInAnUnwritableFolderIsNotDeletable) {
  fs::create_directory(folder.path("closed"));
  const std::string file = folder.put("closed/a", "");
  ::chmod(file.c_str(), 0666);
  ::chmod(folder.path("closed").c_str(), 0555);
  EXPECT_TRUE(holdsForAnOrdinaryUser([&] { return manager.isWritable(file) && !manager.isDeletable(file); }));
  ::chmod(folder.path("closed").c_str(), 0755);
}

TEST_F(LinuxFileManager, UnwritableFileInAWritableFolderIsDeletable) {
  fs::create_directory(folder.path("open"));
  ::chmod(folder.path("open").c_str(), 0777);
  const std::string file = folder.put("open/a", "");
  ::chmod(file.c_str(), 0444);
  EXPECT_TRUE(holdsForAnOrdinaryUser([&] { return !manager.isWritable(file) && manager.isDeletable(file); }));
}

TEST_F(LinuxFileManager, InAStickyFolderOnlyOwnEntriesAreDeletable) {
  if (::geteuid() != 0) GTEST_SKIP() << "files of two users can be made by root only";
  fs::create_directory(folder.path("sticky"));
  ::chmod(folder.path("sticky").c_str(), 01777);
  const std::string others = folder.put("sticky/others", "");
  const std::string own = folder.put("sticky/own", "");
  ::chmod(others.c_str(), 0666);
  ASSERT_EQ(::chown(own.c_str(), kNobody, kNobody), 0);
  EXPECT_TRUE(holdsForAnOrdinaryUser([&] { return !manager.isDeletable(others); }));
  EXPECT_TRUE(holdsForAnOrdinaryUser([&] { return manager.isDeletable(own); }));
  EXPECT_TRUE(manager.isDeletable(others));  // root may
}

TEST_F(LinuxFileManager, OwnerOfAStickyFolderMayDeleteEverythingInIt) {
  if (::geteuid() != 0) GTEST_SKIP() << "files of two users can be made by root only";
  fs::create_directory(folder.path("sticky"));
  ::chmod(folder.path("sticky").c_str(), 01777);
  ASSERT_EQ(::chown(folder.path("sticky").c_str(), kNobody, kNobody), 0);
  const std::string others = folder.put("sticky/others", "");
  EXPECT_TRUE(holdsForAnOrdinaryUser([&] { return manager.isDeletable(others); }));
}

}  // namespace
}  // namespace zelvo::tests
