#include "tests/app/app_bench.h"

namespace zelvo::tests {
namespace {

const char* const kNone = "There is no working folder that can be used.";

class WorkingFolder : public FlowTest {
 protected:
  /// From now on no pair can be held or written.
  void takeAllAway() {
    app.scratchPaths.pairs.clear();
    app.scratchPaths.refused = {kScratch1, kScratch2};
  }
  void choose() {
    app.start();
    workers.runNext();  // the empty thread
    app.choose(smallAvi());
  }
};

TEST_F(WorkingFolder, WithoutOneAnAlertComesBeforeTheFirstStepAndNothingStarts) {
  choose();
  takeAllAway();
  app.files.space = 12345678;
  engine::internalpath.set("as before");
  app.events.clear();

  app.press(app.screen.repairbutton);

  ASSERT_EQ(app.events.lines().size(), 1U);
  ASSERT_EQ(app.alerts.shown().size(), 1U);
  const platform::AlertPanel& alert = app.alerts.shown()[0];
  EXPECT_EQ(alert.title, "The working folder cannot be used");
  EXPECT_EQ(alert.message,
            "A repaired film lies in a working folder until you save it, and none can be used. The last one tried was "
            "/cache. The system says: Permission denied. To repair this film, 12.3 MB are free, about 0.5 MB are "
            "needed. Nothing was started, and nothing was changed in your file.");
  EXPECT_EQ(alert.defaultButton, "Choose another\u2026");
  EXPECT_EQ(alert.alternateButton, "Cancel");
  EXPECT_EQ(engine::internalpath.get(), "as before");
  EXPECT_EQ(workers.waiting(), 0U);
  EXPECT_EQ(app.screen.tabview.page(), 1);
  EXPECT_EQ(app.screen.workingfoldertext.stringValue(), kNone);
  EXPECT_FALSE(app.screen.workingfolderbutton.isHidden());
}

TEST_F(WorkingFolder, WithoutAFilmTheNoFileSheetComesAllTheSame) {
  app.start();
  takeAllAway();

  app.press(app.screen.repairbutton);

  EXPECT_TRUE(app.alerts.shown().empty());
  EXPECT_TRUE(app.isShown(app.screen.filenotselectedwindow));
}

TEST_F(WorkingFolder, IsAskedForAnewAtTheNextPress) {
  choose();
  takeAllAway();
  app.press(app.screen.repairbutton);
  app.scratchPaths.pairs = {{"/cache/slot2/testfile1.avi", "/cache/slot2/testfile2.avi", "/cache"}};

  app.press(app.screen.repairbutton);

  EXPECT_EQ(app.alerts.shown().size(), 1U);
  EXPECT_EQ(engine::internalpath.get(), "/cache/slot2/testfile1.avi");
  EXPECT_EQ(app.screen.tabview.page(), 2);
}

TEST_F(WorkingFolder, AnotherCanBeChosenFromTheAlert) {
  choose();
  takeAllAway();
  app.alerts.script({platform::kAlertDefault});
  app.press(app.screen.repairbutton);
  EXPECT_EQ(app.takeEvents({"openPanel."}),
            (Lines{"openPanel.setCanCreateDirectories(yes)", "openPanel.setCanChooseDirectories(yes)",
                   "openPanel.setCanChooseFiles(no)", "openPanel.setAllowsMultipleSelection(no)",
                   "openPanel.setPrompt(Use this folder)", "openPanel.beginSheetModalForWindow(mainWindow)"}));

  app.panels.lastOpenPanel()->choose("/media/disk");

  EXPECT_EQ(app.scratchPaths.movedTo, Lines{"/media/disk"});
  EXPECT_EQ(app.screen.tabview.page(), 1);  // whoever chose presses Repair again
  app.press(app.screen.repairbutton);
  EXPECT_EQ(engine::internalpath.get(), "/media/disk/testfile1.avi");
  EXPECT_EQ(app.screen.tabview.page(), 2);
}

TEST_F(WorkingFolder, OneThatCannotBeUsedIsRefusedWithItsCauseAndTheEarlierStays) {
  choose();
  app.scratchPaths.refusedFolder = {"/media/disk", std::make_error_code(std::errc::read_only_file_system)};
  const std::string before = app.screen.workingfoldertext.stringValue();

  app.controller->chooseWorkingFolder(nullptr);
  app.panels.lastOpenPanel()->choose("/media/disk");

  ASSERT_EQ(app.alerts.shown().size(), 1U);
  EXPECT_EQ(app.alerts.shown()[0].title, "This folder cannot be used");
  EXPECT_EQ(app.alerts.shown()[0].message,
            "/media/disk cannot hold a repaired film until you save it, so nothing was changed. The system says: "
            "Read-only file system.");
  EXPECT_EQ(app.screen.workingfoldertext.stringValue(), before);
}

TEST_F(WorkingFolder, WithoutAChooserItStays) {
  choose();
  app.panels.makeOpenPanels(false);
  app.controller->chooseWorkingFolder(nullptr);
  EXPECT_EQ(app.takeEvents(), Lines{"openPanel() failed"});
}

TEST_F(WorkingFolder, ACancelledChooserChangesNothing) {
  app.scratchPaths.refused = {kScratch1};
  choose();
  app.press(app.screen.repairbutton);  // the fallback takes over, and another one can be chosen
  app.press(app.screen.workingfolderbutton);
  app.panels.lastOpenPanel()->cancel();
  EXPECT_TRUE(app.scratchPaths.movedTo.empty());
}

TEST_F(WorkingFolder, StandsBesideTheChosenFilmWithItsRoomAndTheNeed) {
  app.files.space = 20'000'000'000;
  choose();
  EXPECT_EQ(app.screen.workingfoldertext.stringValue(),
            "Working folder: /Applications (20.0 GB are free, about 0.5 MB are needed)");
  EXPECT_TRUE(app.screen.workingfolderbutton.isHidden());  // the shared folder is given

  app.controller->chooseWorkingFolder(nullptr);
  app.panels.lastOpenPanel()->choose("/media/disk");

  EXPECT_EQ(app.screen.workingfoldertext.stringValue(),
            "Working folder: /media/disk (20.0 GB are free, about 0.5 MB are needed)");
  EXPECT_FALSE(app.screen.workingfolderbutton.isHidden());
}

TEST_F(WorkingFolder, OfUnknownRoomSaysTheNeedOnly) {
  app.files.space = std::nullopt;
  choose();
  EXPECT_EQ(app.screen.workingfoldertext.stringValue(), "Working folder: /Applications (about 0.5 MB are needed)");
}

TEST_F(WorkingFolder, TooLittleRoomRefusesNothing) {
  app.files.space = 5;
  choose();
  app.press(app.screen.repairbutton);
  EXPECT_TRUE(app.alerts.shown().empty());
  EXPECT_EQ(app.screen.tabview.page(), 2);
}

}  // namespace
}  // namespace zelvo::tests
