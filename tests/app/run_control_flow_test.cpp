#include <cmath>
#include <functional>
#include <utility>

#include "tests/app/app_bench.h"

namespace zelvo::tests {
namespace {

using Repair = FlowTest;
using Stop = FlowTest;
using Progress = FlowTest;
using State = platform::Button::State;

const Lines kPaths1 = {"log: MHD=/home/user/Downloads/MPlayerX.app", "log: Homedirectory=/home/user",
                       "log: internalpath=/Applications/testfile1.avi"};
const Lines kPlayerAbsent = {
    "log: File does not exist",
    "downloadmplayertext1.setStringValue(If you are unable to hear the audio or see the video clearly, )",
    "downloadmplayertext2.setStringValue(please)",
    "downloadmplayertext3.setStringValue(for more)",
    "downloadmplayertext4.setStringValue(information.)",
    "clickherebutton.setEnabled(yes)",
    "clickherebutton.setHidden(no)"};
const Lines kPlayerPresent = {"log: File exists",
                              "downloadmplayertext.setStringValue()",
                              "downloadmplayertext1.setStringValue()",
                              "downloadmplayertext2.setStringValue()",
                              "downloadmplayertext3.setStringValue()",
                              "downloadmplayertext4.setStringValue()",
                              "clickherebutton.setEnabled(no)",
                              "clickherebutton.setHidden(yes)"};
const Lines kStarted = {"stopbutton.setEnabled(yes)",
                        "repairbutton.setImage(repair_button_normal)",
                        "pathlabel.setStringValue(/films/broken.avi)",
                        "progressbar.setDoubleValue(0)",
                        "tabview.selectNextTabViewItem()",
                        "repairbutton.setImage(repair_button_normal)",
                        "previewbutton.setState(off)",
                        "repairbutton.setState(on)",
                        "pathfield.setStringValue(/films/broken.avi)",
                        "durationfield.setIntegerValue(0)"};
const Lines kNotStarted = {"stopbutton.setEnabled(yes)", "repairbutton.setImage(repair_button_normal)",
                           "beginSheet(filenotselectedwindow, mainWindow)", "previewbutton.setState(off)",
                           "repairbutton.setState(on)"};

Lines joined(std::initializer_list<Lines> parts) {
  Lines all;
  for (const Lines& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

TEST_F(Repair, StartsInTheGivenOrder) {
  app.start();
  app.choose(smallAvi());

  app.press(app.screen.repairbutton);

  EXPECT_EQ(app.events.lines(), joined({kPaths1, kPlayerAbsent, kStarted}));
  EXPECT_EQ(app.screen.tabview.page(), 2);
  EXPECT_EQ(app.controller->sendermain, &app.screen.repairbutton);
  EXPECT_NE(app.controller->mythread, nullptr);
  EXPECT_FALSE(app.controller->mythread->finished());
}

TEST_F(Repair, WithThePlayerInstalledTheHintIsEmptied) {
  app.start();
  app.files.put("/Applications/MPlayerX.app", {});
  app.choose(smallAvi());

  app.press(app.screen.repairbutton);

  EXPECT_EQ(app.events.lines(), joined({kPaths1, kPlayerPresent, kStarted}));
  EXPECT_TRUE(app.controller->existsinApplicationsfolder);
  EXPECT_FALSE(app.controller->existsinDownloadsfolder);
  EXPECT_TRUE(app.controller->mplayerinstalled);
}

TEST_F(Repair, APlayerInTheDownloadsFolderCountsAsAbsent) {
  app.start();
  app.files.put("/home/user/Downloads/MPlayerX.app", {});
  app.choose(smallAvi());

  app.press(app.screen.repairbutton);

  EXPECT_EQ(app.events.lines(), joined({kPaths1, kPlayerAbsent, kStarted}));
  EXPECT_TRUE(app.controller->existsinDownloadsfolder);
  EXPECT_FALSE(app.controller->mplayerinstalled);
}

TEST_F(Repair, WithoutAFileTheNoFileSheetComesAndNothingStarts) {
  app.start();

  app.press(app.screen.repairbutton);

  EXPECT_EQ(app.events.lines(), joined({kPaths1, kPlayerAbsent, kNotStarted}));
  EXPECT_EQ(app.screen.tabview.page(), 1);
  EXPECT_EQ(app.controller->mythread, nullptr);
  EXPECT_EQ(app.controller->sendermain, nullptr);
  EXPECT_EQ(engine::internalpath.get(), kScratch1);
}

TEST_F(Repair, TheNoFileSheetIsEndedAndHidden) {
  app.start();
  app.press(app.screen.repairbutton);
  app.events.clear();

  app.press(app.screen.filenotselectedokbutton);

  EXPECT_EQ(app.takeEvents(), (Lines{"endSheet(filenotselectedwindow)", "filenotselectedwindow.orderOut()"}));
}

TEST_F(Repair, TheTipsLinkKeepsItsThreeSlashes) {
  app.start();
  app.press(app.screen.repairbutton);
  app.press(app.screen.repairbutton);

  EXPECT_EQ(app.controller->string,
            app::Orlin_Repair_AVIAppDelegate::hyperlinkFromString(
                "click here",
                "http:///Applications/Zelvo%20AVI%20Repair.app/Contents/MacOS/Manual/Zelvo%20AVI%20Repair/HTML/"
                "tips_for_previewing.html"));
}

TEST_F(Repair, ShowsTheSizeSavedLastWhateverIsRepaired) {
  app.start();
  app.choose(smallAvi());
  app::oSize = 4711;

  app.press(app.screen.repairbutton);

  EXPECT_EQ(app.screen.durationfield.stringValue(), "4711");
}

TEST_F(Repair, AWholeRunEndsOnTheResultPage) {
  app.start();
  app.choose(smallAvi());
  app.press(app.screen.repairbutton);
  app.events.clear();

  runWorkers();
  app.press(app.screen.repaircompletedokbutton);

  EXPECT_EQ(
      app.takeEvents(
          {"log: ", "beginSheet", "endSheet", "tabview", "movieview.", "createFile", "stoprepair", "repaircompleted"}),
      (Lines{"log: Sector=1", "log: Valid AVI file", "log: Audio video samples called", "log: videocodecstring=XVID",
             "log: Video codec =S", "log: Audio codec =S", "log: Break", "log: Construct RIFF file",
             "createFile(/Applications/testfile1.avi)", "log: audiocodecstring=U", "movieview.setMovie(movie)",
             "log: Repair file completed", "endSheet(stoprepairwindow)", "stoprepairwindow.orderOut()",
             "beginSheet(repaircompletedwindow, mainWindow)", "endSheet(repaircompletedwindow)",
             "repaircompletedwindow.orderOut()", "tabview.selectNextTabViewItem()", "log: Next tab view is set"}));
  EXPECT_EQ(app.screen.tabview.page(), 3);
  EXPECT_EQ(app.controller->unipath(), kScratch1);
  EXPECT_TRUE(app.controller->mythread->finished());
}

TEST_F(Repair, AnInvalidFileGoesBackToPageOneAndLeavesTheStopFlag) {
  app.start();
  app.choose(platform::Bytes(600000));
  repairWhole();
  ASSERT_TRUE(app.isShown(app.screen.invalidfilewindow));

  app.press(app.screen.invalidfileokbutton);

  EXPECT_EQ(app.screen.tabview.page(), 1);
  EXPECT_EQ(engine::path.get(), std::nullopt);
  EXPECT_FALSE(engine::stopflag);
}

TEST_F(Repair, AnUnsupportedFileGoesBackToPageOneAndRaisesTheStopFlag) {
  app.start();
  platform::Bytes avi = smallAvi();
  avi.resize(524288);
  app.choose(std::move(avi));
  repairWhole();
  ASSERT_TRUE(app.isShown(app.screen.filenotsupportedwindow));

  app.press(app.screen.filenotsupportedokbutton);

  EXPECT_EQ(app.screen.tabview.page(), 1);
  EXPECT_TRUE(engine::stopflag);
}

TEST_F(Repair, AFurtherPressAbandonsTheRunBeforeIt) {
  app.start();
  app.choose(smallAvi());
  app.press(app.screen.repairbutton);
  app.press(app.screen.repairbutton);
  app.events.clear();

  runWorkers();

  EXPECT_EQ(app.takeEvents({"createFile", "beginSheet"}),
            (Lines{"createFile(/Applications/testfile1.avi)", "beginSheet(repaircompletedwindow, mainWindow)"}));
  EXPECT_TRUE(app.files.has(kScratch1));
}

TEST_F(Repair, AScratchPathThatMayNotBeWrittenGivesWayToTheOtherPair) {
  app.scratchPaths.refused = {kScratch1};
  app.start();
  app.choose(smallAvi());

  app.press(app.screen.repairbutton);

  EXPECT_EQ(engine::internalpath.get(), "/cache/slot1/testfile1.avi");
}

TEST_F(Repair, TheScratchFileItselfCanBeTheInput) {
  app.start();
  app.choose(smallAvi(), kScratch1);

  repairWhole();

  EXPECT_EQ(app.controller->unipath(), "/cache/slot1/testfile1.avi");
  EXPECT_EQ(app.files.content(kScratch1), smallAvi());
}

TEST_F(Stop, TheButtonAsksOverTheMainWindow) {
  app.start();
  app.choose(smallAvi());
  app.press(app.screen.repairbutton);
  app.events.clear();

  app.press(app.screen.stopbutton);

  EXPECT_EQ(app.takeEvents(), Lines{"beginSheet(stoprepairwindow, mainWindow)"});
}

TEST_F(Stop, StopitAsksFromAThreadOfItsOwn) {
  app.start();
  runWorkers();

  app.controller->stopit();

  EXPECT_FALSE(app.isShown(app.screen.stoprepairwindow));
  runWorkers();
  EXPECT_TRUE(app.isShown(app.screen.stoprepairwindow));
}

TEST_F(Stop, ConfirmedGoesBackInTheGivenOrder) {
  app.start();
  app.choose(smallAvi());
  app.press(app.screen.repairbutton);
  app.press(app.screen.stopbutton);
  app.events.clear();

  app.press(app.screen.stoprepairokbutton);

  EXPECT_EQ(app.events.lines(),
            (Lines{"repairbutton.setState(off)", "controller.textfield.setStringValue()", "repairbutton.setState(on)",
                   "endSheet(stoprepairwindow)", "stoprepairwindow.orderOut()", "progressbar.setDoubleValue(0)",
                   "tabview.selectFirstTabViewItem()", "pathfield.setStringValue()", "repairbutton.setState(on)",
                   "log: Repair aborted"}));
  EXPECT_EQ(app::negvalue, 0);
  EXPECT_TRUE(engine::stopflag);
  EXPECT_EQ(engine::path.get(), std::nullopt);
  EXPECT_EQ(app.controller->mythread, nullptr);
  EXPECT_EQ(app.controller->progressbarValue, 0.0);
}

TEST_F(Stop, AnyOtherSelectorThanZeroBecomesZero) {
  app.start();
  app::negvalue = 7;
  app.controller->stopRepairOk(nullptr);
  EXPECT_EQ(app::negvalue, 0);
  app.controller->stopRepairOk(nullptr);
  EXPECT_EQ(app::negvalue, 1);
}

TEST_F(Stop, TheScratchPathsAlternate) {
  app.start();
  Lines paths;
  for (int i = 0; i < 3; ++i) {
    app.choose(smallAvi());
    app.press(app.screen.repairbutton);
    paths.push_back(engine::internalpath.get());
    app.press(app.screen.stoprepairokbutton);
  }
  EXPECT_EQ(paths, (Lines{kScratch1, kScratch2, kScratch1}));
}

TEST_F(Stop, DeletesNothing) {
  reachResultPage();

  app.controller->stopRepairOk(nullptr);

  EXPECT_TRUE(app.files.has(kScratch1));
  EXPECT_TRUE(app.takeEvents({"remove"}).empty());
}

TEST_F(Stop, CancellingTheQuestionLeavesTheRunAndItsProgress) {
  app.start();
  app.choose(smallAvi());
  app.press(app.screen.repairbutton);
  app.controller->setProgressBarValue(42.0);
  app.press(app.screen.stopbutton);
  app.events.clear();

  app.press(app.screen.stoprepaircancelbutton);

  EXPECT_EQ(app.takeEvents(), (Lines{"endSheet(stoprepairwindow)", "stoprepairwindow.orderOut()"}));
  EXPECT_EQ(app.controller->progressbarValue, 42.0);
  EXPECT_FALSE(engine::stopflag);
  runWorkers();
  EXPECT_TRUE(app.isShown(app.screen.repaircompletedwindow));
}

TEST_F(Stop, AStoppedRunNeverWakesWhenAnotherFileIsChosen) {
  app.start();
  app.choose(smallAvi());
  app.press(app.screen.repairbutton);
  app.press(app.screen.stoprepairokbutton);
  app.choose(smallAvi(), "/films/second.avi");  // clears the stop flag before the old worker has begun
  app.press(app.screen.repairbutton);
  app.events.clear();

  runWorkers();

  EXPECT_EQ(app.takeEvents({"createFile", "beginSheet"}),
            (Lines{"createFile(/Applications/testfile2.avi)", "beginSheet(repaircompletedwindow, mainWindow)"}));
  EXPECT_FALSE(app.files.has(kScratch1));
  EXPECT_EQ(app.controller->unipath(), kScratch2);
}

/// A run that is stopped, and another one started, from inside the first one's own work.
class OldRun : public FlowTest {
 protected:
  /// Stops a run whose input is no film at its first read, and then does what `afterwards` says.
  void stopWhenNoFilmIsRead(const std::function<void()>& afterwards) {
    app.start();
    bool stopped = false;
    app.choose(platform::Bytes(2000)).onRead = [&](std::uint64_t, std::size_t) {
      if (std::exchange(stopped, true)) return;
      app.press(app.screen.stoprepairokbutton);
      afterwards();
    };
    app.press(app.screen.repairbutton);
    runWorkers();
    EXPECT_TRUE(stopped);
  }
  void stopAndStartAnotherWhenTheFirstIsRead(bool startAnother) {
    app.start();
    app.choose(smallAvi());
    app.press(app.screen.repairbutton);
    app.files.onTouch = [this, startAnother](const std::string& what) {
      if (what != "openForWriting(/Applications/testfile1.avi)") return;
      app.press(app.screen.stoprepairokbutton);
      if (!startAnother) return;
      app.choose(smallAvi(), "/films/second.avi");
      app.press(app.screen.repairbutton);
      app.events.clear();
    };
  }
};

TEST_F(OldRun, NeitherItsFileNorItsSheetReachesTheNewOne) {
  stopAndStartAnotherWhenTheFirstIsRead(true);

  ASSERT_TRUE(workers.runNext());  // the empty thread
  ASSERT_TRUE(workers.runNext());  // the first run

  EXPECT_EQ(app.controller->unipath(), std::nullopt);
  EXPECT_TRUE(app.takeEvents({"beginSheet", "movieview", "stopbutton.setEnabled(no)"}).empty());
  runWorkers();
  EXPECT_EQ(app.controller->unipath(), kScratch2);
  EXPECT_TRUE(app.isShown(app.screen.repaircompletedwindow));
}

TEST_F(OldRun, ProgressOfAStoppedRunIsNotShown) {
  stopAndStartAnotherWhenTheFirstIsRead(false);

  runWorkers();

  EXPECT_EQ(app.controller->progressbarValue, 0.0);
  EXPECT_EQ(app.screen.progressbar.doubleValue(), 0.0);
  EXPECT_EQ(app.controller->unipath(), kScratch1);  // stopped, but no newer run: handed over as ever
  EXPECT_FALSE(app.isShown(app.screen.repaircompletedwindow));
}

TEST_F(OldRun, ItsRejectionIsNotShownOnceAnotherFilmWasChosen) {
  stopWhenNoFilmIsRead([this] { app.choose(smallAvi(), "/films/second.avi"); });
  EXPECT_FALSE(app.isShown(app.screen.invalidfilewindow));
  EXPECT_EQ(engine::path.get(), "/films/second.avi");
}

TEST_F(OldRun, ItsRejectionComesWithoutANewChoice) {
  stopWhenNoFilmIsRead([] {});
  EXPECT_TRUE(app.isShown(app.screen.invalidfilewindow));
}

TEST_F(OldRun, WhatItWroteIsRemovedBeforeTheNextOneWrites) {
  stopAndStartAnotherWhenTheFirstIsRead(true);
  bool wasThere = true;
  app.files.onTouch = [&, before = app.files.onTouch](const std::string& what) {
    before(what);
    if (what == "createFile(/Applications/testfile2.avi)") wasThere = app.files.has(kScratch1);
  };

  runWorkers();

  EXPECT_FALSE(wasThere);
  EXPECT_FALSE(app.files.has(kScratch1));
  EXPECT_TRUE(app.files.has(kScratch2));
}

TEST_F(OldRun, WhatItWroteIsRemovedOnlyWhenItHasEnded) {
  app.start();
  app.choose(smallAvi());
  app.press(app.screen.repairbutton);
  app.files.onTouch = [this](const std::string& what) {
    if (what != "openForWriting(/Applications/testfile1.avi)") return;
    app.events.clear();
    app.press(app.screen.stoprepairokbutton);
    EXPECT_TRUE(app.takeEvents({"remove"}).empty());
    EXPECT_TRUE(app.files.has(kScratch1));
  };

  runWorkers();

  EXPECT_EQ(app.takeEvents({"remove", "movieview.setMovie"}),
            (Lines{"movieview.setMovie(movie)", "remove(/Applications/testfile1.avi)"}));
  EXPECT_FALSE(app.files.has(kScratch1));
}

TEST_F(OldRun, AFileOfTheSamePathThatIsWrittenAgainStays) {
  app.start();
  app.choose(smallAvi());
  for (int i = 0; i < 2; ++i) {
    app.press(app.screen.repairbutton);
    workers.runNext();
    app.press(app.screen.stoprepairokbutton);
    app.choose(smallAvi());
  }

  repairWhole();

  EXPECT_TRUE(app.files.has(kScratch1));
  EXPECT_TRUE(app.isShown(app.screen.repaircompletedwindow));
}

using WaitingRun = OldRun;

TEST_F(WaitingRun, SaysThatItWaitsUntilItsTurnComes) {
  Lines shown;
  app.start();
  workers.runNext();
  app.choose(smallAvi());
  app.press(app.screen.repairbutton);
  EXPECT_EQ(app.screen.waitingtext.stringValue(), "");
  app.files.onTouch = [&](const std::string& what) {
    if (what == "openForWriting(/Applications/testfile1.avi)") {
      app.press(app.screen.stoprepairokbutton);
      app.choose(smallAvi(), "/films/second.avi");
      app.press(app.screen.repairbutton);
      shown.push_back(app.screen.waitingtext.stringValue());
    }
    if (what == "createFile(/Applications/testfile2.avi)") shown.push_back(app.screen.waitingtext.stringValue());
  };

  runWorkers();

  EXPECT_EQ(shown,
            (Lines{"Waiting until the repair before this one has ended. Its last step cannot be cut short.", ""}));
}

TEST_F(WaitingRun, ItIsNotSaidForTheNextOneWhenOneThatWasStoppedInItsTurnComesToIt) {
  app.start();
  workers.runNext();
  app.choose(smallAvi());
  app.press(app.screen.repairbutton);
  bool stopped = false;
  app.files.onTouch = [&](const std::string& what) {
    if (what != "openForWriting(/Applications/testfile1.avi)" || std::exchange(stopped, true)) return;
    for (int i = 0; i < 2; ++i) {
      app.press(app.screen.stoprepairokbutton);
      app.choose(smallAvi(), "/films/second.avi");
      app.press(app.screen.repairbutton);
    }
  };
  workers.runNext();  // the first
  workers.runNext();  // the second, which has nothing to do any more
  EXPECT_TRUE(app.screen.waitingtext.stringValue().starts_with("Waiting"));

  runWorkers();

  EXPECT_EQ(app.screen.waitingtext.stringValue(), "");
}

TEST_F(OldRun, AStopBeforeTheHarvestStillBringsTheNotSupportedSheet) {
  app.start();
  app.choose(smallAvi());
  app.press(app.screen.repairbutton);
  engine::stopflag = true;

  runWorkers();

  EXPECT_TRUE(app.isShown(app.screen.filenotsupportedwindow));
}

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
}

TEST_F(Progress, CopyfileAndTabsetDoNothing) {
  app.controller->copyfile();
  app.controller->tabset();

  EXPECT_TRUE(app.events.lines().empty());
}

TEST_F(Progress, MethodForFileNotSupportedResetsInOrder) {
  app.start();
  app.choose(platform::Bytes(10));

  app.controller->methodForFileNotSupported();

  EXPECT_EQ(app.events.lines(),
            (Lines{"progressbar.setDoubleValue(0)", "tabview.selectFirstTabViewItem()", "pathfield.setStringValue()"}));
  EXPECT_TRUE(engine::stopflag);
  EXPECT_EQ(engine::path.get(), std::nullopt);
}

}  // namespace
}  // namespace zelvo::tests
