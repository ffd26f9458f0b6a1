// The progress of a save, and the ways of saving that no flow calls.
#include "tests/app/save_bench.h"

namespace zelvo::tests {
namespace {

using SaveProgress = SaveTest;
using OtherSave = SaveTest;

TEST_F(SaveProgress, FollowsTheSizeOfTheInput) {
  arrive(65536, 499);
  saveAs(kFolder);
  app.events.clear();

  runWorkers();

  const Lines step = {"saveprogressbar.setDoubleValue", "repairbutton.setState(off)"};
  EXPECT_EQ(
      app.events.lines(),
      (Lines{"saveprogressbar.setDoubleValue(25)", "repairbutton.setState(off)", "saveprogressbar.setDoubleValue(50)",
             "repairbutton.setState(off)", "saveprogressbar.setDoubleValue(75)", "repairbutton.setState(off)",
             "saveprogressbar.setDoubleValue(100)", "repairbutton.setState(off)", "endSheet(stopsavingwindow)",
             "stopsavingwindow.orderOut()", "endSheet(saveprogresspanel)", "saveprogresspanel.orderOut()",
             "beginSheet(savecompletedwindow, mainWindow)", "saveprogressbar.setDoubleValue(100)",
             "saveprogressbar.setDoubleValue(100)", "saveprogressbar.setDoubleValue(100)",
             "saveprogressbar.setDoubleValue(100)"}));
  EXPECT_EQ(app.controller->stopvalue, 0);
}

TEST_F(SaveProgress, AnInputBelowAHundredBytesNeverCompletes) {
  arrive(65536, 99);

  saveAs(kFolder);
  runWorkers();

  EXPECT_FALSE(app.isShown(app.screen.savecompletedwindow));
  EXPECT_TRUE(app.isShown(app.screen.saveprogresspanel));
  app.press(app.screen.stopsavingOKbutton);
  EXPECT_FALSE(app.isShown(app.screen.saveprogresspanel));
}

TEST_F(SaveProgress, TheCompletedSheetsOkEnablesSaving) {
  arrive();
  saveAs(kFolder);
  runWorkers();
  app.events.clear();

  app.press(app.screen.savecompletedokbutton);

  EXPECT_EQ(app.takeEvents(),
            (Lines{"endSheet(savecompletedwindow)", "savecompletedwindow.orderOut()", "savebutton.setEnabled(yes)"}));
}

TEST_F(SaveProgress, StoppingIsAskedInASheetThatIsBroughtToTheFront) {
  arrive();
  saveAs(kFolder);
  app.events.clear();

  app.press(app.screen.stopsavingbutton);

  EXPECT_EQ(app.takeEvents(), (Lines{"log: Stoppped saving", "beginSheet(stopsavingwindow, mainWindow)",
                                     "stopsavingwindow.makeKeyAndOrderFront()"}));
}

TEST_F(SaveProgress, StoppedItEndsBothSheetsLogsTheOtherNameAndDeletesNothing) {
  arrive();
  saveAs(kFolder);
  app.press(app.screen.stopsavingbutton);
  app.events.clear();

  app.press(app.screen.stopsavingOKbutton);

  EXPECT_EQ(app.takeEvents(), (Lines{"endSheet(saveprogresspanel)", "saveprogresspanel.orderOut()",
                                     "endSheet(stopsavingwindow)", "stopsavingwindow.orderOut()",
                                     "log: mutstr=/home/user/Repaired/repaired.mov", "savebutton.setEnabled(yes)"}));
  EXPECT_TRUE(app.files.has(kSaved));
  EXPECT_EQ(app.controller->stopvalue, 1);
}

TEST_F(SaveProgress, AStoppedSaveBreaksAfterItsStepAndShowsNoCompletion) {
  arrive();
  saveAs(kFolder);
  app.press(app.screen.stopsavingOKbutton);
  app.events.clear();

  runWorkers();

  EXPECT_EQ(app.takeEvents(), Lines{"log: Breaking"});
  EXPECT_FALSE(app.isShown(app.screen.savecompletedwindow));
}

TEST_F(SaveProgress, AStoppedSaveDoesNotWakeWhenTheNextBegins) {
  arrive();
  saveAs(kFolder);
  app.press(app.screen.stopsavingOKbutton);
  saveAs("/home/user/Again");
  app.events.clear();

  runWorkers();

  EXPECT_EQ(app.takeEvents({"log: Breaking", "beginSheet"}),
            (Lines{"log: Breaking", "beginSheet(savecompletedwindow, mainWindow)"}));
}

TEST_F(SaveProgress, AQuitEndsItWithoutCompletion) {
  arrive();
  saveAs(kFolder);
  app.events.clear();

  app.controller->applicationWillTerminate();

  EXPECT_EQ(app.takeEvents({"log: ", "beginSheet"}), Lines{"log: Breaking"});
}

TEST_F(SaveProgress, ASaveThatIsStoppedBeforeItsSheetOpensIsNotCompleted) {
  arrive();
  saveAs(kFolder);
  runNextOnAThread();
  app.events.clear();

  app.press(app.screen.stopsavingOKbutton);
  queue.pump();

  EXPECT_EQ(app.takeEvents({"beginSheet"}), Lines{"beginSheet(savecompletedwindow) dropped"});
}

TEST_F(SaveProgress, TheMainThreadMovesTheBarForTheWorker) {
  arrive();
  saveAs(kFolder);
  runNextOnAThread();
  EXPECT_EQ(app.screen.saveprogressbar.doubleValue(), 0.0);

  queue.pump();

  EXPECT_EQ(app.screen.saveprogressbar.doubleValue(), 100.0);
}

TEST_F(SaveProgress, ANewSaveEndsTheOneBefore) {
  arrive();
  saveAs(kFolder);
  app.screen.savebutton.setEnabled(true);  // as a preview leaves it
  ASSERT_TRUE(saveAs("/home/user/Again"));
  app.events.clear();

  runWorkers();

  EXPECT_EQ(app.takeEvents({"log: Breaking", "beginSheet"}),
            (Lines{"log: Breaking", "beginSheet(savecompletedwindow, mainWindow)"}));
}

TEST_F(SaveProgress, ANewSaveIsNotStopped) {
  arrive();
  app.controller->stopvalue = 1;
  saveAs(kFolder);

  runWorkers();

  EXPECT_EQ(app.controller->stopvalue, 0);
  EXPECT_TRUE(app.isShown(app.screen.savecompletedwindow));
}

TEST_F(SaveProgress, ContinuedItGoesOn) {
  arrive();
  saveAs(kFolder);
  app.press(app.screen.stopsavingbutton);
  app.events.clear();

  app.press(app.screen.stopsavingCancelbutton);
  EXPECT_EQ(app.takeEvents(), (Lines{"endSheet(stopsavingwindow)", "stopsavingwindow.orderOut()"}));

  runWorkers();
  EXPECT_TRUE(app.isShown(app.screen.savecompletedwindow));
}

TEST_F(SaveProgress, TheOtherProgressLogsEachValueTruncatedAndAsksAgain) {
  arrive(65536, 300);

  app.controller->saveProgressbarUpdate();

  EXPECT_EQ(app.events.lines(),
            (Lines{"saveprogressbar.setDoubleValue(33.3333)", "log: Vale=33", "repairbutton.setState(off)",
                   "saveprogressbar.setDoubleValue(66.6667)", "log: Vale=66", "repairbutton.setState(off)",
                   "saveprogressbar.setDoubleValue(100)", "log: Vale=100", "repairbutton.setState(off)",
                   "log: Vale=100", "endSheet(stopsavingwindow)", "stopsavingwindow.orderOut()",
                   "endSheet(saveprogresspanel)", "saveprogresspanel.orderOut()",
                   "beginSheet(stopsavingwindow, mainWindow)", "saveprogressbar.setDoubleValue(0)"}));
  app.events.clear();
  queue.pump();
  EXPECT_EQ(app.events.lines(), Lines(3, "saveprogressbar.setDoubleValue(100)"));
}

TEST_F(OtherSave, TheOtherSaveWritesTheWholeFileUnderTheOtherName) {
  arrive(100000);
  app::savepath = kFolder;

  app.controller->savemethod2();

  EXPECT_EQ(app.takeEvents(),
            (Lines{"createFolder(/home/user/Repaired)", "createFile(/home/user/Repaired/repaired.mov)"}));
  EXPECT_EQ(app.files.content("/home/user/Repaired/repaired.mov"), app.files.content(kScratch1));
}

TEST_F(OtherSave, TheOtherSaveDoesNotWriteTheDamagedFile) {
  arrive(100000);
  app::savepath = kFolder;
  app.fileManager.links["/home/user/Repaired/repaired.mov"] = kInput;
  app.files.put(kInput, platform::Bytes(5));

  app.controller->savemethod2();

  EXPECT_EQ(app.takeEvents(), Lines{"createFolder(/home/user/Repaired)"});
  EXPECT_EQ(app.files.content(kInput), platform::Bytes(5));
}

TEST_F(OtherSave, TheOtherSaveOfNothingMakesAnEmptyFile) {
  arrive();
  app::savepath = kFolder;
  app.controller->setUnipath("/gone.avi");

  app.controller->savemethod2();

  ASSERT_TRUE(app.files.has("/home/user/Repaired/repaired.mov"));
  EXPECT_TRUE(app.files.content("/home/user/Repaired/repaired.mov").empty());
}

TEST_F(OtherSave, TheOtherSaveWritesNothingWhereNoFileCanBeMade) {
  arrive();
  app::savepath = kFolder;
  app.files.refuse("/home/user/Repaired/repaired.mov", std::make_error_code(std::errc::permission_denied));
  bool opened = false;
  app.files.onTouch = [&](const std::string& what) { opened = opened || what.starts_with("openForWriting"); };

  app.controller->savemethod2();

  EXPECT_FALSE(opened);
}

TEST_F(OtherSave, TheOtherEntryEndsWhereNoChooserCanBeMade) {
  arrive();
  app.alerts.script({platform::kAlertDefault});
  app.panels.makeOpenPanels(false);

  app.controller->saveData(nullptr);

  EXPECT_EQ(app.takeEvents({"openPanel"}), Lines{"openPanel() failed"});
}

TEST_F(OtherSave, TheOtherEntryAsksAndShowsAChooserOfFolders) {
  arrive();
  app.alerts.script({platform::kAlertDefault});

  app.controller->saveData(nullptr);

  EXPECT_EQ(
      app.takeEvents(),
      (Lines{"alert(\"Information\", \"Please ensure that you are not saving recovered data to the same volume from "
             "which you are recovering. Saving the recovered data to the same hard drive/ volume would result in "
             "permanent data loss. Do you want to continue?\", \"Yes\", \"No\", nothing)",
             "openPanel()", "openPanel.setCanCreateDirectories(yes)", "openPanel.setCanChooseDirectories(yes)",
             "openPanel.setCanChooseFiles(no)", "openPanel.setAllowsMultipleSelection(no)", "openPanel.setPrompt(Save)",
             "openPanel.beginSheetModalForWindow(mainWindow)"}));
  app.panels.lastOpenPanel()->choose("/home/user");
  EXPECT_TRUE(app.takeEvents().empty());
}

TEST_F(OtherSave, TheOtherEntryDoesNothingOnNo) {
  arrive();
  app.alerts.script({platform::kAlertAlternate});

  app.controller->saveData(nullptr);

  EXPECT_TRUE(app.takeEvents({"openPanel"}).empty());
}

}  // namespace
}  // namespace zelvo::tests
