#include "app/scratch_path.h"

#include <gtest/gtest.h>

#include "app/counted_files.h"
#include "platform/headless/scratch_paths.h"
#include "tests/support/memory_files.h"

namespace zelvo::tests {
namespace {

TEST(ScratchPath, OneSelectsTheFirstAndAnythingElseTheSecond) {
  platform::headless::HeadlessScratchPaths paths;
  app::ScratchPath scratch(paths);
  EXPECT_EQ(scratch.choose(1, std::nullopt), "/Applications/testfile1.avi");
  EXPECT_EQ(scratch.choose(0, std::nullopt), "/Applications/testfile2.avi");
  EXPECT_EQ(scratch.choose(2, std::nullopt), "/Applications/testfile2.avi");
}

TEST(ScratchPath, AnotherPairTakesOverForGood) {
  platform::headless::HeadlessScratchPaths paths;
  paths.refused = {"/Applications/testfile1.avi"};
  app::ScratchPath scratch(paths);
  EXPECT_EQ(scratch.choose(1, std::nullopt), "/cache/slot1/testfile1.avi");
  paths.refused.clear();
  EXPECT_EQ(scratch.choose(0, std::nullopt), "/cache/slot1/testfile2.avi");
}

TEST(ScratchPath, TheInputItselfIsNeverChosen) {
  platform::headless::HeadlessScratchPaths paths;
  app::ScratchPath scratch(paths);
  EXPECT_EQ(scratch.choose(1, "/Applications/testfile1.avi"), "/cache/slot1/testfile1.avi");
}

TEST(ScratchPath, TheInputMayBeTheOtherFileOfThePair) {
  platform::headless::HeadlessScratchPaths paths;
  app::ScratchPath scratch(paths);
  EXPECT_EQ(scratch.choose(1, "/Applications/testfile2.avi"), "/Applications/testfile1.avi");
}

TEST(ScratchPath, WithoutAnyPairThePathIsEmpty) {
  platform::headless::HeadlessScratchPaths paths;
  paths.pairs.clear();
  app::ScratchPath scratch(paths);
  EXPECT_EQ(scratch.choose(1, std::nullopt), "");
}

TEST(ScratchPath, IsAskedForAnewAsLongAsThereIsNone) {
  platform::headless::HeadlessScratchPaths paths;
  const platform::ScratchPair later = paths.pairs.back();
  paths.pairs.clear();
  app::ScratchPath scratch(paths);
  EXPECT_EQ(scratch.choose(1, std::nullopt), "");
  EXPECT_EQ(scratch.choose(1, std::nullopt), "");
  EXPECT_EQ(paths.claims, 3);

  paths.pairs = {later};

  EXPECT_EQ(scratch.choose(1, std::nullopt), later.first);
  EXPECT_EQ(scratch.choose(0, std::nullopt), later.second);
  EXPECT_EQ(paths.claims, 4);
}

TEST(ScratchPath, AChosenFolderTakesOver) {
  platform::headless::HeadlessScratchPaths paths;
  app::ScratchPath scratch(paths);
  EXPECT_TRUE(scratch.moveTo("/media/disk"));
  EXPECT_EQ(scratch.choose(1, std::nullopt), "/media/disk/testfile1.avi");
}

TEST(ScratchPath, AFolderThatCannotBeUsedChangesNothing) {
  platform::headless::HeadlessScratchPaths paths;
  app::ScratchPath scratch(paths);
  EXPECT_FALSE(scratch.moveTo(paths.refusedFolder.folder));
  EXPECT_EQ(scratch.choose(1, std::nullopt), "/Applications/testfile1.avi");
}

/// So many pairs whose first path cannot be written, and then one whose paths can.
platform::headless::HeadlessScratchPaths pairsAfterRefused(std::size_t refused) {
  platform::headless::HeadlessScratchPaths paths;
  paths.pairs.assign(refused, {"/no/1", "/no/2"});
  paths.pairs.push_back({"/yes/1", "/yes/2"});
  paths.refused = {"/no/1"};
  return paths;
}

TEST(ScratchPath, TheFourthPairIsStillTried) {
  auto paths = pairsAfterRefused(3);
  app::ScratchPath scratch(paths);
  EXPECT_EQ(scratch.choose(1, std::nullopt), "/yes/1");
}

TEST(ScratchPath, FourPairsThatCannotBeWrittenEndTheSearch) {
  auto paths = pairsAfterRefused(4);
  app::ScratchPath scratch(paths);
  EXPECT_EQ(scratch.choose(1, std::nullopt), "");
}

TEST(CountedFiles, CountsWhatIsWrittenToTheFileOpenedLast) {
  MemoryFiles files;
  files.put("/a", {});
  files.put("/b", {});
  app::CountedFiles counted(files);

  const auto first = counted.openForWriting("/a");
  ASSERT_EQ(first.file->writeAt(0, platform::Bytes(70)).count, 70U);
  EXPECT_EQ(counted.written(), 70U);

  const auto second = counted.openForWriting("/b");
  EXPECT_EQ(counted.written(), 0U);
  ASSERT_EQ(second.file->writeAt(0, platform::Bytes(5)).count, 5U);
  ASSERT_EQ(second.file->writeAt(5, platform::Bytes(6)).count, 6U);
  EXPECT_EQ(counted.written(), 11U);
  EXPECT_EQ(files.content("/b").size(), 11U);
}

TEST(CountedFiles, WhatIsSentToTheMediumGoesThrough) {
  MemoryFiles files;
  MemoryFile& file = files.put("/a", platform::Bytes(90));
  file.sendError = std::make_error_code(std::errc::io_error);
  app::CountedFiles counted(files);
  const auto opened = counted.openForWriting("/a");
  EXPECT_EQ(opened.file->beginWriteOut(0, 70), std::errc::io_error);
  EXPECT_EQ(file.sentUpTo, 70U);
}

TEST(CountedFiles, AFileThatCannotBeOpenedAnswersItsCause) {
  MemoryFiles files;
  app::CountedFiles counted(files);
  const auto opened = counted.openForWriting("/gone");
  EXPECT_EQ(opened.file, nullptr);
  EXPECT_EQ(opened.error, std::errc::no_such_file_or_directory);
}

}  // namespace
}  // namespace zelvo::tests
