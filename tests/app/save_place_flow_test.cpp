// Where a save may go: the judged name, the place that answers, its room.
#include "tests/app/save_bench.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using SavePlace = SaveTest;

TEST_F(SavePlace, APlaceThatDoesNotAnswerEndsLikeACancelledPanelWithANotice) {
  arrive();
  app.pathProbe.dead = {"/mnt/gone"};
  app.press(app.screen.savebutton);
  app.events.clear();

  EXPECT_TRUE(app.panels.lastSavePanel()->choose("/mnt/gone/Repaired"));

  EXPECT_EQ(
      app.takeEvents(),
      (Lines{"savePanel.endSheet()", "savePanel.orderOut()",
             "alert(\"The film cannot be saved there\", \"The disk or server does not answer. Nothing was changed. "
             "Please try again when it is back, or choose another place.\", \"OK\", nothing, nothing)",
             "savebutton.setEnabled(yes)"}));
  EXPECT_FALSE(app.fileManager.hasFolder("/mnt/gone/Repaired"));
  EXPECT_EQ(app::savepath, "");
  EXPECT_EQ(workers.waiting(), 0U);
}

TEST_F(SavePlace, AFileThereThatDoesNotAnswerEndsItToo) {
  arrive();
  app.pathProbe.dead = {kSaved};

  EXPECT_TRUE(saveAs(kFolder));

  EXPECT_FALSE(app.fileManager.hasFolder(kFolder));
  EXPECT_TRUE(app.screen.savebutton.isEnabled());
}

TEST_F(SavePlace, AnInputThatDoesNotAnswerIsNotComparedAndDoesNotHinderTheSave) {
  arrive();
  // The file that is there passes for the input, were that looked at.
  app.files.put(kInput, app.files.content(kScratch1));
  app.fileManager.links[kSaved] = kInput;
  app.pathProbe.dead = {"/films"};

  app.press(app.screen.savebutton);
  app.panels.lastSavePanel()->choose(kFolder, true);

  EXPECT_NE(app.screen.savecompletedtext.stringValue().find("was saved as"), std::string::npos)
      << app.screen.savecompletedtext.stringValue();
}

TEST_F(SavePlace, ThePlaceIsAskedBeforeItsNameIsJudged) {
  arrive();
  app.fileManager.links["/mnt/gone/Repaired"] = kInput;  // a file, which a look would have refused
  app.pathProbe.dead = {"/mnt/gone"};

  EXPECT_EQ(app.controller->judgeSaveName("/mnt/gone/Repaired").kind, platform::NameVerdict::Kind::taken);
}

TEST_F(SavePlace, IsAskedTogetherWithTheFileInItAndTheInput) {
  arrive();
  app.pathProbe.asked.clear();

  static_cast<void>(app.controller->judgeSaveName(kFolder));
  engine::path.set(std::nullopt);
  static_cast<void>(app.controller->judgeSaveName(kFolder));

  EXPECT_EQ(app.pathProbe.asked, (std::vector<Lines>{{kFolder, kSaved, kInput}, {kFolder, kSaved, "/"}}));
}

TEST_F(SavePlace, AFolderOfTheChosenNameHoldsTheFile) {
  arrive();

  saveAs(kFolder);

  EXPECT_TRUE(app.fileManager.hasFolder(kFolder));
  EXPECT_TRUE(app.files.has(kSaved));
}

TEST_F(SavePlace, SpaceForExactlyTheFileIsEnough) {
  arrive(65536);
  app.files.space = 65536;

  saveAs(kFolder);

  EXPECT_TRUE(app.alerts.shown().empty());
  EXPECT_TRUE(app.files.has(kSaved));
}

TEST_F(SavePlace, TooLittleSpaceIsRefusedAfterTheFolderIsMade) {
  arrive(65536);
  app.files.space = 65535;
  app.press(app.screen.savebutton);
  app.events.clear();

  app.panels.lastSavePanel()->choose(kFolder);

  EXPECT_EQ(app.takeEvents(),
            (Lines{"savePanel.endSheet()", "savePanel.orderOut()", "createFolder(/home/user/Repaired)",
                   "log: SIZE=65535", "log: Save path=/home/user/Repaired",
                   "alert(\"! Not enough free disk space\", \"The volume you have chosen to save data does not have "
                   "enough free space to save the repaired file.\", \"OK\", nothing, nothing)"}));
  EXPECT_TRUE(app.fileManager.hasFolder(kFolder));
  EXPECT_FALSE(app.files.has(kSaved));
  EXPECT_FALSE(app.screen.savebutton.isEnabled());
  EXPECT_EQ(workers.waiting(), 0U);
}

TEST_F(SavePlace, AFolderThatCannotBeMadeHasNoSpace) {
  arrive();
  app.fileManager.refusedFolders = {kFolder};

  saveAs(kFolder);

  EXPECT_EQ(app.alerts.shown().size(), 1U);
  EXPECT_EQ(app.takeEvents({"log: SIZE"}), Lines{"log: SIZE=0"});
}

TEST_F(SavePlace, TheNameOfTheDamagedFileIsRefused) {
  arrive();
  app.files.put("/films/repaired.avi", Bytes(600));
  app.controller->chooseFile("/films/repaired.avi");
  app.press(app.screen.savebutton);

  app.events.clear();
  EXPECT_FALSE(app.panels.lastSavePanel()->choose("/films"));

  EXPECT_EQ(app.takeEvents(), Lines{"savePanel.refused: That would overwrite the damaged file itself. Please choose "
                                    "another name or folder."});
  EXPECT_EQ(app.files.content("/films/repaired.avi"), Bytes(600));
}

TEST_F(SavePlace, TheDamagedFileIsNotWrittenEvenWhenItCameToStandThereSince) {
  arrive();
  app.press(app.screen.savebutton);
  app.fileManager.links[kSaved] = kInput;
  app.panels.lastSavePanel()->setNameJudge({});

  app.panels.lastSavePanel()->choose(kFolder);

  EXPECT_EQ(app.takeEvents({"createFile"}), Lines{});
  EXPECT_EQ(app.screen.savecompletedtext.stringValue(),
            "The copy is incomplete: That would overwrite the damaged file itself. Please choose another name or "
            "folder. Please save again, to another place.");
}

TEST_F(SavePlace, AnEarlierSaveIsAskedAbout) {
  arrive();
  app.files.put(kSaved, Bytes(5));
  app.press(app.screen.savebutton);

  app.events.clear();
  EXPECT_FALSE(app.panels.lastSavePanel()->choose(kFolder, false));
  EXPECT_EQ(app.takeEvents(), Lines{"savePanel.asked: That folder already holds a file repaired.avi. Replace it?"});
  EXPECT_EQ(app.files.content(kSaved), Bytes(5));
  EXPECT_TRUE(app.panels.lastSavePanel()->choose(kFolder, true));
}

TEST_F(SavePlace, TheNameOfAnExistingFileIsRefused) {
  arrive();
  app.files.put(kFolder, Bytes(5));
  app.press(app.screen.savebutton);
  app.events.clear();

  EXPECT_FALSE(app.panels.lastSavePanel()->choose(kFolder));

  EXPECT_EQ(app.takeEvents(),
            Lines{"savePanel.refused: A file of that name is there already. Please choose another name."});
}

}  // namespace
}  // namespace zelvo::tests
