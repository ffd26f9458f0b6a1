// The progress animation, the two routines that no flow calls, the job's own preview, and the sheets' buttons.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "engine/repair_file.h"
#include "tests/support/byte_text.h"
#include "tests/support/engine_bench.h"

namespace zelvo::tests {
namespace {

class RepairProgress : public testing::Test {
 protected:
  RepairProgress() { bench.begin(); }
  void animate() { bench.job->progressupdation(*bench.current); }
  std::vector<std::string> eventsOf(const std::string& beginning) {
    std::vector<std::string> found;
    for (const std::string& line : bench.events.lines()) {
      if (line.starts_with(beginning)) found.push_back(line);
    }
    return found;
  }

  EngineBench bench;
};

TEST_F(RepairProgress, ThreeBlocksGiveThirtySteps) {
  bench.job->numberofsectors = 3;

  animate();

  ASSERT_EQ(bench.relay.values.size(), 31U);
  EXPECT_EQ(bench.relay.values[0], 0.0);
  for (std::size_t i = 1; i <= 30; ++i) EXPECT_DOUBLE_EQ(bench.relay.values[i], static_cast<double>(i) * 100.0 / 30);
  EXPECT_EQ(bench.relay.values.back(), 100.0);
}

TEST_F(RepairProgress, StopButtonIsDisabledFromStep25OfThirtyOn) {
  bench.job->numberofsectors = 3;
  std::size_t firstStep = 0;
  bench.relay.writesEvents = true;

  animate();

  std::size_t step = 0;
  for (const std::string& line : bench.events.lines()) {
    if (line == "updateProgressBar") ++step;
    if (line == "stopbutton.setEnabled(no)" && firstStep == 0) firstStep = step;
  }
  EXPECT_EQ(firstStep, 25U);
  EXPECT_FALSE(bench.screen.stopbutton.isEnabled());
}

TEST_F(RepairProgress, StopButtonIsDisabledOnceAStepAbove80AndOnceMoreAbove90) {
  bench.job->numberofsectors = 3;
  animate();
  // Steps 25 to 30, of which 28 to 30 lie above 90.
  EXPECT_EQ(eventsOf("stopbutton.").size(), 6U + 3U);
}

TEST_F(RepairProgress, StepOfExactly80DoesNotDisableTheStopButton) {
  bench.job->numberofsectors = 1;  // steps of 10 per cent
  bool enabledAt80 = false;
  bench.relay.onValue = [&](double value) {
    if (value == 90.0) enabledAt80 = bench.screen.stopbutton.isEnabled();
  };
  animate();
  EXPECT_TRUE(enabledAt80);
  EXPECT_EQ(eventsOf("stopbutton.").size(), 2U + 1U);  // 90, 100; and 100 once more
}

TEST_F(RepairProgress, CompletedSheetFollowsTheLastStep) {
  bench.job->numberofsectors = 3;
  bench.relay.writesEvents = true;

  animate();

  const std::vector<std::string> lines = bench.events.lines();
  ASSERT_GE(lines.size(), 4U);
  const std::vector<std::string> ending(lines.end() - 4, lines.end());
  EXPECT_EQ(ending,
            (std::vector<std::string>{"stopbutton.setEnabled(no)", "endSheet(stoprepairwindow)",
                                      "stoprepairwindow.orderOut()", "beginSheet(repaircompletedwindow, mainWindow)"}));
}

TEST_F(RepairProgress, StopSheetIsEndedEvenWhenItIsNotShown) {
  bench.job->numberofsectors = 1;
  ASSERT_TRUE(bench.sheets.shown().empty());
  animate();
  EXPECT_EQ(eventsOf("endSheet"), std::vector<std::string>{"endSheet(stoprepairwindow)"});
}

TEST_F(RepairProgress, FirstZeroIsStoredWithoutARedrawRequest) {
  bench.job->numberofsectors = 1;
  bench.relay.writesEvents = true;
  animate();
  const std::vector<std::string> lines = bench.events.lines();
  const std::vector<std::string> beginning(lines.begin(), lines.begin() + 4);
  EXPECT_EQ(beginning, (std::vector<std::string>{"textfield.setStringValue(Repairing the file..)",
                                                 "setProgressBarValue", "setProgressBarValue", "updateProgressBar"}));
  EXPECT_EQ(bench.relay.shown.size(), 10U);
  EXPECT_EQ(bench.relay.shown.front(), 10.0);
}

TEST_F(RepairProgress, StopAtStep5OfThirtyLeavesTheBarAtStep4AndShowsNoSheet) {
  bench.job->numberofsectors = 3;
  std::size_t step = 0;
  bench.relay.onValue = [&](double) {
    if (step++ == 4) engine::stopflag = true;  // set after step 4, seen by step 5
  };

  animate();

  EXPECT_DOUBLE_EQ(bench.relay.values.back(), 4 * 100.0 / 30);
  EXPECT_EQ(bench.relay.shown.size(), 4U);
  EXPECT_TRUE(bench.sheets.shown().empty());
  EXPECT_TRUE(eventsOf("endSheet").empty());
}

TEST_F(RepairProgress, StopAboveEightyLeavesTheStopButtonAlone) {
  bench.job->numberofsectors = 3;
  bench.relay.onValue = [&](double value) {
    if (value > 85.0) engine::stopflag = true;  // step 26, the second above 80
  };
  animate();
  EXPECT_EQ(eventsOf("stopbutton.").size(), 2U);
  EXPECT_EQ(bench.relay.shown.size(), 26U);
}

TEST_F(RepairProgress, RunsOwnCancelMarkSilencesItTheSameWay) {
  bench.job->numberofsectors = 3;
  std::size_t step = 0;
  bench.relay.onValue = [&](double) {
    if (step++ == 4) bench.current->cancel->cancel();
  };
  animate();
  EXPECT_EQ(bench.relay.shown.size(), 4U);
  EXPECT_TRUE(bench.sheets.shown().empty());
}

TEST_F(RepairProgress, StopBeforeTheFirstStepLeavesTheBarAtZero) {
  bench.job->numberofsectors = 3;
  engine::stopflag = true;
  animate();
  EXPECT_EQ(bench.relay.values, std::vector{0.0});
  EXPECT_EQ(bench.screen.status.stringValue(), "Repairing the file..");
  EXPECT_TRUE(bench.sheets.shown().empty());
}

TEST_F(RepairProgress, ZeroBlocksGiveTheCompletedSheetAtOnce) {
  bench.job->numberofsectors = 0;
  animate();
  EXPECT_EQ(bench.relay.values, std::vector{0.0});
  EXPECT_EQ(bench.sheets.shown(), std::vector<std::string>{"repaircompletedwindow"});
}

TEST_F(RepairProgress, StepCountIsAnUnsigned32BitProduct) {
  bench.job->numberofsectors = 429496730;  // times ten is 4 more than 2^32
  animate();
  EXPECT_EQ(bench.relay.values, (std::vector{0.0, 25.0, 50.0, 75.0, 100.0}));
}

TEST_F(RepairProgress, CompletedSheetOfARunStoppedBeforeItOpensIsDropped) {
  bench.job->numberofsectors = 1;
  std::thread([this] { animate(); }).join();  // off the main thread, so the sheet waits in the queue
  engine::stopflag = true;

  bench.queue.pump();

  EXPECT_TRUE(bench.sheets.shown().empty());
  EXPECT_EQ(bench.events.lines().back(), "beginSheet(repaircompletedwindow) dropped");
}

TEST_F(RepairProgress, CompletedSheetIsDroppedByTheRunsOwnMarkAfterTheFlagIsCleared) {
  bench.job->numberofsectors = 1;
  std::thread([this] { animate(); }).join();
  bench.current->cancel->cancel();
  engine::stopflag = false;  // the next file is chosen

  bench.queue.pump();

  EXPECT_TRUE(bench.sheets.shown().empty());
}

TEST_F(RepairProgress, RejectionSheetsAreNotDropped) {
  bench.choose(platform::Bytes(2000, std::byte{0x20}));
  std::thread([this] { bench.run(); }).join();
  bench.current->cancel->cancel();
  engine::stopflag = true;

  bench.queue.pump();

  EXPECT_EQ(bench.sheets.shown(), std::vector<std::string>{"invalidfilewindow"});
}

// ---- Routines that no flow calls ----

TEST_F(RepairProgress, SaveprogressEndsAt99Point90234375NeverAt100) {
  bench.job->saveprogress();
  ASSERT_EQ(bench.relay.values.size(), 1024U);
  EXPECT_EQ(bench.relay.values.front(), 0.0);
  EXPECT_EQ(bench.relay.values[1], 0.09765625);
  EXPECT_EQ(bench.relay.values.back(), 99.90234375);
  EXPECT_EQ(bench.relay.savingShown, bench.relay.values);
  EXPECT_TRUE(bench.relay.shown.empty());
}

TEST_F(RepairProgress, ProgressBarTakesOneStepABlockAndLeavesSectorBehindTheLast) {
  bench.job->numberofsectors = 4;
  bench.job->progressBar();
  EXPECT_EQ(bench.relay.values, (std::vector{25.0, 50.0, 75.0, 100.0}));
  EXPECT_EQ(bench.relay.shown, bench.relay.values);
  EXPECT_EQ(bench.job->sector, 5U);
}

TEST_F(RepairProgress, ProgressBarOfZeroBlocksDoesNothing) {
  bench.job->numberofsectors = 0;
  bench.job->progressBar();
  EXPECT_TRUE(bench.relay.values.empty());
  EXPECT_EQ(bench.job->sector, 1U);
}

TEST_F(RepairProgress, JobsOwnSetMovieViewShowsTheInputsMovieWhateverItIsGiven) {
  bench.choose(platform::Bytes(2000, std::byte{0x20}));
  bench.begin();
  static_cast<void>(bench.job->fileValidityCheck());
  bench.events.clear();

  bench.job->setMovieView("/ignored.avi");

  EXPECT_EQ(bench.screen.movieview1.movie(), bench.job->video1);
  EXPECT_EQ(bench.events.lines(), (std::vector<std::string>{"movieview1.setMovie(movie)", "log: ETTING PREVIEW"}));
}

TEST_F(RepairProgress, JobsOwnSetMovieViewShowsNothingWithoutAMovie) {
  bench.job->setMovieView("");
  EXPECT_EQ(bench.screen.movieview1.movie(), nullptr);
  EXPECT_EQ(bench.events.lines().back(), "log: ETTING PREVIEW");
}

// ---- Buttons of the sheets ----

TEST_F(RepairProgress, CompletedOkGoesOnToTheNextPage) {
  bench.screen.tabview.selectPage(2);
  bench.events.clear();
  bench.relay.writesEvents = true;

  bench.job->repairCompletedOk(nullptr);

  EXPECT_EQ(bench.events.lines(),
            (std::vector<std::string>{"endSheet(repaircompletedwindow)", "repaircompletedwindow.orderOut()",
                                      "setProgressBarValue", "tabview.selectNextTabViewItem()",
                                      "textfield.setStringValue()", "log: Next tab view is set"}));
  EXPECT_EQ(bench.relay.values, std::vector{0.0});
  EXPECT_EQ(bench.screen.tabview.page(), 3);
}

TEST_F(RepairProgress, NotSupportedOkGoesBackRaisesTheStopflagAndForgetsThePath) {
  bench.screen.tabview.selectPage(2);
  engine::path.set("/in.avi");

  bench.job->fileNotSupportedokOk(nullptr);

  EXPECT_EQ(bench.events.lines(),
            (std::vector<std::string>{"endSheet(filenotsupportedwindow)", "filenotsupportedwindow.orderOut()",
                                      "tabview.selectPreviousTabViewItem()", "pathfield.setStringValue()"}));
  EXPECT_TRUE(engine::stopflag);
  EXPECT_FALSE(engine::path.get().has_value());
  EXPECT_EQ(bench.screen.tabview.page(), 1);
}

class InvalidFileOk : public RepairProgress, public testing::WithParamInterface<bool> {};

TEST_P(InvalidFileOk, LeavesTheStopflagAsItIs) {
  bench.screen.tabview.selectPage(2);
  engine::path.set("/in.avi");
  engine::stopflag = GetParam();

  bench.job->invalidFileOk(nullptr);

  EXPECT_EQ(bench.events.lines(),
            (std::vector<std::string>{"endSheet(invalidfilewindow)", "invalidfilewindow.orderOut()",
                                      "tabview.selectPreviousTabViewItem()", "pathfield.setStringValue()"}));
  EXPECT_EQ(engine::stopflag, GetParam());
  EXPECT_FALSE(engine::path.get().has_value());
}

INSTANTIATE_TEST_SUITE_P(Stopflag, InvalidFileOk, testing::Bool(), testing::PrintToStringParamName());

}  // namespace
}  // namespace zelvo::tests
