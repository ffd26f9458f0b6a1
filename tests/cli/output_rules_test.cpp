// Where an output may go, and that nothing of the user's is lost on the way.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/cli/engine_run.h"
#include "tests/cli/program.h"
#include "tests/support/small_avi.h"
#include "tests/support/temp_folder.h"

namespace zelvo::tests {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class OutputRules : public testing::Test {
 protected:
  void SetUp() override { writeFile(input_, bytes_); }
  void TearDown() override { EXPECT_TRUE(readFile(input_) == bytes_) << "the input was changed"; }

  const TempFolder folder_;
  const std::string input_ = folder_ / "in.avi";
  const std::string bytes_ = SmallAvi{}.bytes();
};

TEST_F(OutputRules, ExistingOutputIsRefused) {
  writeFile(folder_ / "out.avi", "mine");

  const Ended ended = runZelvoAvi({"repair", input_, "-o", folder_ / "out.avi"});

  EXPECT_EQ(ended.exit, 3);
  EXPECT_THAT(ended.err, HasSubstr("exists already; use --force to replace it"));
  EXPECT_EQ(readFile(folder_ / "out.avi"), "mine");
  EXPECT_THAT(folder_.names(), ElementsAre("in.avi", "out.avi"));
}

TEST_F(OutputRules, ForceReplacesAnExistingOutput) {
  writeFile(folder_ / "out.avi", "mine");

  EXPECT_EQ(runZelvoAvi({"repair", input_, "-o", folder_ / "out.avi", "--force"}).exit, 0);

  EXPECT_EQ(readFile(folder_ / "out.avi").substr(0, 4), "RIFF");
  EXPECT_THAT(folder_.names(), ElementsAre("in.avi", "out.avi"));
}

TEST_F(OutputRules, NewOutputHasThePermissionsOfTheUsersMask) {
  for (const auto& [mask, permissions] : {std::pair{"022", 0644U}, std::pair{"077", 0600U}, std::pair{"002", 0664U}}) {
    const Ended ended = run({"sh", "-c", "umask $1 && exec " ZELVO_AVI " repair \"$2\" -f -o \"$3\"", "sh", mask,
                             input_, folder_ / "out.avi"});

    EXPECT_EQ(ended.exit, 0);
    EXPECT_EQ(static_cast<unsigned>(fs::status(folder_ / "out.avi").permissions()), permissions) << mask;
    fs::remove(folder_ / "out.avi");
  }
}

TEST_F(OutputRules, ReplacedOutputKeepsItsPermissions) {
  for (const std::string place : {"-o", "--into"}) {
    fs::create_directories(folder_ / "Repaired");
    const std::string output = folder_ / (place == "-o" ? "out.avi" : "Repaired/repaired.avi");
    writeFile(output, "mine");
    fs::permissions(output, static_cast<fs::perms>(0640));

    EXPECT_EQ(runZelvoAvi({"repair", input_, "-f", place, place == "-o" ? output : folder_ / "Repaired"}).exit, 0);

    EXPECT_EQ(static_cast<unsigned>(fs::status(output).permissions()), 0640U) << place;
    EXPECT_NE(readFile(output), "mine");
  }
}

TEST_F(OutputRules, ForceKeepsTheOldFileWhenTheInputIsRejected) {
  writeFile(folder_ / "out.avi", "mine");
  writeFile(folder_ / "bad.avi", "no AVI");

  EXPECT_EQ(runZelvoAvi({"repair", folder_ / "bad.avi", "-o", folder_ / "out.avi", "--force"}).exit, 1);

  EXPECT_EQ(readFile(folder_ / "out.avi"), "mine");
}

TEST_F(OutputRules, InputAsOutputIsRefusedEvenWithForce) {
  const Ended ended = runZelvoAvi({"repair", input_, "-o", input_, "--force"});

  EXPECT_EQ(ended.exit, 3);
  EXPECT_THAT(ended.err, HasSubstr("input and output are the same file"));
}

TEST_F(OutputRules, SymbolicLinkToTheInputIsRefusedAsOutput) {
  fs::create_symlink("in.avi", folder_ / "link.avi");

  const Ended ended = runZelvoAvi({"repair", input_, "-o", folder_ / "link.avi", "-f"});

  EXPECT_EQ(ended.exit, 3);
  EXPECT_THAT(ended.err, HasSubstr("input and output are the same file"));
  EXPECT_TRUE(fs::is_symlink(folder_ / "link.avi"));
}

TEST_F(OutputRules, HardLinkToTheInputIsRefusedAsOutput) {
  fs::create_hard_link(input_, folder_ / "hard.avi");

  const Ended ended = runZelvoAvi({"repair", input_, "-o", folder_ / "hard.avi", "-f"});

  EXPECT_EQ(ended.exit, 3);
  EXPECT_THAT(ended.err, HasSubstr("input and output are the same file"));
}

TEST_F(OutputRules, InputReachedThroughALinkIsRefusedAsOutputToo) {
  fs::create_symlink("in.avi", folder_ / "link.avi");

  EXPECT_EQ(runZelvoAvi({"repair", folder_ / "link.avi", "-o", input_, "-f"}).exit, 3);
}

TEST_F(OutputRules, LinkIsReplacedItselfAndItsTargetStays) {
  writeFile(folder_ / "target.avi", "mine");
  fs::create_symlink("target.avi", folder_ / "out.avi");

  EXPECT_EQ(runZelvoAvi({"repair", input_, "-o", folder_ / "out.avi", "-f"}).exit, 0);

  EXPECT_FALSE(fs::is_symlink(folder_ / "out.avi"));
  EXPECT_EQ(readFile(folder_ / "target.avi"), "mine");
}

TEST_F(OutputRules, DanglingLinkCountsAsExisting) {
  fs::create_symlink("nowhere", folder_ / "out.avi");

  EXPECT_EQ(runZelvoAvi({"repair", input_, "-o", folder_ / "out.avi"}).exit, 3);
  EXPECT_FALSE(fs::exists(folder_ / "nowhere"));
}

TEST_F(OutputRules, MissingFolderIsSaidAtOnce) {
  const Ended ended = runZelvoAvi({"repair", input_, "-o", folder_ / "nowhere/out.avi"});

  EXPECT_EQ(ended.exit, 3);
  EXPECT_THAT(ended.err, HasSubstr("there is no folder " + (folder_ / "nowhere")));
}

TEST_F(OutputRules, FileInPlaceOfTheFolderIsSaidAtOnce) {
  const Ended ended = runZelvoAvi({"repair", input_, "-o", input_ + "/out.avi"});

  EXPECT_EQ(ended.exit, 3);
  EXPECT_THAT(ended.err, HasSubstr("in.avi"));
}

TEST_F(OutputRules, FolderAsOutputIsRefusedEvenWithForce) {
  fs::create_directory(folder_ / "out");

  const Ended ended = runZelvoAvi({"repair", input_, "-o", folder_ / "out", "-f"});

  EXPECT_EQ(ended.exit, 3);
  EXPECT_THAT(ended.err, HasSubstr("is a folder"));
}

TEST_F(OutputRules, DeviceAsOutputIsRefusedEvenWithForce) {
  const Ended ended = runZelvoAvi({"repair", input_, "-o", "/dev/null", "-f"});

  EXPECT_EQ(ended.exit, 3);
  EXPECT_THAT(ended.err, HasSubstr("is not a regular file"));
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST_F(OutputRules, TooLongNamesAreRefused) {
  const std::string output = folder_ / std::string(256, 'x');
  const Ended ended = runZelvoAvi({"repair", input_, "-o", output});

  EXPECT_EQ(ended.exit, 3);
  // Before the work: afterwards it would be the new name that cannot be given.
  EXPECT_EQ(ended.err,
            "zelvo-avi: the name of the output would be too long: " + output + "; name a shorter one with -o.\n");
}

TEST_F(OutputRules, NameThatBecomesTooLongIsRefused) {
  fs::copy_file(input_, folder_ / (std::string(242, 'x') + ".avi"));
  fs::copy_file(input_, folder_ / (std::string(243, 'x') + ".avi"));

  EXPECT_EQ(runZelvoAvi({"repair", folder_ / (std::string(242, 'x') + ".avi")}).exit, 0);
  const Ended ended = runZelvoAvi({"repair", folder_ / (std::string(243, 'x') + ".avi")});

  EXPECT_EQ(ended.exit, 3);
  EXPECT_THAT(ended.err, HasSubstr("the name of the output would be too long"));
}

TEST_F(OutputRules, EmptyNameIsWrongUse) {
  const Ended ended = runZelvoAvi({"repair", input_, "-o", ""});

  EXPECT_EQ(ended.exit, 2);
  EXPECT_THAT(ended.err, HasSubstr("the name after --output is empty."));
}

TEST_F(OutputRules, LongestNameIsPossible) {
  EXPECT_EQ(runZelvoAvi({"repair", input_, "-o", folder_ / std::string(255, 'x')}).exit, 0);
}

TEST_F(OutputRules, UnwritableFolderIsSaidAtOnce) {
  fs::create_directory(folder_ / "locked");
  fs::permissions(folder_ / "locked", fs::perms::owner_read | fs::perms::owner_exec | fs::perms::others_exec);
  fs::permissions(folder_.path(), fs::perms::all);

  std::vector<std::string> command = zelvoAvi({"repair", input_, "-o", folder_ / "locked/out.avi"});
  // root may write everywhere, so another user tries.
  if (run({"id", "-u"}).out == "0\n") {
    command.insert(command.begin(), {"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"});
    if (run({command[0], command[1], command[2], command[3], ZELVO_AVI, "--version"}).exit != 0) {
      GTEST_SKIP() << "another user may not run the program where it was built";
    }
  }
  const Ended ended = run(command);

  EXPECT_EQ(ended.exit, 3);
  EXPECT_THAT(ended.err, HasSubstr("may not be written to"));
}

TEST_F(OutputRules, OutputFolderTakesEachUnderItsName) {
  fs::create_directory(folder_ / "out");

  EXPECT_EQ(runZelvoAvi({"repair", input_, "--output-dir", folder_ / "out"}).exit, 0);

  EXPECT_TRUE(fs::exists(folder_ / "out/in-repaired.avi"));
}

TEST_F(OutputRules, SameNameTwiceInOneFolderIsRefusedTheSecondTime) {
  fs::create_directory(folder_ / "other");
  writeFile(folder_ / "other/in.avi", bytes_);
  fs::create_directory(folder_ / "out");

  const Ended ended = runZelvoAvi({"repair", input_, folder_ / "other/in.avi", "--output-dir", folder_ / "out"});

  EXPECT_EQ(ended.exit, 3);
  EXPECT_THAT(ended.out, HasSubstr("2 inputs: 1 repaired, 1 failed."));
}

TEST_F(OutputRules, SameNameTwiceIsRefusedTheSecondTimeWithForceToo) {
  fs::create_directory(folder_ / "other");
  writeFile(folder_ / "other/in.avi", SmallAvi{.frames = 140}.bytes());
  fs::create_directory(folder_ / "out");

  const Ended ended =
      runZelvoAvi({"repair", "--force", input_, folder_ / "other/in.avi", "--output-dir", folder_ / "out"});

  EXPECT_EQ(ended.exit, 3);
  EXPECT_THAT(ended.err, HasSubstr("has just been written for another input"));
  EXPECT_THAT(ended.out, HasSubstr("150 chunks"));
}

// ---- --into ----

TEST_F(OutputRules, IntoPadsToWholeBlocksAndRepeatsTheLastOnesFront) {
  ASSERT_TRUE(repairWithEngine(input_, folder_ / "engine.avi"));
  const std::string rebuilt = readFile(folder_ / "engine.avi");
  const std::size_t rest = rebuilt.size() % 32768;
  ASSERT_NE(rest, 0U);
  const std::string lastBlock = rebuilt.substr(rebuilt.size() - rest);

  EXPECT_EQ(runZelvoAvi({"repair", input_, "--into", folder_ / "Repaired"}).exit, 0);

  const std::string saved = readFile(folder_ / "Repaired/repaired.avi");
  EXPECT_TRUE(saved == rebuilt + std::string(32768 - rest, '\0') + lastBlock);
  EXPECT_THAT(folder_.names(), ElementsAre("Repaired", "engine.avi", "in.avi"));
  EXPECT_EQ(std::distance(fs::directory_iterator(folder_ / "Repaired"), {}), 1) << "a hidden file was left";
}

TEST_F(OutputRules, IntoTakesAnExistingFolderAsItIs) {
  fs::create_directory(folder_ / "Repaired");
  writeFile(folder_ / "Repaired/other.txt", "mine");

  EXPECT_EQ(runZelvoAvi({"repair", input_, "--into", folder_ / "Repaired"}).exit, 0);

  EXPECT_EQ(readFile(folder_ / "Repaired/other.txt"), "mine");
}

TEST_F(OutputRules, IntoObeysForce) {
  fs::create_directory(folder_ / "Repaired");
  writeFile(folder_ / "Repaired/repaired.avi", "mine");

  EXPECT_EQ(runZelvoAvi({"repair", input_, "--into", folder_ / "Repaired"}).exit, 3);
  EXPECT_EQ(readFile(folder_ / "Repaired/repaired.avi"), "mine");
  EXPECT_EQ(runZelvoAvi({"repair", input_, "--into", folder_ / "Repaired", "--force"}).exit, 0);
  EXPECT_NE(readFile(folder_ / "Repaired/repaired.avi"), "mine");
}

TEST_F(OutputRules, IntoCreatesNoFolderForARejectedInput) {
  writeFile(folder_ / "bad.avi", "no AVI");

  EXPECT_EQ(runZelvoAvi({"repair", folder_ / "bad.avi", "--into", folder_ / "Repaired"}).exit, 1);
  EXPECT_FALSE(fs::exists(folder_ / "Repaired"));
}

TEST_F(OutputRules, IntoNeedsTheFoldersOwnFolder) {
  EXPECT_EQ(runZelvoAvi({"repair", input_, "--into", folder_ / "no/Repaired"}).exit, 3);
  EXPECT_FALSE(fs::exists(folder_ / "no"));
}

TEST_F(OutputRules, IntoWithTheInputItselfInPlaceIsRefused) {
  fs::create_directory(folder_ / "Repaired");
  fs::create_hard_link(input_, folder_ / "Repaired/repaired.avi");

  EXPECT_EQ(runZelvoAvi({"repair", input_, "--into", folder_ / "Repaired", "-f"}).exit, 3);
}

// ---- No space, and writes that fail ----

/// Runs the program with a tmpfs of 300 KiB at "small", and lists what lies there afterwards on standard output. Where
/// none can be mounted, "mounted" is missing from standard error.
Ended runWithSmallDisk(const TempFolder& folder, const std::string& arguments) {
  fs::create_directory(folder / "small");
  return run({"unshare", "--map-root-user", "--mount", "sh", "-c",
              "mount -t tmpfs -o size=300k tmpfs \"$1/small\" || exit; echo mounted >&2; " ZELVO_AVI " " + arguments +
                  "; code=$?; ls -A \"$1/small\"; exit $code",
              "sh", folder.path()});
}

TEST_F(OutputRules, FullDiskIsSaidWithBothFiguresBeforeAnythingIsWritten) {
  const Ended ended = runWithSmallDisk(folder_, "repair \"$1/in.avi\" -o \"$1/small/out.avi\"");
  if (!ended.err.starts_with("mounted")) GTEST_SKIP() << "no file system can be mounted here: " << ended.err;

  EXPECT_EQ(ended.exit, 3);
  EXPECT_THAT(ended.err, HasSubstr("there is not enough free space"));
  EXPECT_THAT(ended.err, HasSubstr("665.3 kB are needed, 307.2 kB are free"));
  EXPECT_THAT(ended.out, IsEmpty()) << "nothing may be left there";
}

TEST_F(OutputRules, IntoAsksForRoomForBothFiles) {
  const Ended ended = runWithSmallDisk(folder_, "repair \"$1/in.avi\" --into \"$1/small/Repaired\"");
  if (!ended.err.starts_with("mounted")) GTEST_SKIP() << "no file system can be mounted here: " << ended.err;

  EXPECT_EQ(ended.exit, 3);
  EXPECT_THAT(ended.err, HasSubstr("1.4 MB are needed"));
  EXPECT_EQ(ended.out, "Repaired\n") << "the folder is created before the look at the space, as a save does it";
}

TEST_F(OutputRules, WriteThatFailsLeavesNothing) {
  std::vector<std::string> command = zelvoAvi({"repair", input_, "-o", folder_ / "out.avi"});
  command.insert(command.begin(), {"prlimit", "--fsize=100000"});

  const Ended ended = run(command);

  EXPECT_EQ(ended.exit, 3);
  EXPECT_THAT(ended.err, HasSubstr("writing " + (folder_ / "out.avi") + " failed after"));
  EXPECT_THAT(ended.err, HasSubstr("File too large"));
  EXPECT_THAT(folder_.names(), ElementsAre("in.avi"));
}

TEST_F(OutputRules, WriteThatFailsKeepsTheFileThatWasToBeReplaced) {
  writeFile(folder_ / "out.avi", "mine");
  std::vector<std::string> command = zelvoAvi({"repair", input_, "-o", folder_ / "out.avi", "--force"});
  command.insert(command.begin(), {"prlimit", "--fsize=100000"});

  EXPECT_EQ(run(command).exit, 3);

  EXPECT_EQ(readFile(folder_ / "out.avi"), "mine");
}

TEST_F(OutputRules, PaddedCopyThatFailsLeavesNothing) {
  // The rebuilt file fits below this limit, its padded copy does not.
  std::vector<std::string> command = zelvoAvi({"repair", input_, "--into", folder_ / "Repaired"});
  command.insert(command.begin(), {"prlimit", "--fsize=670000"});

  EXPECT_EQ(run(command).exit, 3);

  EXPECT_TRUE(fs::is_empty(folder_ / "Repaired"));
}

}  // namespace
}  // namespace zelvo::tests
