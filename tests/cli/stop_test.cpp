// What remains when a run is cut short. The input's repair is 2 GB long, so the signal always comes in the middle: it
// is sent when the hidden file appears.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

#include "tests/cli/program.h"
#include "tests/support/small_avi.h"
#include "tests/support/temp_folder.h"

namespace zelvo::tests {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class StoppedRepair : public testing::Test {
 protected:
  void SetUp() override {
    if (fs::space(folder_.path()).available < (std::uintmax_t{3} << 30U)) {
      GTEST_SKIP() << "less than 3 GiB are free in " << folder_.path();
    }
    writeFile(input_, bytes_);
  }
  void TearDown() override {
    if (IsSkipped()) return;
    EXPECT_TRUE(readFile(input_) == bytes_) << "the input was changed";
  }

  /// Starts a repair with the arguments and sends the signals once it is writing.
  [[nodiscard]] Ended stopWhileWriting(std::vector<std::string> arguments, const std::vector<int>& signals) const {
    arguments.insert(arguments.begin(), {"repair", input_});
    const FolderWatch watch(folder_.path());
    Program program(zelvoAvi(arguments));
    EXPECT_TRUE(watch.waitFor(".zelvo-avi-"));
    for (const int signal : signals) program.send(signal);
    return program.wait();
  }

