// The progress as the workers store it and the bars show it, and the steps that no flow calls.
#include <cmath>

#include "tests/app/app_bench.h"

namespace zelvo::tests {
namespace {

using Progress = FlowTest;
using State = platform::Button::State;

TEST_F(Progress, StoringAValueSetsTheRepairButtonOff) {
  app.screen.repairbutton.setState(State::on);

  app.controller->setProgressBarValue(12.5);

  EXPECT_EQ(app.controller->progressbarValue, 12.5);
  EXPECT_EQ(app.screen.repairbutton.state(), State::off);
}

TEST_F(Progress, EachUpdateShowsTheValueInItsBar) {
  app.controller->setProgressBarValue(12.5);
  app.events.clear();

  app.controller->updateProgressBar();
  app.controller->updateSaveProgressBar();
  app.controller->updateSaveProgressBar2();

  EXPECT_EQ(app.events.lines(), (Lines{"progressbar.setDoubleValue(12.5)", "repairbutton.setState(off)",
                                       "progressbar.setDoubleValue(12.5)", "saveprogressbar.setDoubleValue(12.5)"}));
}

TEST_F(Progress, TheJobsSaveProgressDrivesTheRepairBar) {
  app.controller->repair1->saveprogress();
  queue.pump();

  EXPECT_EQ(app.screen.progressbar.doubleValue(), 99.90234375);
  EXPECT_EQ(app.screen.saveprogressbar.doubleValue(), 0.0);
}

TEST_F(Progress, RetrievalFillsTheBarStepByStep) {
  engine::inputfilesize = 4 * 1024 + 5;

  app.controller->updateProgressBarRetrieve(nullptr);

  EXPECT_EQ(app.takeEvents({"progressbar."}),
            (Lines{"progressbar.setDoubleValue(0)", "progressbar.setDoubleValue(25)", "progressbar.setDoubleValue(50)",
                   "progressbar.setDoubleValue(75)", "progressbar.setDoubleValue(100)"}));
  EXPECT_EQ(app.controller->progressbarValue, 100.0);
}

TEST_F(Progress, RetrievalStepsAreCountedFromTheGlobal) {
  engine::inputfilesize = 4 * 1024;
  engine::globalsectorforsample = 2;

  app.controller->updateProgressBarRetrieve(nullptr);

  EXPECT_EQ(app.events.lines(),
            (Lines{"repairbutton.setState(off)", "progressbar.setDoubleValue(50)", "repairbutton.setState(off)",
                   "progressbar.setDoubleValue(75)", "repairbutton.setState(off)", "progressbar.setDoubleValue(100)"}));
}

TEST_F(Progress, RetrievalOfLessThanOneKiBDoesNotDivideByZero) {
  engine::inputfilesize = 1023;

  app.controller->updateProgressBarRetrieve(nullptr);

  EXPECT_EQ(app.events.lines(), (Lines{"repairbutton.setState(off)", "progressbar.setDoubleValue(0)"}));
  EXPECT_FALSE(std::isnan(app.controller->progressbarValue));
}

TEST_F(Progress, NexttabSleepsASecondAndShowsTheProgress) {
  app.controller->setProgressBarValue(30.0);
  app.events.clear();

  app.controller->nexttab();

  EXPECT_EQ(app.events.lines(),
            (Lines{"sleep(1000 ms)", "progressbar.setDoubleValue(30)", "repairbutton.setState(off)"}));
  EXPECT_EQ(queue.awaited(), 1U);
}

TEST_F(Progress, CopyfileWaitsForTheMainThreadAndNothingElseHappens) {
  app.start();
  app.choose(smallAvi());
  app.watchVariables();
  const std::size_t before = queue.awaited();

  app.controller->copyfile();
  EXPECT_EQ(queue.awaited(), before + 1);
  app.controller->tabset();

  EXPECT_EQ(queue.awaited(), before + 1);
  EXPECT_EQ(app.takeAllEvents(), Lines{});
}

TEST_F(Progress, MethodForFileNotSupportedResetsInOrder) {
  app.start();
  app.choose(platform::Bytes(10));
  app.watchVariables();

  app.controller->methodForFileNotSupported();

  EXPECT_EQ(app.takeAllEvents(), (Lines{"progressbar.setDoubleValue(0)", "tabview.selectFirstTabViewItem()",
                                        "stopflag = 1", "path = ", "pathfield.setStringValue()", "path = nothing"}));
  EXPECT_TRUE(engine::stopflag);
  EXPECT_EQ(engine::path.get(), std::nullopt);
}

}  // namespace
}  // namespace zelvo::tests
