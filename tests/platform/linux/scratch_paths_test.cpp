#include "platform/linux/scratch_paths.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "tests/support/temp_folder.h"

namespace zelvo::tests {
namespace {

namespace fs = std::filesystem;
using platform::linux_::LinuxScratchPaths;

class ScratchPaths : public testing::Test {
 protected:
  static void put(const std::string& path) { std::ofstream(path) << "content"; }
  static unsigned modeOf(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 07777U : 0;
  }
  [[nodiscard]] std::string slot(int number) const { return cache + "/zelvo-avi-repair/slot" + std::to_string(number); }

  TempFolder temporary;
  const std::string folder = temporary.path("");
  const std::string shared = folder + "/Applications";
  const std::string cache = folder + "/cache";
};

TEST_F(ScratchPaths, AWritableSharedFolderHoldsTheFirstPair) {
  fs::create_directory(shared);
  LinuxScratchPaths paths(shared, cache);

  const auto pair = paths.claim();

  ASSERT_TRUE(pair);
  EXPECT_EQ(pair->first, shared + "/testfile1.avi");
  EXPECT_EQ(pair->second, shared + "/testfile2.avi");
  EXPECT_TRUE(fs::is_empty(shared));
}

TEST_F(ScratchPaths, WithoutTheSharedFolderAPrivateOneIsMade) {
  LinuxScratchPaths paths(shared, cache);

  const auto pair = paths.claim();

  ASSERT_TRUE(pair);
  EXPECT_EQ(pair->first, slot(1) + "/testfile1.avi");
  EXPECT_EQ(pair->second, slot(1) + "/testfile2.avi");
  EXPECT_EQ(modeOf(cache + "/zelvo-avi-repair"), 0700U);
  EXPECT_EQ(modeOf(slot(1)), 0700U);
}

TEST_F(ScratchPaths, PrivateFoldersAreTheChosenOneAndTheCachesOne) {
  const std::string disk = folder + "/disk";
  fs::create_directory(disk);
  LinuxScratchPaths paths(shared, cache);
  EXPECT_EQ(paths.privateFolders(), std::vector<std::string>{cache + "/zelvo-avi-repair"});
  EXPECT_FALSE(fs::exists(cache));

  ASSERT_TRUE(paths.moveTo(disk));

  EXPECT_EQ(paths.privateFolders(),
            (std::vector<std::string>{disk + "/zelvo-avi-repair", cache + "/zelvo-avi-repair"}));
}

TEST_F(ScratchPaths, ASecondInstanceTakesTheFallbackOfTheFirstPair) {
  fs::create_directory(shared);
  LinuxScratchPaths one(shared, cache);
  LinuxScratchPaths two(shared, cache);
  ASSERT_TRUE(one.claim());

  EXPECT_EQ(two.claim()->first, slot(1) + "/testfile1.avi");
}

TEST_F(ScratchPaths, EachInstanceHasASlotOfItsOwn) {
  LinuxScratchPaths one(shared, cache);
  LinuxScratchPaths two(shared, cache);
  EXPECT_EQ(one.claim()->first, slot(1) + "/testfile1.avi");
  EXPECT_EQ(two.claim()->first, slot(2) + "/testfile1.avi");
}

TEST_F(ScratchPaths, OneInstanceCanHoldSeveralPairs) {
  fs::create_directory(shared);
  LinuxScratchPaths paths(shared, cache);
  EXPECT_EQ(paths.claim()->first, shared + "/testfile1.avi");
  EXPECT_EQ(paths.claimAnother()->first, slot(1) + "/testfile1.avi");
  EXPECT_EQ(paths.claimAnother()->first, slot(2) + "/testfile1.avi");
}

TEST_F(ScratchPaths, AnEndedInstanceFreesItsPair) {
  fs::create_directory(shared);
  { ASSERT_TRUE(LinuxScratchPaths(shared, cache).claim()); }
  EXPECT_EQ(LinuxScratchPaths(shared, cache).claim()->first, shared + "/testfile1.avi");
}

TEST_F(ScratchPaths, TheNextHolderOfASlotRemovesWhatWasLeft) {
  { ASSERT_TRUE(LinuxScratchPaths(shared, cache).claim()); }
  put(slot(1) + "/testfile1.avi");
  put(slot(1) + "/testfile2.avi");

  LinuxScratchPaths next(shared, cache);

  EXPECT_EQ(next.claim()->first, slot(1) + "/testfile1.avi");
  EXPECT_TRUE(fs::is_empty(slot(1)));
}

TEST_F(ScratchPaths, AHeldSlotKeepsItsFiles) {
  LinuxScratchPaths one(shared, cache);
  ASSERT_TRUE(one.claim());
  put(slot(1) + "/testfile1.avi");

  LinuxScratchPaths two(shared, cache);
  ASSERT_TRUE(two.claim());

  EXPECT_TRUE(fs::exists(slot(1) + "/testfile1.avi"));
}

TEST_F(ScratchPaths, APrivateFolderThatIsALinkIsRefused) {
  fs::create_directory(cache);
  fs::create_directory(folder + "/elsewhere");
  fs::create_directory_symlink(folder + "/elsewhere", cache + "/zelvo-avi-repair");

  EXPECT_FALSE(LinuxScratchPaths(shared, cache).claim());

  EXPECT_TRUE(fs::is_empty(folder + "/elsewhere"));
}

TEST_F(ScratchPaths, ASlotThatIsALinkIsPassedOver) {
  { ASSERT_TRUE(LinuxScratchPaths(shared, cache).claim()); }
  fs::remove(slot(1));
  fs::create_directory(folder + "/elsewhere");
  put(folder + "/elsewhere/testfile1.avi");
  fs::create_directory_symlink(folder + "/elsewhere", slot(1));

  LinuxScratchPaths paths(shared, cache);

  EXPECT_EQ(paths.claim()->first, slot(2) + "/testfile1.avi");
  EXPECT_TRUE(fs::exists(folder + "/elsewhere/testfile1.avi"));
}

TEST_F(ScratchPaths, AFolderOpenToOthersIsClosed) {
  fs::create_directories(cache + "/zelvo-avi-repair");
  fs::permissions(cache + "/zelvo-avi-repair", fs::perms::all);

  ASSERT_TRUE(LinuxScratchPaths(shared, cache).claim());

  EXPECT_EQ(modeOf(cache + "/zelvo-avi-repair"), 0700U);
}

TEST_F(ScratchPaths, ParentsOfTheCacheFolderAreMade) {
  const std::string deep = folder + "/no/such/cache";

  ASSERT_TRUE(LinuxScratchPaths(shared, deep).claim());

  EXPECT_EQ(modeOf(folder + "/no"), 0700U);
  EXPECT_EQ(modeOf(deep), 0700U);
}

TEST_F(ScratchPaths, ACacheFolderThatCannotBeMadeHoldsNothingAndIsNamedWithTheCause) {
  put(folder + "/file");
  LinuxScratchPaths paths(shared, folder + "/file/cache");

  EXPECT_FALSE(paths.claim());

  EXPECT_EQ(paths.obstacle().folder, folder + "/file/cache");
  EXPECT_EQ(paths.obstacle().cause, std::errc::not_a_directory);
}

TEST_F(ScratchPaths, AVanishedCacheFolderIsMadeAgain) {
  LinuxScratchPaths paths(shared, cache);
  const auto pair = paths.claim();
  ASSERT_TRUE(pair);
  ASSERT_TRUE(paths.mayWrite(pair->first, std::nullopt));
  fs::remove_all(cache);

  EXPECT_FALSE(paths.mayWrite(pair->first, std::nullopt));
  const auto again = paths.claimAnother();

  ASSERT_TRUE(again);
  EXPECT_TRUE(paths.mayWrite(again->first, std::nullopt));
  EXPECT_EQ(modeOf(slot(1)), 0700U);
}

TEST_F(ScratchPaths, AFolderThatVanishedAndIsHeldByAnotherInstanceIsNotWritten) {
  LinuxScratchPaths one(shared, cache);
  const auto pair = one.claim();
  ASSERT_TRUE(pair);
  fs::remove_all(cache);
  LinuxScratchPaths two(shared, cache);
  ASSERT_EQ(two.claim()->first, pair->first);

  EXPECT_FALSE(one.mayWrite(pair->first, std::nullopt));
  EXPECT_TRUE(two.mayWrite(pair->first, std::nullopt));
}

TEST_F(ScratchPaths, AFolderThatMayNotBeWrittenHoldsNoFile) {
  if (::geteuid() == 0) GTEST_SKIP() << "root may write every folder";
  LinuxScratchPaths paths(shared, cache);
  const auto pair = paths.claim();
  ASSERT_TRUE(pair);
  fs::permissions(slot(1), fs::perms::owner_read | fs::perms::owner_exec);
  EXPECT_FALSE(paths.mayWrite(pair->first, std::nullopt));
  fs::permissions(slot(1), fs::perms::owner_all);
}

TEST_F(ScratchPaths, AChosenFolderHoldsThePairAndIsRememberedForTheNextProgram) {
  fs::create_directory(folder + "/disk");
  const std::string slotOnDisk = folder + "/disk/zelvo-avi-repair/slot1";
  {
    LinuxScratchPaths paths(shared, cache, folder + "/config/zelvo/working-folder");
    ASSERT_TRUE(paths.claim());
    const auto pair = paths.moveTo(folder + "/disk");
    ASSERT_TRUE(pair);
    EXPECT_EQ(pair->first, slotOnDisk + "/testfile1.avi");
    EXPECT_EQ(pair->folder, folder + "/disk");
    EXPECT_FALSE(pair->isShared);
    EXPECT_EQ(modeOf(slotOnDisk), 0700U);
  }

  LinuxScratchPaths next(shared, cache, folder + "/config/zelvo/working-folder");

  EXPECT_EQ(next.claim()->second, slotOnDisk + "/testfile2.avi");
}

TEST_F(ScratchPaths, TheSharedFolderComesBeforeAChosenOne) {
  fs::create_directory(folder + "/disk");
  ASSERT_TRUE(LinuxScratchPaths(shared, cache, folder + "/choice").moveTo(folder + "/disk"));
  fs::create_directory(shared);

  const auto pair = LinuxScratchPaths(shared, cache, folder + "/choice").claim();

  ASSERT_TRUE(pair);
  EXPECT_EQ(pair->first, shared + "/testfile1.avi");
  EXPECT_TRUE(pair->isShared);
}

TEST_F(ScratchPaths, AChosenFolderThatIsNotThereTodayGivesWayAndIsNotMade) {
  fs::create_directory(folder + "/disk");
  ASSERT_TRUE(LinuxScratchPaths(shared, cache, folder + "/choice").moveTo(folder + "/disk"));
  fs::remove_all(folder + "/disk");

  EXPECT_EQ(LinuxScratchPaths(shared, cache, folder + "/choice").claim()->first, slot(1) + "/testfile1.avi");
  EXPECT_FALSE(fs::exists(folder + "/disk"));

  fs::create_directory(folder + "/disk");
  EXPECT_EQ(LinuxScratchPaths(shared, cache, folder + "/choice").claim()->folder, folder + "/disk");
}

TEST_F(ScratchPaths, AFolderThatCannotBeChosenChangesNothing) {
  LinuxScratchPaths paths(shared, cache, folder + "/choice");

  EXPECT_FALSE(paths.moveTo(folder + "/nowhere"));

  EXPECT_EQ(paths.obstacle().folder, folder + "/nowhere");
  EXPECT_EQ(paths.obstacle().cause, std::errc::no_such_file_or_directory);
  EXPECT_FALSE(fs::exists(folder + "/nowhere"));
  EXPECT_FALSE(fs::exists(folder + "/choice"));
  EXPECT_EQ(paths.claim()->folder, cache);
}

TEST_F(ScratchPaths, AChoiceThatCannotBeWrittenDownLeavesTheFormerOne) {
  fs::create_directory(folder + "/disk");
  std::ofstream(folder + "/choice") << "/former\n";
  fs::create_symlink("/dev/full", folder + "/choice.new");  // takes nothing in

  ASSERT_TRUE(LinuxScratchPaths(shared, cache, folder + "/choice").moveTo(folder + "/disk"));

  EXPECT_FALSE(fs::is_symlink(folder + "/choice"));
  EXPECT_EQ(temporary.content("choice"), "/former\n");
}

TEST_F(ScratchPaths, ARememberedTextThatIsNoWholePathIsNone) {
  std::ofstream(folder + "/choice") << ".\n";
  EXPECT_EQ(LinuxScratchPaths(shared, cache, folder + "/choice").claim()->folder, cache);
}

TEST_F(ScratchPaths, AnotherUsersFolderIsRefused) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can give a folder away";
  fs::create_directories(cache + "/zelvo-avi-repair");
  ASSERT_EQ(::chown((cache + "/zelvo-avi-repair").c_str(), 65534, 65534), 0);

