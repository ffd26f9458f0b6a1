#include <algorithm>

#include "tests/app/app_bench.h"

namespace zelvo::tests {
namespace {

using Repair = FlowTest;
using Stop = FlowTest;

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

TEST_F(Repair, StartsInTheGivenOrder) {
  app.start();
  app.choose(smallAvi());
  app.watchVariables();

  app.press(app.screen.repairbutton);

  Lines expected = joined({kPaths1, kPlayerAbsent, kStarted});
  const auto before = [&](const char* event, const char* change) {
    expected.insert(std::find(expected.begin(), expected.end(), event), change);
  };
  before("log: internalpath=/Applications/testfile1.avi", "internalpath = /Applications/testfile1.avi");
  before("progressbar.setDoubleValue(0)", "sendermain = 1");
  // The thread comes between the page and the picture.
  expected.insert(std::find(expected.begin(), expected.end(), "tabview.selectNextTabViewItem()") + 1, "mythread = 1");
  EXPECT_EQ(app.takeAllEvents(), expected);
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
  app.watchVariables();

  app.press(app.screen.stoprepairokbutton);

  EXPECT_EQ(app.takeAllEvents(),
            (Lines{"negvalue = 0", "repairbutton.setState(off)", "controller.textfield.setStringValue()",
                   "repairbutton.setState(on)", "endSheet(stoprepairwindow)", "stoprepairwindow.orderOut()",
                   "progressbar.setDoubleValue(0)", "tabview.selectFirstTabViewItem()", "stopflag = 1",
                   "path = ", "pathfield.setStringValue()", "path = nothing", "repairbutton.setState(on)",
                   "mythread = 0", "log: Repair aborted"}));
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

}  // namespace
}  // namespace zelvo::tests