  const TempFolder folder_;
  const std::string input_ = folder_ / "in.avi";
  const std::string bytes_ = overlappingAvi();
};

TEST_F(StoppedRepair, KillLeavesNoFinalFile) {
  const Ended ended = stopWhileWriting({"-o", folder_ / "out.avi"}, {SIGKILL});

  EXPECT_EQ(ended.signal, SIGKILL);
  EXPECT_THAT(folder_.names(), ElementsAre(StartsWith(".zelvo-avi-"), "in.avi"));
}

TEST_F(StoppedRepair, KillKeepsTheFileThatWasToBeReplaced) {
  writeFile(folder_ / "out.avi", "mine");

  EXPECT_EQ(stopWhileWriting({"-o", folder_ / "out.avi", "--force"}, {SIGKILL}).signal, SIGKILL);

  EXPECT_EQ(readFile(folder_ / "out.avi"), "mine");
}

TEST_F(StoppedRepair, CtrlCLeavesNothingAndAnswers130) {
  const Ended ended = stopWhileWriting({"-o", folder_ / "out.avi"}, {SIGINT});

  EXPECT_EQ(ended.exit, 130);
  EXPECT_THAT(ended.err, HasSubstr("nothing was written, and it is unchanged."));
  EXPECT_THAT(ended.out, IsEmpty());
  EXPECT_THAT(folder_.names(), ElementsAre("in.avi"));
}

TEST_F(StoppedRepair, SecondAndThirdCtrlCChangeNothing) {
  EXPECT_EQ(stopWhileWriting({"-o", folder_ / "out.avi"}, {SIGINT, SIGINT, SIGINT}).exit, 130);
  EXPECT_THAT(folder_.names(), ElementsAre("in.avi"));
}

TEST_F(StoppedRepair, TerminationAndHangUpCountAsStops) {
  EXPECT_EQ(stopWhileWriting({"-o", folder_ / "out.avi"}, {SIGTERM}).exit, 130);
  EXPECT_EQ(stopWhileWriting({"-o", folder_ / "out.avi"}, {SIGHUP}).exit, 130);
  EXPECT_THAT(folder_.names(), ElementsAre("in.avi"));
}

TEST_F(StoppedRepair, CtrlCKeepsTheFileThatWasToBeReplaced) {
  writeFile(folder_ / "out.avi", "mine");

  EXPECT_EQ(stopWhileWriting({"-o", folder_ / "out.avi", "--force"}, {SIGINT}).exit, 130);

  EXPECT_EQ(readFile(folder_ / "out.avi"), "mine");
  EXPECT_THAT(folder_.names(), ElementsAre("in.avi", "out.avi"));
}

TEST_F(StoppedRepair, FurtherInputsAreNotBegun) {
  const Ended ended = stopWhileWriting({folder_ / "missing.avi"}, {SIGINT});

  EXPECT_EQ(ended.exit, 130);
  EXPECT_THAT(ended.out, HasSubstr("2 inputs: 1 stopped, 1 not started."));
}

TEST_F(StoppedRepair, EarlierFailureOutweighsTheStop) {
  const FolderWatch watch(folder_.path());
  Program program(zelvoAvi({"repair", folder_ / "missing.avi", input_}));
  ASSERT_TRUE(watch.waitFor(".zelvo-avi-"));
  program.send(SIGINT);

  EXPECT_EQ(program.wait().exit, 3);
}

TEST_F(StoppedRepair, StopIsOneJsonObjectToo) {
  const Ended ended = stopWhileWriting({"-o", folder_ / "out.avi", "--json"}, {SIGINT});

  EXPECT_THAT(ended.out, HasSubstr("\"outcome\":\"stopped\""));
}

/// Runs a walk whose result nobody takes at first, so that it waits, and sends the signals meanwhile.
Ended walkWithSignals(const std::string& begin, const std::vector<int>& signals) {
  const TempFolder folder;
  writeFile(folder / "in.avi", SmallAvi{.frames = 5000, .frameSize = 100}.bytes());
  Program program({"sh", "-c", begin + "exec " ZELVO_AVI " inspect --chunks \"$1\" >&2", "sh", folder / "in.avi"});
  EXPECT_TRUE(program.waitForError("00dc at ")) << "the walk has not begun";
  for (const int signal : signals) program.send(signal);
  return program.wait();
}

TEST(IgnoredSignal, StaysIgnored) {
  // As nohup and a shell's background job leave them.
  const Ended ended = walkWithSignals("trap '' INT HUP TERM; ", {SIGINT, SIGHUP, SIGTERM});

  EXPECT_EQ(ended.exit, 0) << ended.err.substr(ended.err.size() - std::min<std::size_t>(ended.err.size(), 500));
  EXPECT_THAT(ended.err, testing::Not(HasSubstr("stopped")));
}

TEST(IgnoredSignal, LeavesTheOthersAsTheyAre) {
  for (const int signal : {SIGINT, SIGHUP}) EXPECT_EQ(walkWithSignals("trap '' TERM; ", {signal}).exit, 130) << signal;
  EXPECT_EQ(walkWithSignals("trap '' INT HUP; ", {SIGTERM}).exit, 130);
}

TEST(StoppedScan, CtrlCEndsItAtOnce) {
  const TempFolder folder;
  writeFile(folder / "in.avi", SmallAvi{}.bytes());
  fs::resize_file(folder / "in.avi", std::uintmax_t{200} << 30U);  // sparse; its scan takes minutes
  Program program(zelvoAvi({"check", "--verbose", folder / "in.avi"}));
  ASSERT_TRUE(program.waitForError("Break\n")) << "the scan has not begun";

  program.send(SIGINT);

  EXPECT_EQ(program.wait().exit, 130);
}

/// A walk that takes minutes: a film with a sparse end.
class StoppedInspection : public testing::Test {
 protected:
  void SetUp() override {
    writeFile(input_, SmallAvi{.frames = 5000, .frameSize = 100}.bytes());
    fs::resize_file(input_, std::uintmax_t{400} << 30U);
  }
  const TempFolder folder_;
  const std::string input_ = folder_ / "in.avi";
};

TEST_F(StoppedInspection, CtrlCEndsItAndIsTold) {
  Program program({"sh", "-c", "exec " ZELVO_AVI " inspect --chunks \"$1\" >&2", "sh", input_});
  ASSERT_TRUE(program.waitForError("00dc at ")) << "the walk has not begun";

  program.send(SIGINT);
  const Ended ended = program.wait();

  EXPECT_EQ(ended.exit, 130);
  EXPECT_THAT(ended.err, HasSubstr(": stopped here; "));
  EXPECT_THAT(ended.err, HasSubstr(" bytes were not looked at\n"));
  EXPECT_THAT(ended.err, HasSubstr("zelvo-avi: stopped; " + input_ + " was looked at up to byte "));
  EXPECT_THAT(ended.err, HasSubstr(" found until the stop.\n"));
  EXPECT_THAT(ended.err, testing::Not(HasSubstr("No problems found")));
}

TEST_F(StoppedInspection, IsOneJsonObjectThatSaysSo) {
  Program program(zelvoAvi({"inspect", "--json", input_}), ErrorStream::terminal);
  ASSERT_TRUE(program.waitForError("in.avi: reading")) << "the walk has not begun";

  program.send(SIGTERM);
  const Ended ended = program.wait();

  EXPECT_EQ(ended.exit, 130);
  EXPECT_THAT(ended.out, HasSubstr("\"stopped\":true}\n"));
  EXPECT_THAT(ended.out, HasSubstr("were not looked at"));
  EXPECT_THAT(ended.err, HasSubstr("zelvo-avi: stopped; "));
  writeFile(folder_ / "result.json", ended.out);
  const Ended judged = run({"python3", ZELVO_ROOT "/tests/cli/validate_json.py",
                            ZELVO_ROOT "/docs/cli-inspect.schema.json", folder_ / "result.json"});
  EXPECT_EQ(judged.exit, 0) << judged.out << judged.err;
}

}  // namespace
}  // namespace zelvo::tests