  EXPECT_FALSE(LinuxScratchPaths(shared, cache).claim());
}

TEST_F(ScratchPaths, NothingOrAnOwnFileMayBeWritten) {
  LinuxScratchPaths paths(shared, cache);
  const std::string file = folder + "/own.avi";
  EXPECT_TRUE(paths.mayWrite(file, std::nullopt));
  put(file);
  EXPECT_TRUE(paths.mayWrite(file, std::nullopt));
  EXPECT_TRUE(paths.mayWrite(file, folder + "/gone.avi"));
}

TEST_F(ScratchPaths, ALinkOrAFolderMayNotBeWritten) {
  LinuxScratchPaths paths(shared, cache);
  put(folder + "/own.avi");
  fs::create_symlink(folder + "/own.avi", folder + "/link.avi");
  fs::create_symlink(folder + "/gone.avi", folder + "/dangling.avi");
  fs::create_directory(folder + "/folder.avi");
  EXPECT_FALSE(paths.mayWrite(folder + "/link.avi", std::nullopt));
  EXPECT_FALSE(paths.mayWrite(folder + "/dangling.avi", std::nullopt));
  EXPECT_FALSE(paths.mayWrite(folder + "/folder.avi", std::nullopt));
}

TEST_F(ScratchPaths, TheInputMayNotBeWrittenUnderAnyOfItsNames) {
  LinuxScratchPaths paths(shared, cache);
  put(folder + "/input.avi");
  fs::create_hard_link(folder + "/input.avi", folder + "/second.avi");
  fs::create_symlink(folder + "/input.avi", folder + "/link.avi");
  EXPECT_FALSE(paths.mayWrite(folder + "/input.avi", folder + "/input.avi"));
  EXPECT_FALSE(paths.mayWrite(folder + "/second.avi", folder + "/input.avi"));
  EXPECT_FALSE(paths.mayWrite(folder + "/input.avi", folder + "/link.avi"));
}

TEST_F(ScratchPaths, AnotherUsersFileMayNotBeWritten) {
  LinuxScratchPaths paths(shared, cache);
  std::string file = "/etc/passwd";  // root's, for everybody else
  if (::geteuid() == 0) {
    file = folder + "/theirs.avi";
    put(file);
    ASSERT_EQ(::chown(file.c_str(), 65534, 65534), 0);
  }
  EXPECT_FALSE(paths.mayWrite(file, std::nullopt));
}

}  // namespace
}  // namespace zelvo::tests
