#include "platform/linux/locked_files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "platform/linux/new_files.h"
#include "tests/support/temp_folder.h"

namespace zelvo::platform::linux_ {
namespace {

using std::chrono::milliseconds;

const auto kGoOn = [] { return true; };

TEST(LockedFiles, SecondHolderWaitsNoLongerThanItMay) {
  const tests::TempFolder folder;
  LinuxLockedFiles files;
  auto first = files.openText(folder / "journal", milliseconds(0), kGoOn);
  ASSERT_TRUE(first.text);
  EXPECT_EQ(files.openText(folder / "journal", milliseconds(0), kGoOn).error, std::errc::timed_out);
  first.text.reset();
  EXPECT_TRUE(files.openText(folder / "journal", milliseconds(0), kGoOn).text);
}

TEST(LockedFiles, WaitEndsWhenItIsToldTo) {
  const tests::TempFolder folder;
  LinuxLockedFiles files;
  const auto first = files.openText(folder / "journal", milliseconds(0), kGoOn);
  int asked = 0;
  const auto second = files.openText(folder / "journal", std::chrono::hours(1), [&] { return ++asked < 3; });
  EXPECT_EQ(second.error, std::errc::timed_out);
  EXPECT_EQ(asked, 3);
}

TEST(LockedFiles, TextGrowsAtItsEndAndCanBeCut) {
  const tests::TempFolder folder;
  folder.put("journal", "old\n");
  const auto opened = LinuxLockedFiles().openText(folder / "journal", milliseconds(0), kGoOn);
  EXPECT_FALSE(opened.text->append("one\n"));
  EXPECT_FALSE(opened.text->append("two\n"));
  EXPECT_EQ(folder.content("journal"), "old\none\ntwo\n");
  EXPECT_FALSE(opened.text->cutTo(8));
  EXPECT_FALSE(opened.text->cutTo(100));
  EXPECT_EQ(folder.content("journal"), "old\none\n");
  EXPECT_EQ(opened.text->size(), 8U);
}

TEST(LockedFiles, WhatIsNoRegularFileIsNotOpened) {
  const tests::TempFolder folder;
  ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
  EXPECT_TRUE(LinuxLockedFiles().openText(folder / "pipe", milliseconds(0), kGoOn).error);
  EXPECT_TRUE(LinuxLockedFiles().openText(folder.path(), milliseconds(0), kGoOn).error);
  EXPECT_FALSE(LinuxLockedFiles().lockFile(folder / "pipe"));
}

TEST(LockedFiles, LinksAndMissingFilesAreNotLocked) {
  const tests::TempFolder folder;
  folder.put("file", "x");
  std::filesystem::create_symlink("file", folder / "link");
  EXPECT_FALSE(LinuxLockedFiles().lockFile(folder / "link"));
  EXPECT_FALSE(LinuxLockedFiles().lockFile(folder / "missing"));
  const auto lock = LinuxLockedFiles().lockFile(folder / "file");
  EXPECT_TRUE(lock);
  EXPECT_FALSE(LinuxLockedFiles().lockFile(folder / "file"));
}

TEST(LockedFiles, NewFileStaysLockedUnderItsNewName) {
  const tests::TempFolder folder;
  LinuxNewFiles newFiles;
  auto created = newFiles.createNewFile(folder / "hidden");
  auto lock = newFiles.lockNewFile(folder / "hidden");
  ASSERT_TRUE(lock);
  EXPECT_FALSE(created.file->close());
  EXPECT_FALSE(newFiles.renameToNew(folder / "hidden", folder / "final"));
  EXPECT_FALSE(LinuxLockedFiles().lockFile(folder / "final"));
  lock.reset();
  EXPECT_TRUE(LinuxLockedFiles().lockFile(folder / "final"));
}

}  // namespace
}  // namespace zelvo::platform::linux_
