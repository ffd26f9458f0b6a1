#include "update/updater_files.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/linux/file_manager.h"
#include "platform/linux/folder_trees.h"
#include "tests/support/temp_folder.h"
#include "tests/update/fakes.h"

namespace zelvo::tests {
namespace {

class UpdaterFiles : public testing::Test, protected UpdateBench {
 protected:
  UpdaterFiles() { bundle.path = "/Applications/Zelvo AVI Repair/Zelvo AVI Repair.app"; }
  Lines happened() { return events.lines(); }

  const std::string carried = bundle.path + "/Contents/MacOS/.autoUpd.app";
  const std::string copy = "/Applications/Zelvo AVI Repair/.autoUpd.app";
  const std::string marker = "/Applications/Zelvo AVI Repair/.updated.txt";
  const std::string copied = "copy(" + carried + " -> " + copy + ")";
};

TEST_F(UpdaterFiles, MissingCopyIsMade) {
  files.put(carried, {});
  updates.copyUpdator();
  EXPECT_EQ(happened(), Lines{copied});
}

TEST_F(UpdaterFiles, MissingCopyStaysMissingWhenNoneIsCarried) {
  files.put(marker, {});
  updates.copyUpdator();
  EXPECT_EQ(happened(), Lines{});
  EXPECT_TRUE(files.has(marker));
}

TEST_F(UpdaterFiles, CopyWithoutAMarkerStays) {
  files.put(carried, {});
  files.put(copy, {});
  updates.copyUpdator();
  EXPECT_EQ(happened(), Lines{});
}

TEST_F(UpdaterFiles, WithAMarkerTheMarkerGoesThenTheCopyAndThenItIsMadeAnew) {
  files.put(carried, bytesOf("new"));
  files.put(copy, bytesOf("old"));
  files.put(marker, {});
  updates.copyUpdator();
  EXPECT_EQ(happened(), (Lines{"remove(" + marker + ")", "remove(" + copy + ")", copied}));
  EXPECT_EQ(files.content(copy), bytesOf("new"));
}

TEST_F(UpdaterFiles, WithAMarkerAndNoneCarriedTheCopyGoes) {
  files.put(copy, {});
  files.put(marker, {});
  updates.copyUpdator();
  EXPECT_EQ(happened(), (Lines{"remove(" + marker + ")", "remove(" + copy + ")"}));
}

TEST_F(UpdaterFiles, CopyJustMadeIsMadeAgainWhenThereIsAMarker) {
  files.put(carried, {});
  files.put(marker, {});
  updates.copyUpdator();
  EXPECT_EQ(happened(), (Lines{copied, "remove(" + marker + ")", "remove(" + copy + ")", copied}));
  EXPECT_FALSE(files.has(marker));
}

TEST_F(UpdaterFiles, EachStepIsTriedThoughTheOnesBeforeFailed) {
  files.put(carried, {});
  files.put(copy, {});
  files.put(marker, {});
  trees.fails = true;
  updates.copyUpdator();
  EXPECT_EQ(happened(), (Lines{"remove(" + marker + ")", "remove(" + copy + ")", copied}));
}

TEST_F(UpdaterFiles, TheMarkerIsAFixedPathAndTheRestLiesAtTheBundle) {
  bundle.path = "/opt/zelvo/avi-repair/Applications/Zelvo AVI Repair/Zelvo AVI Repair.app";
  platform::PathMapper mapper("/elsewhere");
  update::UpdaterFiles mapped(files, trees, clock, bundle, mapper);
  const std::string beside = "/opt/zelvo/avi-repair/Applications/Zelvo AVI Repair/.autoUpd.app";
  const std::string mappedMarker = "/elsewhere/zelvo/avi-repair/Applications/Zelvo AVI Repair/.updated.txt";
  files.put(beside, {});
  files.put(mappedMarker, {});
  mapped.copyUpdator();
  EXPECT_EQ(happened(), (Lines{"remove(" + mappedMarker + ")", "remove(" + beside + ")"}));
}

TEST_F(UpdaterFiles, LeftoversAreRemovedInTheirOrderAfterTenSeconds) {
  bundle.path = "/opt/zelvo/avi-repair/Applications/Zelvo AVI Repair/Zelvo AVI Repair.app";
  for (const char* name : {"URLs.dat", "SoftwareOrlin", "Orlin Salvage.zip", "location.dat",
                           "Orlin Salvage Auto Updater.app", "other.dat"}) {
    files.put("/opt/zelvo/" + std::string(name), {});
  }
  updates.updateCleanupThread();
  EXPECT_EQ(happened(), (Lines{"sleep(10000 ms)", "remove(/opt/zelvo/Orlin Salvage Auto Updater.app)",
                               "remove(/opt/zelvo/Orlin Salvage.zip)", "remove(/opt/zelvo/SoftwareOrlin)",
                               "remove(/opt/zelvo/location.dat)", "remove(/opt/zelvo/URLs.dat)"}));
  EXPECT_TRUE(files.has("/opt/zelvo/other.dat"));
}

TEST_F(UpdaterFiles, OnlyLeftoversThatAreThereAreRemoved) {
  bundle.path = "/a/b/c/d/e.app";
  files.put("/a/location.dat", {});
  updates.updateCleanupThread();
  EXPECT_EQ(happened(), (Lines{"sleep(10000 ms)", "remove(/a/location.dat)"}));
}

TEST_F(UpdaterFiles, LinksThatLeadNowhereAreLeftoversToo) {
  namespace fs = std::filesystem;
  const TempFolder temp;
  bundle.path = temp / "b/c/d/e.app";
  for (const char* name : {"Orlin Salvage Auto Updater.app", "URLs.dat"}) fs::create_symlink("nowhere", temp / name);
  fs::create_symlink("nowhere", temp / "other.dat");
  platform::linux_::LinuxFileManager manager;
  platform::linux_::LinuxFolderTrees folders;
  update::UpdaterFiles real(manager, folders, clock, bundle, paths);
  real.updateCleanupThread();
  EXPECT_FALSE(fs::is_symlink(temp / "Orlin Salvage Auto Updater.app"));
  EXPECT_FALSE(fs::is_symlink(temp / "URLs.dat"));
  EXPECT_TRUE(fs::is_symlink(temp / "other.dat"));
}

TEST_F(UpdaterFiles, AFailedRemovalKeepsNoneOfTheOthers) {
  bundle.path = "/a/b/c/d/e.app";
  files.put("/a/SoftwareOrlin", {});
  files.put("/a/URLs.dat", {});
  trees.fails = true;
  updates.updateCleanupThread();
  EXPECT_EQ(happened(), (Lines{"sleep(10000 ms)", "remove(/a/SoftwareOrlin)", "remove(/a/URLs.dat)"}));
}

}  // namespace
}  // namespace zelvo::tests
