#include "platform/linux/linux_scratch_paths.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "tests/platform/temp_folder.h"

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

TEST_F(ScratchPaths, ACacheFolderThatCannotBeMadeHoldsNothing) {
  EXPECT_FALSE(LinuxScratchPaths(shared, folder + "/no/such/cache").claim());
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
