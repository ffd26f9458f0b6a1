#include "cli/output_place.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "platform/linux/file_manager.h"
#include "platform/linux/new_files.h"
#include "tests/support/memory_files.h"
#include "tests/support/temp_folder.h"

namespace zelvo::tests {
namespace {

using cli::ChosenInput;
using cli::HiddenFile;
using cli::OutputChoice;
using cli::refusal;
using cli::repairedPath;
using cli::spaceMissing;

TEST(RepairedPath, VideoEndingsAreTakenOff) {
  EXPECT_EQ(repairedPath("clip.avi", std::nullopt), "clip-repaired.avi");
  EXPECT_EQ(repairedPath("dir/clip.AVI", std::nullopt), "dir/clip-repaired.avi");
  EXPECT_EQ(repairedPath("/clip.DivX", std::nullopt), "/clip-repaired.avi");
  EXPECT_EQ(repairedPath("clip.xvid", std::nullopt), "clip-repaired.avi");
}

TEST(RepairedPath, OtherEndingsStay) {
  EXPECT_EQ(repairedPath("holiday.2019", std::nullopt), "holiday.2019-repaired.avi");
  EXPECT_EQ(repairedPath("dir.avi/clip", std::nullopt), "dir.avi/clip-repaired.avi");
  EXPECT_EQ(repairedPath(".avi", std::nullopt), ".avi-repaired.avi");
}

TEST(RepairedPath, FolderIsPutBeforeTheName) {
  EXPECT_EQ(repairedPath("dir/clip.avi", "out"), "out/clip-repaired.avi");
  EXPECT_EQ(repairedPath("clip.avi", "out/"), "out/clip-repaired.avi");
}

// ---- Looks before the work ----

TEST(OutputRefusal, SameNumberOnAnotherDeviceIsAnotherFile) {
  const TempFolder folder;
  platform::linux_::LinuxFileManager fileManager;
  writeFile(folder / "out", "mine");
  const OutputChoice output{folder / "out", true, false};
  ChosenInput input{folder / "in", *fileManager.attributes(output.path), nullptr};
  EXPECT_THAT(refusal(output, input, fileManager).value_or(""), testing::HasSubstr("are the same file"));

  ++input.attributes.device;

  EXPECT_EQ(refusal(output, input, fileManager), std::nullopt);
}

TEST(OutputRefusal, EmptyNameIsRefused) {
  platform::linux_::LinuxFileManager fileManager;
  EXPECT_EQ(refusal({"", true, false}, {}, fileManager), "the output's name is empty.");
}

TEST(SpaceMissing, SpaceThatJustSufficesIsEnough) {
  MemoryFiles files;
  files.space = 999;
  EXPECT_EQ(spaceMissing("out", 999, files), std::nullopt);
  EXPECT_EQ(spaceMissing("out", 1000, files),
            "there is not enough free space in out: 1.0 kB are needed, 999 bytes are free. Free some, or name another "
            "place.");
  files.space.reset();
  EXPECT_EQ(spaceMissing("out", 1000, files), std::nullopt) << "nobody knows";
}

TEST(SpaceMissing, WhatIsKeptForRootIsNobodys) {
  const TempFolder folder;
  platform::linux_::LinuxFileManager fileManager;
  const std::filesystem::space_info space = std::filesystem::space(folder.path());
  const std::uintmax_t kept = space.free - space.available;
  if (kept < 100000000) GTEST_SKIP() << "skipped: nothing is kept for root in " << folder.path();

  // Others write meanwhile, but not that much.
  EXPECT_TRUE(spaceMissing(folder.path(), space.available + kept / 2, fileManager).has_value());
  EXPECT_EQ(spaceMissing(folder.path(), space.available / 2, fileManager), std::nullopt);
}

class Hidden : public testing::Test {
 protected:
  const TempFolder folder_;
  platform::linux_::LinuxFileManager fileManager_;
  platform::linux_::LinuxNewFiles newFiles_;
  platform::Relaxed<std::uint64_t> written_;
};

TEST_F(Hidden, FileIsRemovedWhenItIsLetGo) {
  {
    HiddenFile file(fileManager_, newFiles_, written_);
    ASSERT_FALSE(file.create(folder_.path()));
    EXPECT_EQ(folder_.names().size(), 1U);
    EXPECT_EQ(folder_.names()[0].substr(0, 11), ".zelvo-avi-");
  }
  EXPECT_TRUE(folder_.names().empty());
}

TEST_F(Hidden, NamesDiffer) {
  HiddenFile one(fileManager_, newFiles_, written_);
  HiddenFile other(fileManager_, newFiles_, written_);
  ASSERT_FALSE(one.create(folder_.path()));
  ASSERT_FALSE(other.create(folder_.path()));
  EXPECT_NE(one.path(), other.path());
}

TEST_F(Hidden, RenamedFileStays) {
  {
    HiddenFile file(fileManager_, newFiles_, written_);
    ASSERT_FALSE(file.create(folder_.path()));
    EXPECT_FALSE(file.renameTo({folder_ / "out", false, false}));
  }
  EXPECT_EQ(folder_.names(), std::vector<std::string>{"out"});
}

TEST_F(Hidden, FileThatAppearedMeanwhileIsNotReplaced) {
  HiddenFile file(fileManager_, newFiles_, written_);
  ASSERT_FALSE(file.create(folder_.path()));
  writeFile(folder_ / "out", "mine");

  EXPECT_EQ(file.renameTo({folder_ / "out", false, false}), std::errc::file_exists);
  EXPECT_EQ(readFile(folder_ / "out"), "mine");
}

TEST_F(Hidden, ForceReplacesIt) {
  HiddenFile file(fileManager_, newFiles_, written_);
  ASSERT_FALSE(file.create(folder_.path()));
  writeFile(folder_ / "out", "mine");

  EXPECT_FALSE(file.renameTo({folder_ / "out", true, false}));
  EXPECT_EQ(readFile(folder_ / "out"), "");
}

TEST_F(Hidden, MissingFolderIsAnError) {
  HiddenFile file(fileManager_, newFiles_, written_);
  EXPECT_EQ(file.create(folder_ / "nowhere"), std::errc::no_such_file_or_directory);
}

TEST_F(Hidden, FileThatIsReplacedLeavesItsPermissions) {
  for (const std::uint32_t permissions : {0600U, 0640U, 0444U}) {
    const OutputChoice output{folder_ / "out", true, false};
    writeFile(output.path, "mine");
    ASSERT_FALSE(newFiles_.setPermissions(output.path, permissions));
    HiddenFile file(fileManager_, newFiles_, written_);
    ASSERT_FALSE(file.create(folder_.path(), output));
    EXPECT_EQ(fileManager_.attributes(file.path())->permissions, 0600U) << "nobody else may look meanwhile";

    EXPECT_FALSE(file.renameTo(output));

    EXPECT_EQ(fileManager_.attributes(output.path)->permissions, permissions);
    ASSERT_FALSE(fileManager_.remove(output.path));
  }
}

TEST_F(Hidden, ReplacedLinkLeavesThePermissionsOfWhatItLedTo) {
  const OutputChoice output{folder_ / "out", true, false};
  writeFile(folder_ / "target", "mine");
  ASSERT_FALSE(newFiles_.setPermissions(folder_ / "target", 0640));
  std::filesystem::create_symlink("target", output.path);
  HiddenFile file(fileManager_, newFiles_, written_);
  ASSERT_FALSE(file.create(folder_.path(), output));

  EXPECT_FALSE(file.renameTo(output));

  EXPECT_EQ(fileManager_.attributes(output.path)->permissions, 0640U);
}

TEST_F(Hidden, FileToBeReplacedThatIsGoneLeavesThoseOfANewOne) {
  const OutputChoice output{folder_ / "out", true, false};
  writeFile(output.path, "mine");
  const std::uint32_t usual = fileManager_.attributes(output.path)->permissions;
  HiddenFile file(fileManager_, newFiles_, written_);
  ASSERT_FALSE(file.create(folder_.path(), output));
  ASSERT_FALSE(fileManager_.remove(output.path));

  EXPECT_FALSE(file.renameTo(output));

  EXPECT_EQ(fileManager_.attributes(output.path)->permissions, usual);
}

}  // namespace
}  // namespace zelvo::tests
