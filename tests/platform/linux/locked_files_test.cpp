#include "platform/linux/locked_files.h"

#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <functional>
#include <utility>

#include "platform/linux/new_files.h"
#include "tests/support/temp_folder.h"

namespace {

/// What somebody else does between the opening of a file and its locking.
std::function<void()> beforeLocking;

}  // namespace

/// Takes the place of the system's own in this program.
extern "C" int flock(int file, int operation) noexcept {
  if (const auto step = std::exchange(beforeLocking, nullptr)) step();
  return static_cast<int>(::syscall(SYS_flock, file, operation));
}

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

TEST(LockedFiles, FileThatLostItsNameBeforeItWasLockedIsNotLocked) {
  const tests::TempFolder folder;
  folder.put("hidden", "x");
  beforeLocking = [&] { std::filesystem::rename(folder / "hidden", folder / "final"); };
  EXPECT_FALSE(LinuxLockedFiles().lockFile(folder / "hidden")) << "its writer has given it its name, and has ended";
  folder.put("hidden", "y");
  beforeLocking = [&] { std::filesystem::rename(folder / "final", folder / "hidden"); };
  EXPECT_FALSE(LinuxLockedFiles().lockFile(folder / "hidden")) << "another file lies there";
  EXPECT_FALSE(beforeLocking);
  EXPECT_TRUE(LinuxLockedFiles().lockFile(folder / "hidden"));
}

TEST(LockedFiles, TextThatWasReplacedBeforeItWasLockedIsOpenedAgain) {
  const tests::TempFolder folder;
  folder.put("journal", "old\n");
  folder.put("new", "new\n");
  beforeLocking = [&] { std::filesystem::rename(folder / "new", folder / "journal"); };
  const auto opened = LinuxLockedFiles().openText(folder / "journal", milliseconds(0), kGoOn);
  ASSERT_TRUE(opened.text);
  EXPECT_FALSE(opened.text->append("one\n"));
  EXPECT_EQ(folder.content("journal"), "new\none\n");
}

TEST(LockedFiles, TextThatCannotBeWrittenWholeIsNotLeftTorn) {
  const tests::TempFolder folder;
  folder.put("journal", "old\n");
  const auto opened = LinuxLockedFiles().openText(folder / "journal", milliseconds(0), kGoOn);
  struct rlimit before {};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  struct rlimit small = before;
  small.rlim_cur = 10;
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
  const std::error_code error = opened.text->append("a line for which there is no room\n");
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
  std::signal(SIGXFSZ, handler);
  EXPECT_EQ(error, std::errc::file_too_large);
  EXPECT_EQ(folder.content("journal"), "old\n");
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
