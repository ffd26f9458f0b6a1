#include "platform/linux/path_probe.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <thread>

#include "tests/platform/linux/kept_blocks.h"
#include "tests/support/temp_folder.h"

namespace zelvo::tests {
namespace {

using namespace std::chrono_literals;
using platform::PathAnswer;
using platform::linux_::LinuxPathProbe;

constexpr auto kLong = 60s;
constexpr auto kShort = 50ms;
constexpr int kTries = 30;

class LinuxPathProbeTest : public testing::Test {
 protected:
  /// A program of the test's own in the place of the child; it is told what the child is told.
  [[nodiscard]] std::string script(const std::string& lines) const {
    const std::string path = folder.put("child", "#!/bin/sh\n" + lines);
    EXPECT_EQ(::chmod(path.c_str(), 0700), 0);
    return path;
  }
  /// Notes how often it was started, and with what.
  [[nodiscard]] std::string noted(const std::string& lines) const {
    return script("echo \"$@\" >> '" + folder.path("started") + "'\n" + lines);
  }
  /// A script that never answers: nobody ever writes into that pipe.
  [[nodiscard]] std::string silent() const {
    EXPECT_EQ(::mkfifo(folder.path("fifo").c_str(), 0600), 0);
    return noted("echo $$ > '" + folder.path("pid.new") + "'\nmv '" + folder.path("pid.new") + "' '" +
                 folder.path("pid") + "'\nexec cat '" + folder.path("fifo") + "'\n");
  }
  [[nodiscard]] bool wasStarted() const { return std::filesystem::exists(folder.path("pid")); }

