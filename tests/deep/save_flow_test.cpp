// A result that is saved: where, how it is copied, and every way in which it is not.
#include "deep/save_flow.h"

#include "deep/film_copy.h"
#include "tests/deep/deep_bench.h"

namespace zelvo::tests {

using platform::DeepPage;

class SaveFlowTest : public DeepTest {
 protected:
  /// Presses Save and answers the panel.
  void saveAs(const std::string& path, bool withReport = false) {
    ASSERT_TRUE(press(screen.savebutton));
    ASSERT_TRUE(choosers.answerFile(platform::NewFileAnswer{path, withReport}));
  }
  [[nodiscard]] std::string lastMessage() const { return alerts.shown().back().message.value_or(""); }
  [[nodiscard]] bool isSheetShown() const { return !sheets.shown().empty(); }
  [[nodiscard]] std::string scratchFilm() const { return valueOf(*programs.started.back(), "-o"); }
};

TEST_F(SaveFlowTest, ProposesANameBesideTheDamagedFilm) {
  reachResult();
  ASSERT_TRUE(press(screen.savebutton));
  EXPECT_EQ(choosers.askedFile.name, "broken-salvaged.avi");
  EXPECT_EQ(choosers.askedFile.chooser.folder, temp.path());
  EXPECT_EQ(choosers.askedFile.tickBox, "Save the report beside it");
  EXPECT_FALSE(choosers.askedFile.isTicked);
  EXPECT_TRUE(choosers.answerFile(std::nullopt));
  runWorkers();
  EXPECT_EQ(temp.names(), (std::vector<std::string>{"broken.avi", "cache"}));
}

TEST_F(SaveFlowTest, CopiesTheFilmAndSaysWhereItLies) {
  reachResult();
  saveAs(temp / "mine.avi");
  EXPECT_TRUE(isSheetShown());
  EXPECT_EQ(screen.savebytestext.stringValue(), "0 bytes of 17 bytes copied");
  alerts.script({platform::kAlertAlternate});
  runWorkers();
  EXPECT_FALSE(isSheetShown());
  EXPECT_EQ(temp.content("mine.avi"), "the repaired film");
  EXPECT_EQ(screen.saveprogressbar.doubleValue(), 100.0);
  EXPECT_EQ(takeAlerts(), std::vector<std::string>{"The film is saved"});
  EXPECT_EQ(lastMessage(), "It was saved as " + temp / "mine.avi" + ".");
  EXPECT_EQ(alerts.shown().back().sign, platform::SheetSign::done);
  EXPECT_EQ(temp.names(), (std::vector<std::string>{"broken.avi", "cache", "mine.avi"}));
  // Saved, so nobody is asked.
  ASSERT_TRUE(press(screen.resulthome));
  EXPECT_EQ(screen.pages.shown(), DeepPage::none);
  EXPECT_TRUE(deepRepair->mayClose());
  EXPECT_EQ(takeAlerts(), std::vector<std::string>());
}

TEST_F(SaveFlowTest, TheSavedFilmCanBePlayedAndItsFolderOpened) {
  reachResult();
  saveAs(temp / "a b.avi");
  alerts.script({platform::kAlertDefault});
  runWorkers();
  EXPECT_EQ(events.lines().back(), "openURL(file://" + temp.path() + "/a%20b.avi)");
  saveAs(temp / "other.avi");
  alerts.script({platform::kAlertOther});
  runWorkers();
  EXPECT_EQ(events.lines().back(), "openURL(file://" + temp.path() + ")");
}

TEST_F(SaveFlowTest, FolderAndTickAreRemembered) {
  reachResult();
  writeFile(temp / "there/x", "");
  saveAs(temp / "there/mine.avi", true);
  runWorkers();
  ASSERT_TRUE(press(screen.savebutton));
  EXPECT_EQ(choosers.asked.folder, temp / "there");
  EXPECT_TRUE(choosers.askedFile.isTicked);
}

TEST_F(SaveFlowTest, TheReportIsSavedBesideItAndReplacesNothing) {
  reachResult();
  saveAs(temp / "mine.avi", true);
  runWorkers();
  EXPECT_EQ(temp.content("mine.html"), "<html>a report</html>");
  EXPECT_NE(lastMessage().find(temp / "mine.html"), std::string::npos);
  temp.put("other.html", "somebody's page");
  saveAs(temp / "other.avi", true);
  runWorkers();
  EXPECT_EQ(temp.content("other.html"), "somebody's page");
  EXPECT_EQ(temp.content("other-2.html"), "<html>a report</html>");
}

TEST_F(SaveFlowTest, AReportThatIsGoneDoesNotSpoilTheSave) {
  reachResult();
  ASSERT_FALSE(fileManager.remove(valueOf(*programs.started.back(), "--report")));
  saveAs(temp / "mine.avi", true);
  runWorkers();
  EXPECT_EQ(takeAlerts(), std::vector<std::string>{"The film is saved"});
  EXPECT_NE(lastMessage().find("The report could not be saved beside it"), std::string::npos);
  EXPECT_EQ(temp.names(), (std::vector<std::string>{"broken.avi", "cache", "mine.avi"}));
}

TEST_F(SaveFlowTest, AFileThatThePanelAgreedToReplaceGivesWay) {
  reachResult();
  temp.put("mine.avi", "an older film");
  saveAs(temp / "mine.avi");
  runWorkers();
  EXPECT_EQ(temp.content("mine.avi"), "the repaired film");
}

TEST_F(SaveFlowTest, TheDamagedFilmIsNeverReplaced) {
  const std::string path = reachResult();
  ASSERT_TRUE(press(screen.savebutton));
  EXPECT_NE(choosers.askedFile.refusal(path), "");
  EXPECT_NE(choosers.askedFile.refusal(temp / "../" + temp.path().substr(temp.path().rfind('/') + 1) + "/broken.avi"),
            "");
  EXPECT_NE(choosers.askedFile.refusal(temp / "cache"), "");
  EXPECT_EQ(choosers.askedFile.refusal(temp / "mine.avi"), "");
  ASSERT_TRUE(choosers.answerFile(platform::NewFileAnswer{path, false}));
  runWorkers();
  EXPECT_EQ(temp.content("broken.avi"), "a damaged film");
  EXPECT_EQ(takeAlerts(), std::vector<std::string>{"The film was not saved"});
  EXPECT_TRUE(deepRepair->mayClose() == false);
}

TEST_F(SaveFlowTest, APlaceThatDoesNotAnswerIsNotTouched) {
  reachResult();
  pathProbe.dead = {"/dead"};
  ASSERT_TRUE(press(screen.savebutton));
  EXPECT_NE(choosers.askedFile.refusal("/dead/mine.avi"), "");
  ASSERT_TRUE(choosers.answerFile(platform::NewFileAnswer{"/dead/mine.avi", false}));
  EXPECT_EQ(takeAlerts(), std::vector<std::string>{"The film was not saved"});
  EXPECT_FALSE(isSheetShown());
  EXPECT_EQ(workers.waiting(), 0U);
}

TEST_F(SaveFlowTest, AFolderThatIsGoneIsTold) {
  reachResult();
  saveAs(temp / "nowhere/mine.avi");
  runWorkers();
  EXPECT_EQ(takeAlerts(), std::vector<std::string>{"The film was not saved"});
  EXPECT_TRUE(lastMessage().starts_with("Writing failed: No such file or directory.")) << lastMessage();
  EXPECT_TRUE(screen.savebutton.isEnabled());
}

TEST_F(SaveFlowTest, AFilmThatIsGoneOrShortIsNeverTakenForWhole) {
  reachResult();
  writeFile(scratchFilm(), "the repaired");
  saveAs(temp / "mine.avi");
  runWorkers();
  EXPECT_TRUE(lastMessage().starts_with("The repaired film is no longer there, or not whole any more."));
  writeFile(scratchFilm(), "the repaired film, and more");
  saveAs(temp / "mine.avi");
  runWorkers();
  ASSERT_FALSE(fileManager.remove(scratchFilm()));
  saveAs(temp / "mine.avi");
  runWorkers();
  EXPECT_TRUE(lastMessage().starts_with("The repaired film is no longer there, or not whole any more."));
  EXPECT_EQ(takeAlerts(), (std::vector<std::string>(3, "The film was not saved")));
  EXPECT_EQ(temp.names(), (std::vector<std::string>{"broken.avi", "cache"}));
}

TEST_F(SaveFlowTest, AStopTakesTheSheetAwayAtOnceAndLeavesNothing) {
  reachResult();
  saveAs(temp / "mine.avi");
  ASSERT_TRUE(press(screen.savestopbutton));
  queue.pump();
  EXPECT_FALSE(isSheetShown());
  runWorkers();
  EXPECT_EQ(temp.names(), (std::vector<std::string>{"broken.avi", "cache"}));
  EXPECT_EQ(takeAlerts(), std::vector<std::string>());
  saveAs(temp / "mine.avi");
  runWorkers();
  EXPECT_EQ(temp.content("mine.avi"), "the repaired film");
}

TEST_F(SaveFlowTest, WithoutAThreadNothingIsSavedAndThatIsSaid) {
  reachResult();
  ASSERT_TRUE(press(screen.savebutton));
  workers.refuseNext();
  ASSERT_TRUE(choosers.answerFile(platform::NewFileAnswer{temp / "mine.avi", false}));
  EXPECT_EQ(takeAlerts(), std::vector<std::string>{"The film was not saved"});
  queue.pump();
  EXPECT_FALSE(isSheetShown());
}

TEST_F(SaveFlowTest, TheEndOfTheProgramEndsACopy) {
  reachResult();
  saveAs(temp / "mine.avi");
  deepRepair->programEnds();
  runWorkers();
  EXPECT_EQ(temp.names(), (std::vector<std::string>{"broken.avi", "cache"}));
  EXPECT_EQ(takeAlerts(), std::vector<std::string>());
}

}  // namespace zelvo::tests
