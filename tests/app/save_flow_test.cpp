#include "tests/app/save_bench.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using Save = SaveTest;

TEST_F(Save, ThePanelIsPreparedAndShownOverTheMainWindow) {
  arrive();

  app.press(app.screen.savebutton);

  EXPECT_EQ(app.takeEvents(), (Lines{"log: Save", "savebutton.setEnabled(no)", "savePanel()",
                                     "savePanel.setPrompt(Save)", "savePanel.setCanCreateDirectories(yes)",
                                     "savePanel.beginSheet(default folder, Repaired, mainWindow)"}));
  EXPECT_EQ(app.controller->savepanel, app.panels.lastSavePanel());
}

TEST_F(Save, CancellingThePanelEnablesTheButtonAndCreatesNothing) {
  arrive();
  app.press(app.screen.savebutton);
  app.events.clear();

  app.panels.lastSavePanel()->cancel();

  EXPECT_EQ(app.takeEvents(), Lines{"savebutton.setEnabled(yes)"});
}

TEST_F(Save, APanelThatCannotBeMadeLeavesTheButtonUsable) {
  arrive();
  app.panels.makeSavePanels(false);

  app.press(app.screen.savebutton);

  EXPECT_TRUE(app.screen.savebutton.isEnabled());
}

TEST_F(Save, TheCopyIsMadeInTheGivenOrder) {
  arrive();
  app.press(app.screen.savebutton);
  app.events.clear();
  app::oSize = 4711;
  app.watchVariables();

  app.panels.lastSavePanel()->choose(kFolder);

  EXPECT_EQ(app.takeEvents(),
            (Lines{"savePanel.endSheet()", "savePanel.orderOut()", "savepath = /home/user/Repaired",
                   "createFolder(/home/user/Repaired)", "log: SIZE=5000000", "log: Save path=/home/user/Repaired",
                   "oSize = 0", "log: SIZE=5000000", "log: Save path=/home/user/Repaired",
                   "beginSheet(saveprogresspanel, mainWindow)", "savingNameFromUser = /home/user/Repaired/repaired.avi",
                   "log: Repaired file size=100000", "createFile(/home/user/Repaired/repaired.avi)",
                   "flush(/home/user/Repaired/repaired.avi)",
                   "savecompletedtext.setStringValue(The repaired file was saved as "
                   "/home/user/Repaired/repaired.avi.)",
                   "durationfield.setIntegerValue(0)", "main3.setEnabled(yes)", "help3.setEnabled(yes)",
                   "previewbutton.setEnabled(yes)"}));
  EXPECT_EQ(app::savepath, kFolder);
  EXPECT_EQ(app.controller->savingNameFromUser, kSaved);
  EXPECT_EQ(app.controller->outputFileManager, &app.fileManager);
  EXPECT_EQ(workers.waiting(), 1U);  // the progress
}

TEST_F(Save, TheBarStartsAtZero) {
  arrive();
  app.screen.saveprogressbar.setDoubleValue(88);

  saveAs(kFolder);

  EXPECT_EQ(app.screen.saveprogressbar.doubleValue(), 0.0);
}

TEST_F(Save, ARemainderIsPaddedAndItsFrontWrittenAgain) {
  arrive(100000);

  saveAs(kFolder);

  const Bytes rebuilt = app.files.content(kScratch1);
  Bytes expected = rebuilt;
  expected.resize(131072);
  expected.insert(expected.end(), rebuilt.begin() + 98304, rebuilt.end());
  EXPECT_EQ(expected.size(), 132768U);
  EXPECT_EQ(app.files.content(kSaved), expected);
}

TEST_F(Save, WholeBlocksAreSavedByteForByte) {
  arrive(65536);

  saveAs(kFolder);

  EXPECT_EQ(app.files.content(kSaved), app.files.content(kScratch1));
}

TEST_F(Save, TheSizeInMiBIsRoundedDown) {
  arrive(3 * 1048576 - 1);

  saveAs(kFolder);

  EXPECT_EQ(app::oSize, 2U);
  EXPECT_EQ(app.screen.durationfield.stringValue(), "2");
}

TEST_F(Save, AWholeCopyIsSaidToBeDone) {
  arrive();
  app.screen.savecompletedhead.setTitle("of an earlier save");
  app.screen.savecompletedhead.setSign(platform::SheetSign::warning);

  saveAs(kFolder);

  EXPECT_EQ(app.screen.savecompletedhead.title(), "Saving is done");
  EXPECT_EQ(app.screen.savecompletedhead.sign(), platform::SheetSign::done);
  EXPECT_EQ(app.screen.savedsizelabel.stringValue(), "Last saved");
  EXPECT_EQ(app.screen.savedbytestext.stringValue(), "0.1 MB of 0.1 MB copied");
}

}  // namespace
}  // namespace zelvo::tests