  TempFolder folder;
};

/// What a child writes that has looked at path number `place` and found 513 bytes (and one more per place) free of
/// 1027.
std::string recordOf(int place) {
  return R"(printf '\00)" + std::to_string(place) + R"(\0\0\0\0\0\0\0\00)" + std::to_string(place + 1) +
         R"(\002\0\0\0\0\0\0\003\004\0\0\0\0\0\0')";
}

TEST_F(LinuxPathProbeTest, FileSystemOfEachPathTellsItsSpace) {
  LinuxPathProbe probe(ZELVO_PROBE, kLong);
  const std::string file = folder.put("file", "x");
  const auto answers = probe.ask({folder.path(), file, "/proc"});
  ASSERT_EQ(answers.size(), 3U);
  struct statvfs space {};
  ASSERT_EQ(::statvfs(file.c_str(), &space), 0);
  for (const PathAnswer& answer : {answers[0], answers[1]}) {
    EXPECT_TRUE(answer.answered);
    EXPECT_FALSE(answer.error);
    EXPECT_EQ(answer.capacity, static_cast<std::uint64_t>(space.f_blocks) * space.f_frsize);
    EXPECT_LE(answer.free, answer.capacity);
  }
  EXPECT_TRUE(answers[2].answered);
  EXPECT_EQ(answers[2].capacity, 0U);
}

TEST_F(LinuxPathProbeTest, BlocksThatAreKeptBackForRootAreNotFree) {
  const auto place = placeThatKeepsBlocksBack();
  if (!place) GTEST_SKIP() << "no file system here keeps blocks back";
  LinuxPathProbe probe(ZELVO_PROBE, kLong);
  const auto answers = probe.ask({place->path});
  EXPECT_NEAR(static_cast<double>(answers[0].free), place->available, place->kept / 2);
}

TEST_F(LinuxPathProbeTest, PathThatIsNotThereAnswersThatItIsNot) {
  LinuxPathProbe probe(ZELVO_PROBE, kLong);
  const auto answers = probe.ask({folder.path("none"), folder.path()});
  EXPECT_TRUE(answers[0].answered);
  EXPECT_EQ(answers[0].error, std::errc::no_such_file_or_directory);
  EXPECT_FALSE(answers[1].error);
  EXPECT_TRUE(probe.answers({folder.path("none")}));
}

TEST_F(LinuxPathProbeTest, ThousandPathsAreAskedAtOnce) {
  LinuxPathProbe probe(ZELVO_PROBE, kLong);
  const std::vector<std::string> paths(1000, folder.path());
  const auto answers = probe.ask(paths);
  ASSERT_EQ(answers.size(), paths.size());
  EXPECT_TRUE(std::ranges::all_of(answers, [](const PathAnswer& one) { return one.answered && one.capacity > 0; }));
}

TEST_F(LinuxPathProbeTest, NoPathsAreNotAskedFor) {
  LinuxPathProbe probe(noted("exit 0\n"), kLong);
  EXPECT_TRUE(probe.ask({}).empty());
  EXPECT_FALSE(std::filesystem::exists(folder.path("started")));
}

TEST_F(LinuxPathProbeTest, ChildIsToldTheOptionAndThePathsAsTheyAre) {
  LinuxPathProbe probe(noted("exit 0\n"), kLong);
  static_cast<void>(probe.ask({"/a b", "/-c"}));
  EXPECT_EQ(folder.content("started"), "--answer-for-paths /a b /-c\n");
}

TEST_F(LinuxPathProbeTest, PathThatHangsDoesNotAnswerAndTheOthersDo) {
  LinuxPathProbe probe(noted(recordOf(1) + "\nexec tail -f /dev/null\n"), 1s, 0ms);
  std::vector<PathAnswer> answers;
  for (int tries = 0; tries < kTries; ++tries) {  // the script may not be started within a second
    answers = probe.ask({"/dead", "/alive"});
    if (answers[1].answered) break;
  }
  EXPECT_FALSE(answers[0].answered);
  EXPECT_EQ(answers[0].error, std::errc::timed_out);
  EXPECT_TRUE(answers[1].answered);
  EXPECT_FALSE(answers[1].error);
  EXPECT_EQ(answers[1].free, 514U);
  EXPECT_EQ(answers[1].capacity, 1027U);
}

/// A file system that was mounted and never answers anything, as that of a server that is gone.
class HangingMount {
 public:
  explicit HangingMount(std::string folder)
      : folder_(std::move(folder)), server_(::open("/dev/fuse", O_RDWR | O_CLOEXEC)) {
    std::filesystem::create_directory(folder_);
    const std::string options = "fd=" + std::to_string(server_) + ",rootmode=40000,user_id=0,group_id=0";
    isThere_ = server_ >= 0 && ::mount("hangs", folder_.c_str(), "fuse.hangs", 0, options.c_str()) == 0;
  }
  HangingMount(const HangingMount&) = delete;
  HangingMount& operator=(const HangingMount&) = delete;
  ~HangingMount() {
    if (isThere_) ::umount2(folder_.c_str(), MNT_DETACH);
    if (server_ >= 0) ::close(server_);
  }
  [[nodiscard]] bool isThere() const { return isThere_; }

