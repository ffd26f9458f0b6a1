#include <new>
#include <utility>

#include "tests/app/app_bench.h"

namespace zelvo::tests {
namespace {

using StartUp = FlowTest;
using Quit = FlowTest;

platform::LaunchedApplication other(const std::string& identifier) { return {identifier, 11}; }
const platform::LaunchedApplication kOwn{"com.Zelvo.ZelvoAVIRepairI", 77};

TEST_F(StartUp, InitStartsTheEmptyThreadAndIsIdle) {
  app.controller->responseFindMedia.emplace_back();
  app.controller->finalArrayForVolumes.emplace_back();

  app.controller->init();

  EXPECT_EQ(workers.waiting(), 1U);
  EXPECT_TRUE(app.controller->responseFindMedia.empty());
  EXPECT_TRUE(app.controller->finalArrayForVolumes.empty());
  EXPECT_TRUE(app.controller->scanInfoOrSavingNotProcessing);
  runWorkers();
  EXPECT_TRUE(app.takeEvents().empty());
}

TEST_F(StartUp, AwakeningBringsTheProcessToTheFrontBeforeAndAfterTheDelegate) {
  app.workspace.applications = {kOwn};
  app::negvalue = 5;

  app.controller->awakeFromNib();

  EXPECT_EQ(app::negvalue, 0);
  EXPECT_EQ(app.takeEvents(),
            (Lines{"sleep(0 ms)", "processForIdentifier(77)", "setFrontProcess(77)", "mainWindow.setDelegate(delegate)",
                   "sleep(0 ms)", "processForIdentifier(77)", "setFrontProcess(77)"}));
}

TEST_F(StartUp, WithoutAnApplicationOfTheIdentifierNothingIsBroughtToTheFront) {
  app.workspace.applications = {other("org.example.editor"), {std::nullopt, 12}};

  app.controller->awakeFromNib();

  EXPECT_EQ(app.takeEvents(), (Lines{"sleep(0 ms)", "mainWindow.setDelegate(delegate)", "sleep(0 ms)"}));
}

TEST_F(StartUp, TheListIsWalkedFromItsFirstEntryAndEndsAtTheFirstMatch) {
  app.workspace.applications = {{std::nullopt, 1}, other("org.example.editor"), kOwn, {kOwn.bundleIdentifier, 78}};

  app.controller->makeMainWindowFront();

  EXPECT_EQ(app.takeEvents(), (Lines{"processForIdentifier(77)", "setFrontProcess(77)"}));
}

TEST_F(StartUp, AProcessThatCannotBeLookedUpIsNotBroughtToTheFront) {
  app.workspace.applications = {kOwn, {kOwn.bundleIdentifier, 78}};
  app.workspace.missingProcess = 77;

  app.controller->makeMainWindowFront();

  EXPECT_EQ(app.takeEvents(), Lines{"processForIdentifier(77)"});
}

TEST_F(StartUp, LaunchingChecksForUpdatesFirstAndThenPreparesTheWindow) {
  app.controller->applicationDidFinishLaunching();

  EXPECT_EQ(
      app.takeEvents(),
      (Lines{"checkForUpdateClicked(nobody)", "savebutton.setEnabled(yes)", "progressbar.setUsesThreadedAnimation(yes)",
             "saveprogressbar.setUsesThreadedAnimation(yes)", "addTrackingArea(repairbutton, 129, whichTracker=0)",
             "addTrackingArea(main1, 129)", "addTrackingArea(main2, 129, whichTracker=4)",
             "addTrackingArea(main3, 129, whichTracker=5)", "addTrackingArea(help1, 129, whichTracker=6)",
             "addTrackingArea(help2, 129, whichTracker=7)", "addTrackingArea(help3, 129, whichTracker=8)",
             "addTrackingArea(clickherebutton, 129, whichTracker=9)", "addTrackingArea(update1, 129, whichTracker=10)",
             "addTrackingArea(update2, 129, whichTracker=11)", "addTrackingArea(update3, 129, whichTracker=12)"}));
  EXPECT_EQ(app::negvalue, 1);
}

TEST_F(StartUp, EachTrackingAreaIsKeptInItsField) {
  app.start();

  const auto& c = *app.controller;
  EXPECT_EQ(c.trackingAreaRepair->userInfo->at("whichTracker"), 0);
  EXPECT_FALSE(c.trackingAreaMain1->userInfo);
  EXPECT_EQ(c.trackingAreaMain2->userInfo->at("whichTracker"), 4);
  EXPECT_EQ(c.trackingAreaMain3->userInfo->at("whichTracker"), 5);
  EXPECT_EQ(c.trackingAreaHelp1->userInfo->at("whichTracker"), 6);
  EXPECT_EQ(c.trackingAreaHelp2->userInfo->at("whichTracker"), 7);
  EXPECT_EQ(c.trackingAreaHelp3->userInfo->at("whichTracker"), 8);
  EXPECT_EQ(c.trackingAreaclickhere->userInfo->at("whichTracker"), 9);
  EXPECT_EQ(c.trackingAreaUpdate1->userInfo->at("whichTracker"), 10);
  EXPECT_EQ(c.trackingAreaUpdate2->userInfo->at("whichTracker"), 11);
  EXPECT_EQ(c.trackingAreaUpdate3->userInfo->at("whichTracker"), 12);
}

TEST_F(StartUp, TheFirstRepairUsesTheFirstScratchPath) {
  app.start();
  app.choose(smallAvi());

  app.press(app.screen.repairbutton);

  EXPECT_EQ(engine::internalpath.get(), "/Applications/testfile1.avi");
}

TEST_F(StartUp, TheScratchPairIsAskedForOnce) {
  app.start();
  for (int i = 0; i < 3; ++i) app.press(app.screen.repairbutton);

  EXPECT_EQ(app.scratchPaths.claims, 1);
}

TEST_F(StartUp, TheWindowIsShownBeforeLaunchingIsFinished) {
  app.application.exitStatus = 7;

  const int status = app::applicationMain(app.application, *app.controller);

  EXPECT_EQ(status, 7);
  EXPECT_EQ(app.takeEvents({"showMainWindow", "checkForUpdate", "mainWindow.setDelegate", "run()", "drainMainQueue"}),
            (Lines{"mainWindow.setDelegate(delegate)", "showMainWindow()", "checkForUpdateClicked(nobody)", "run()",
                   "mainWindow.setDelegate(nothing)", "drainMainQueue()"}));
}

TEST_F(StartUp, TheControllersWindowIsTheMainWindowUntilAnotherIsSet) {
  EXPECT_EQ(app.controller->window(), &app.screen.mainWindow);
  app.controller->setWindow(nullptr);
  EXPECT_EQ(app.controller->window(), nullptr);
  app.controller->setUnipath("/a.avi");
  EXPECT_EQ(app.controller->unipath(), "/a.avi");
}

TEST_F(Quit, TheQuestionIsAskedInItsWords) {
  app.start();

  app.application.closeMainWindow();

  EXPECT_EQ(app.takeEvents(),
            Lines{"alert(\" \", \"Do you want to quit application?\", \"Cancel\", \"Yes\", nothing)"});
}

TEST_F(Quit, CancelKeepsTheWindowAndTheApplication) {
  app.start();
  app.application.showMainWindow();
  app.alerts.script({platform::kAlertDefault});

  EXPECT_FALSE(app.application.closeMainWindow());

  EXPECT_TRUE(app.screen.mainWindow.isVisible());
  EXPECT_FALSE(app.application.terminated());
  EXPECT_EQ(app.controller->result, 1);
}

TEST_F(Quit, EscCountsAsCancel) {
  app.start();

  EXPECT_FALSE(app.application.closeMainWindow());

  EXPECT_EQ(app.controller->result, 1);
}

TEST_F(Quit, YesClosesTheWindowAndEndsTheApplication) {
  app.start();
  app.application.showMainWindow();
  app.alerts.script({platform::kAlertAlternate});

  EXPECT_TRUE(app.application.closeMainWindow());

  EXPECT_FALSE(app.screen.mainWindow.isVisible());
  EXPECT_TRUE(app.application.terminated());
  EXPECT_EQ(app.controller->result, 0);
}

TEST_F(Quit, TerminatingAsksNothing) {
  app.start();

  app.controller->terminateApplication(nullptr);

  EXPECT_EQ(app.takeEvents(), Lines{"terminate()"});
}

TEST_F(Quit, ARequestOfTheSystemTerminates) {
  app.start();

  app.application.requestTermination();

  EXPECT_EQ(app.takeEvents(), Lines{"terminate()"});
}

TEST_F(Quit, LeavesNoScratchFileAndNoWorkerBehind) {
  reachResultPage();
  ASSERT_TRUE(app.files.has(kScratch1));

  app.controller->applicationWillTerminate();

  EXPECT_FALSE(app.files.has(kScratch1));
  EXPECT_TRUE(app.files.has(kInput));
  EXPECT_EQ(app.takeEvents(),
            (Lines{"mainWindow.setDelegate(nothing)", "endSleeps()", "remove(/Applications/testfile1.avi)"}));
  app.controller->applicationWillTerminate();
  EXPECT_EQ(app.takeEvents(), Lines{}) << "once is enough";
}

TEST_F(Quit, ARunThatHasNotBegunWritesNothing) {
  app.start();
  app.choose(smallAvi());
  app.press(app.screen.repairbutton);

  app.events.clear();

  app.controller->applicationWillTerminate();

  EXPECT_EQ(workers.waiting(), 0U);
  EXPECT_EQ(app.takeEvents({"createFile", "remove"}), Lines{});
  EXPECT_TRUE(app.sheets.shown().empty());
}

TEST_F(Quit, ARunAtWorkIsAbandonedAndItsProgressNoLongerLookedAt) {
  app.start();
  workers.runNext();  // the empty thread
  app.choose(smallAvi());
  bool ended = false;
  app.files.onTouch = [&](const std::string& what) {
    if (what != "openForWriting(/Applications/testfile1.avi)" || std::exchange(ended, true)) return;
    EXPECT_EQ(app.screen.runprogress.look().stage, platform::RunStage::writing);
    app.controller->applicationWillTerminate();
    EXPECT_EQ(app.screen.runprogress.look().stage, platform::RunStage::none);
  };

  repairWhole();

  EXPECT_TRUE(ended);
  EXPECT_EQ(app.controller->repair1->runEnd, engine::RunEnd::abandoned);
  EXPECT_FALSE(app.files.has(kScratch1));
  EXPECT_TRUE(app.sheets.shown().empty());
}

TEST_F(Quit, WhatARunTellsAfterwardsIsNotShown) {
  app.start();
  workers.runNext();
  bool ended = false;
  app.choose(smallAvi()).onRead = [&](std::uint64_t, std::size_t) {
    if (std::exchange(ended, true)) return;
    app.controller->applicationWillTerminate();
    throw std::bad_alloc();
  };

  repairWhole();

  EXPECT_TRUE(ended);
  EXPECT_TRUE(app.alerts.shown().empty());
}

TEST_F(Quit, ASheetThatWasAskedForBeforeOpensNoMore) {
  app.start();
  workers.runNext();
  app.choose(platform::Bytes(600000));
  app.press(app.screen.repairbutton);
  runNextOnAThread();
  ASSERT_FALSE(app.isShown(app.screen.invalidfilewindow));

  app.controller->applicationWillTerminate();
  queue.pump();

  EXPECT_FALSE(app.isShown(app.screen.invalidfilewindow));
}

TEST_F(Quit, AFileAtTheScratchPathThatNoRunWroteStays) {
  app.files.put(kScratch1, platform::Bytes(10));
  app.start();
  app.press(app.screen.repairbutton);  // no file chosen

  app.controller->applicationWillTerminate();

  EXPECT_TRUE(app.files.has(kScratch1));
}

TEST_F(Quit, AFileAtTheScratchPathOfARunThatWroteNothingStays) {
  app.files.put(kScratch1, platform::Bytes(10));
  app.start();
  app.choose(platform::Bytes(600000));
  repairWhole();
  ASSERT_TRUE(app.isShown(app.screen.invalidfilewindow));

  app.controller->applicationWillTerminate();

  EXPECT_EQ(app.files.content(kScratch1), platform::Bytes(10));
}

TEST_F(Quit, WhileASheetIsUpTheWindowStaysAndNothingIsAsked) {
  app.start();
  app.application.sheetIsUp = [this] { return !app.sheets.shown().empty(); };
  app.press(app.screen.repairbutton);
  ASSERT_TRUE(app.isShown(app.screen.filenotselectedwindow));

  EXPECT_FALSE(app.application.closeMainWindow());

  EXPECT_TRUE(app.alerts.shown().empty());
  app.press(app.screen.filenotselectedokbutton);
  EXPECT_FALSE(app.application.closeMainWindow());
  EXPECT_EQ(app.alerts.shown().size(), 1U);
}

}  // namespace
}  // namespace zelvo::tests
