// What of the application's texts is translated: its own. The given ones are said in English, whoever reads them.
#include <algorithm>

#include "app/texts.h"
#include "tests/app/save_bench.h"

namespace zelvo::tests {
namespace {

class TranslatedTexts : public SaveTest {
 protected:
  void SetUp() override { app.words.switchOn(); }
  [[nodiscard]] const platform::AlertPanel& lastAlert() const { return app.alerts.shown().back(); }
};

TEST_F(TranslatedTexts, TheQuitQuestionIsGiven) {
  app.start();

  app.application.closeMainWindow();

  EXPECT_EQ(app.takeEvents({"alert"}),
            Lines{"alert(\" \", \"Do you want to quit application?\", \"Cancel\", \"Yes\", nothing)"});
}

TEST_F(TranslatedTexts, TheAlertOfTooLittleSpaceIsGiven) {
  arrive();
  app.files.space = 10;

  saveAs(kFolder);

  EXPECT_EQ(app.takeEvents({"alert", "savePanel.setPrompt"}),
            (Lines{"savePanel.setPrompt(Save)",
                   "alert(\"! Not enough free disk space\", \"The volume you have chosen to save data does not have "
                   "enough free space to save the repaired file.\", \"OK\", nothing, nothing)"}));
}

TEST_F(TranslatedTexts, TheWarningAboutTheVolumeIsGiven) {
  arrive();
  app.alerts.script({platform::kAlertDefault});

  app.controller->saveData(nullptr);

  EXPECT_EQ(lastAlert().title, "Information");
  EXPECT_EQ(lastAlert().message, app::texts::kSameVolumeMessage);
  EXPECT_EQ(lastAlert().defaultButton, "Yes");
  EXPECT_EQ(lastAlert().alternateButton, "No");
}

TEST_F(TranslatedTexts, TheHintAboutPlayersIsGiven) {
  arrive();
  app.press(app.screen.previewbutton);

  EXPECT_EQ(app.screen.downloadmplayertext1.stringValue(), app::texts::kHint1);
  EXPECT_EQ(app.screen.downloadmplayertext2.stringValue(), "please");
  EXPECT_EQ(app.screen.downloadmplayertext3.stringValue(), "for more");
  EXPECT_EQ(app.screen.downloadmplayertext4.stringValue(), "information.");
}

TEST_F(TranslatedTexts, TheStagesOfARunAreGiven) {
  app.start();
  runWorkers();
  app.choose(smallAvi());
  app.events.clear();

  repairWhole();

  Lines said = app.takeEvents({"textfield.setStringValue(A", "textfield.setStringValue(R"});
  said.erase(std::unique(said.begin(), said.end()), said.end());
  EXPECT_EQ(said, (Lines{"textfield.setStringValue(Analyzing the file..)",
                         "textfield.setStringValue(Retrieving audio/ video data forks..)",
                         "textfield.setStringValue(Repairing the file..)"}));
}

TEST_F(TranslatedTexts, WhatCannotBeChosenIsToldInTheReadersLanguage) {
  app.start();

  app.controller->offerFile("/films/none.avi");

  EXPECT_EQ(lastAlert().title, "[This cannot be chosen]");
  EXPECT_EQ(lastAlert().message, "[There is no such film. It may have been moved, renamed or removed.]");
  EXPECT_EQ(lastAlert().defaultButton, "OK");
}

TEST_F(TranslatedTexts, TheWorkingFolderIsToldInTheReadersLanguage) {
  app.start();
  app.files.space = 12300000;
  app.files.putSparse(kInput, 734000000);

  ASSERT_TRUE(app.controller->chooseFile(kInput));

  EXPECT_EQ(app.screen.workingfoldertext.stringValue(),
            "[Working folder: /Applications ([[12,3 MB] are free, about [734,0 MB] are needed])]");
}

TEST_F(TranslatedTexts, ASaveIsToldInTheReadersLanguage) {
  arrive();

  saveAs(kFolder);

  EXPECT_EQ(app.screen.savedbytestext.stringValue(), "[[0,1 MB] of [0,1 MB] copied]");
  EXPECT_EQ(app.screen.savecompletedtext.stringValue(),
            "[The repaired file was saved as /home/user/Repaired/repaired.avi.]");
  EXPECT_EQ(app.screen.savedsizelabel.stringValue(), "[Last saved]");
}

TEST_F(TranslatedTexts, ANameThatCannotBeIsToldInTheReadersLanguage) {
  arrive();
  app.files.put("/home/user/taken", {});
  ASSERT_TRUE(app.press(app.screen.savebutton));

  EXPECT_EQ(app.controller->judgeSaveName("/home/user/taken").why,
            "[A file of that name is there already. Please choose another name.]");
}

}  // namespace
}  // namespace zelvo::tests