 private:
  std::string folder_;
  int server_;
  bool isThere_ = false;
};

TEST_F(LinuxPathProbeTest, MountThatHangsHoldsUpNeitherTheOthersNorTheAsker) {
  const std::string dead = folder.path("mount");
  const HangingMount mount(dead);
  if (!mount.isThere()) GTEST_SKIP() << "only root mounts, and where the system lets it";
  LinuxPathProbe probe(ZELVO_PROBE, 4s);
  const auto answers = probe.ask({dead + "/film.avi", folder.path(), dead});
  EXPECT_FALSE(answers[0].answered);
  EXPECT_TRUE(answers[1].answered);
  EXPECT_GT(answers[1].capacity, 0U);
  EXPECT_FALSE(answers[2].answered);
}

TEST_F(LinuxPathProbeTest, AnswersCountByTheirPlaceNotByTheirOrder) {
  LinuxPathProbe probe(script(recordOf(1) + "\n" + recordOf(0) + "\n"), kLong);
  const auto answers = probe.ask({"/a", "/b"});
  EXPECT_EQ(answers[0].free, 513U);
  EXPECT_EQ(answers[1].free, 514U);
}

TEST_F(LinuxPathProbeTest, BesideASilentPathTheOthersAreAskedAndKeepTheirPlaces) {
  LinuxPathProbe probe(script("case \"$*\" in *dead*) exec tail -f /dev/null ;; esac\n" + recordOf(0) + "\n"), 4s,
                       std::chrono::hours(1));
  EXPECT_FALSE(probe.answers({"/dead"}));
  const auto answers = probe.ask({"/dead", "/alive"});
  EXPECT_FALSE(answers[0].answered);
  EXPECT_EQ(answers[0].error, std::errc::timed_out);
  EXPECT_TRUE(answers[1].answered);
  EXPECT_EQ(answers[1].free, 513U);
}

TEST_F(LinuxPathProbeTest, ChildThatHangsIsKilledAndDoesNotStay) {
  const std::string child = silent();
  {
    LinuxPathProbe probe(child, 1s, 0ms);
    for (int tries = 0; tries < kTries && !wasStarted(); ++tries) EXPECT_FALSE(probe.answers({"/dead"}));
    ASSERT_TRUE(wasStarted());
  }
  const int pid = std::stoi(folder.content("pid"));
  // Its end may come after the probe has gone: what is waited for is that it is killed.
  const auto state = [pid] {
    std::ifstream status("/proc/" + std::to_string(pid) + "/stat");
    std::string number, name, letter;
    status >> number >> name >> letter;
    return letter;
  };
  for (int tries = 0; tries < 10000 && !state().empty() && state() != "Z"; ++tries) std::this_thread::yield();
  EXPECT_THAT(state(), testing::AnyOf("", "Z"));
}

TEST_F(LinuxPathProbeTest, EndOfAKilledChildIsTakenNoteOfAtTheNextQuestion) {
  LinuxPathProbe probe(silent(), kShort, 0ms);
  int before = 0;
  for (int tries = 0; tries < 100; ++tries) {
    EXPECT_FALSE(probe.answers({"/dead"}));
    if (!wasStarted()) continue;
    const int pid = std::stoi(folder.content("pid"));
    if (before != 0 && pid != before && ::kill(before, 0) != 0) return;  // nothing of it is left
    before = pid;
  }
  FAIL() << "the child " << before << " is still there";
}

TEST_F(LinuxPathProbeTest, SilentPathAndAllBelowItAreNotAskedAgainForAWhile) {
  LinuxPathProbe probe(silent(), 1s, std::chrono::hours(1));
  EXPECT_FALSE(probe.answers({"/dead"}));
  EXPECT_FALSE(probe.answers({"/dead/file"}));
  EXPECT_FALSE(probe.answers({"/dead"}));
  EXPECT_FALSE(probe.answers({"/deader"}));
  const std::string started = folder.content("started");
  EXPECT_EQ(started.find("/dead/file"), std::string::npos) << started;
  EXPECT_LE(std::ranges::count(started, '\n'), 2) << started;
}

TEST_F(LinuxPathProbeTest, WithoutAChildPathsCountAsAnsweringAndTheErrorSaysWhy) {
  LinuxPathProbe probe(folder.path("none"), kLong);
  const auto answers = probe.ask({"/"});
  EXPECT_TRUE(answers[0].answered);
  EXPECT_EQ(answers[0].error, std::errc::no_such_file_or_directory);
}

TEST_F(LinuxPathProbeTest, ChildThatEndsWithoutAWordSaysNothingAboutThePath) {
  LinuxPathProbe probe(script("exit 1\n"), kLong);
  const auto answers = probe.ask({"/"});
  EXPECT_TRUE(answers[0].answered);
  EXPECT_EQ(answers[0].error, std::errc::io_error);
}

TEST_F(LinuxPathProbeTest, AnswerForAPathThatWasNotAskedForIsNotBelieved) {
  LinuxPathProbe probe(script(recordOf(7) + "\n"), kLong);
  EXPECT_EQ(probe.ask({"/"})[0].error, std::errc::io_error);
}

TEST_F(LinuxPathProbeTest, ProgramBesideAnotherIsInItsFolder) {
  EXPECT_EQ(LinuxPathProbe::programBeside("/opt/x y/window"), "/opt/x y/zelvo-avi-probe");
}

}  // namespace
}  // namespace zelvo::tests
