#include "tests/app/app_bench.h"

namespace zelvo::tests {
namespace {

using InputSelection = FlowTest;

const Lines kChooserShown = {"openPanel.setAllowedFileTypes(avi, divx, xvid)",
                             "openPanel.setTreatsFilePackagesAsDirectories(no)",
                             "openPanel.setExtensionHidden(no)",
                             "openPanel.setCanChooseDirectories(no)",
                             "openPanel.setCanChooseFiles(yes)",
                             "openPanel.setAllowsMultipleSelection(no)",
                             "openPanel.beginSheetModalForWindow(mainWindow)"};

TEST_F(InputSelection, TheChooserIsPreparedAndShownOverTheWindow) {
  app.start();

  app.press(app.screen.browsebutton);

  EXPECT_EQ(app.takeEvents(), joined({{"openPanel()", "openPanel()", "openPanel()"}, kChooserShown}));
  EXPECT_NE(app.controller->panel, nullptr);
}

TEST_F(InputSelection, AFreshPanelThatReportsANameIsLoggedAsNil) {
  app.start();
  app.panels.setFreshFilename("/films/old.avi");

  app.press(app.screen.browsebutton);

  EXPECT_EQ(app.takeEvents({"log: ", "openPanel()"}), (Lines{"openPanel()", "log: nil", "openPanel()", "openPanel()"}));
}

TEST_F(InputSelection, AFreshPanelWithAnEmptyNameIsNotLogged) {
  app.start();
  app.panels.setFreshFilename("");

  app.press(app.screen.browsebutton);

  EXPECT_TRUE(app.takeEvents({"log: "}).empty());
}

TEST_F(InputSelection, OneFailureLeadsToOneNestedCallAfterWhichTheFirstGoesOn) {
  app.start();
  app.panels.scriptOpenPanels({true, false});

  app.press(app.screen.browsebutton);

  const Lines nested =
      joined({{"openPanel()", "openPanel() failed", "openPanel()", "openPanel()", "openPanel()"}, kChooserShown});
  EXPECT_EQ(app.takeEvents(), joined({nested, {"openPanel()"}, kChooserShown}));
  EXPECT_EQ(app.panels.shownOpenPanels().size(), 2U);
}

TEST_F(InputSelection, PanelsThatCanNeverBeMadeEndTheAttempts) {
  app.start();
  app.panels.makeOpenPanels(false);

  app.press(app.screen.browsebutton);

  EXPECT_TRUE(app.panels.shownOpenPanels().empty());
  EXPECT_EQ(app.takeEvents(), Lines(std::size_t{100} * 3, "openPanel() failed"));  // each call asks three times
  app.panels.makeOpenPanels(true);
  app.press(app.screen.browsebutton);
  EXPECT_EQ(app.panels.shownOpenPanels().size(), 1U);
}

TEST_F(InputSelection, AChooserThatCannotBeMadeIsNotShown) {
  app.start();
  app.panels.scriptOpenPanels({true, true, false});

  app.press(app.screen.browsebutton);

  EXPECT_EQ(app.takeEvents(), (Lines{"openPanel()", "openPanel()", "openPanel() failed"}));
}

TEST_F(InputSelection, FilmThatDoesNotAnswerHasSizeZeroAndIsNotLookedAt) {
  app.start();
  app.files.put(kInput, platform::Bytes(1234));
  app.pathProbe.dead = {"/films"};
  engine::stopflag = true;
  app.press(app.screen.browsebutton);

  app.panels.lastOpenPanel()->choose(kInput);

  EXPECT_EQ(engine::path.get(), kInput);
  EXPECT_EQ(std::uint64_t{engine::inputfilesize}, 0U);
  EXPECT_EQ(app.screen.pathfield.stringValue(), kInput);
  EXPECT_FALSE(engine::stopflag);
  EXPECT_EQ(app.pathProbe.asked, (std::vector<Lines>{{kInput}}));
}

TEST_F(InputSelection, FilmThatIsHandedOverAndDoesNotAnswerIsRefusedWithItsReason) {
  app.start();
  app.files.put(kInput, platform::Bytes(1234));
  app.pathProbe.dead = {"/films"};

  app.controller->offerFile(kInput);

  EXPECT_EQ(engine::path.get(), std::nullopt);
  EXPECT_EQ(
      app.takeEvents(),
      Lines{"alert(\"This cannot be chosen\", \"The disk or server does not answer. Nothing was changed. Please try "
            "again when it is back, or choose another place.\", \"OK\", nothing, nothing)"});
}

TEST_F(InputSelection, AnswerSetsPathAndSizeShowsThePathTwiceAndClearsTheStop) {
  app.start();
  app.files.put(kInput, platform::Bytes(1234));
  engine::stopflag = true;
  app.press(app.screen.browsebutton);
  app.events.clear();
  app.watchVariables();

  app.panels.lastOpenPanel()->choose(kInput);

  EXPECT_EQ(app.takeEvents(), (Lines{"path = /films/broken.avi", "inputfilesize = 1234",
                                     "controller.textfield.setStringValue(/films/broken.avi)",
                                     "pathfield.setStringValue(/films/broken.avi)", "stopflag = 0"}));
  EXPECT_EQ(app.controller->inputFileManager, &app.fileManager);
  EXPECT_EQ(app.screen.tabview.page(), 1);
}

TEST_F(InputSelection, OnlyTheThreeExtensionsCanBeChosen) {
  app.start();
  for (const char* name : {"/f/a.avi", "/f/a.divx", "/f/a.xvid", "/f/A.AVI"}) {
    app.press(app.screen.browsebutton);
    EXPECT_TRUE(app.panels.lastOpenPanel()->choose(name)) << name;
  }
  for (const char* name : {"/f/a.mov", "/f/avi", "/f.avi/a", "/f/a.avi.txt"}) {
    app.press(app.screen.browsebutton);
    EXPECT_FALSE(app.panels.lastOpenPanel()->choose(name)) << name;
    app.panels.lastOpenPanel()->cancel();
  }
}

TEST_F(InputSelection, CancellingKeepsTheEarlierChoice) {
  app.start();
  app.choose(platform::Bytes(99));
  engine::stopflag = true;
  app.press(app.screen.browsebutton);
  app.events.clear();

  app.panels.lastOpenPanel()->cancel();

  EXPECT_TRUE(app.takeEvents().empty());
  EXPECT_EQ(engine::path.get(), kInput);
  EXPECT_EQ(engine::inputfilesize, 99U);
  EXPECT_TRUE(engine::stopflag);
}

TEST_F(InputSelection, CancellingWithNothingChosenLeavesNothingChosen) {
  app.start();
  app.press(app.screen.browsebutton);
  app.panels.lastOpenPanel()->cancel();
  EXPECT_EQ(engine::path.get(), std::nullopt);
}

TEST_F(InputSelection, ASecondFileAfterACompletedRunReplacesThePathAndClearsTheStop) {
  reachResultPage();
  engine::stopflag = true;

  app.choose(platform::Bytes(77), "/films/second.divx");

  EXPECT_EQ(engine::path.get(), "/films/second.divx");
  EXPECT_EQ(engine::inputfilesize, 77U);
  EXPECT_EQ(app.screen.chosenpath.stringValue(), "/films/second.divx");
  EXPECT_EQ(app.screen.pathfield.stringValue(), "/films/second.divx");
  EXPECT_FALSE(engine::stopflag);
}

TEST_F(InputSelection, ALinksOwnSizeIsTaken) {
  app.start();
  app.files.put("/films/target.avi", platform::Bytes(5000));
  app.fileManager.links["/films/link.avi"] = "/films/target.avi";
  app.press(app.screen.browsebutton);

  app.panels.lastOpenPanel()->choose("/films/link.avi");

  EXPECT_EQ(engine::inputfilesize, 17U);
}

TEST_F(InputSelection, AFileThatCannotBeLookedAtHasSizeZero) {
  app.start();
  engine::inputfilesize = 5;
  app.press(app.screen.browsebutton);

  app.panels.lastOpenPanel()->choose("/films/gone.avi");

  EXPECT_EQ(engine::inputfilesize, 0U);
  EXPECT_EQ(engine::path.get(), "/films/gone.avi");
}

TEST_F(InputSelection, OnlyTheDelegateStyleStepLogsTheSize) {
  app.start();
  app.files.put(kInput, platform::Bytes(1234));
  platform::headless::HeadlessOpenPanel panel(nullptr, kInput);

  app.controller->openPanelDidEnd(panel, platform::kPanelOk, nullptr);

  EXPECT_EQ(app.takeEvents(), (Lines{"log: FileSize=1234", "controller.textfield.setStringValue(/films/broken.avi)",
                                     "pathfield.setStringValue(/films/broken.avi)"}));
  app.controller->openPanelDidEnd(panel, platform::kPanelCancelled, nullptr);
  EXPECT_TRUE(app.takeEvents().empty());
}

TEST_F(InputSelection, ADroppedFileGoesThroughTheSameStep) {
  app.start();
  app.files.put(kInput, platform::Bytes(1234));

  EXPECT_TRUE(app.controller->chooseFile(kInput));

  EXPECT_EQ(engine::path.get(), kInput);
  EXPECT_EQ(engine::inputfilesize, 1234U);
  EXPECT_FALSE(app.controller->chooseFile("/films/film.mov"));
  EXPECT_EQ(engine::path.get(), kInput);
}

TEST_F(InputSelection, NothingCanBeDroppedWhileARunIsAtWork) {
  app.start();
  app.choose(smallAvi());
  app.press(app.screen.repairbutton);

  EXPECT_FALSE(app.controller->chooseFile("/films/other.avi"));

  EXPECT_EQ(engine::path.get(), kInput);
}

TEST_F(InputSelection, AFileCanBeDroppedOnceTheRunHasEnded) {
  reachResultPage();
  EXPECT_TRUE(app.controller->chooseFile("/films/other.avi"));
}

const Lines kNoFilm = {
    "alert(\"This cannot be chosen\", \"Only films whose names end in .avi, .divx or .xvid can be repaired here. "
    "Nothing "
    "was changed in your file.\", \"OK\", nothing, nothing)"};
const Lines kNoSuchFilm = {
    "alert(\"This cannot be chosen\", \"There is no such film. It may have been moved, renamed or removed.\", \"OK\", "
    "nothing, nothing)"};

TEST_F(InputSelection, AnOfferedFilmIsChosenWithoutAWord) {
  app.start();
  app.files.put(kInput, platform::Bytes(1234));

  app.controller->offerFile(kInput);

  EXPECT_EQ(engine::path.get(), kInput);
  EXPECT_EQ(engine::inputfilesize, 1234U);
  EXPECT_EQ(app.takeEvents(), (Lines{"controller.textfield.setStringValue(/films/broken.avi)",
                                     "pathfield.setStringValue(/films/broken.avi)"}));
}

TEST_F(InputSelection, AnOfferedFileOfAnotherKindIsRefusedInWords) {
  app.start();
  app.files.put("/films/film.mov", platform::Bytes(10));

  app.controller->offerFile("/films/film.mov");

  EXPECT_EQ(engine::path.get(), std::nullopt);
  EXPECT_EQ(app.takeEvents(), kNoFilm);
}

TEST_F(InputSelection, AnOfferedFileThatIsNotThereIsRefusedInWords) {
  app.start();

  app.controller->offerFile("/films/gone.avi");

  EXPECT_EQ(engine::path.get(), std::nullopt);
  EXPECT_EQ(app.takeEvents(), kNoSuchFilm);
}

TEST_F(InputSelection, AnOfferedFolderIsNoFilmWhateverItsName) {
  app.start();
  ASSERT_FALSE(app.fileManager.createFolder("/films/folder.avi"));
  static_cast<void>(app.takeEvents());

  app.controller->offerFile("/films/folder.avi");

  EXPECT_EQ(engine::path.get(), std::nullopt);
  EXPECT_EQ(app.takeEvents(), kNoSuchFilm);
}

TEST_F(InputSelection, AnOfferedLinkIsJudgedByWhatItLeadsTo) {
  app.start();
  app.files.put("/films/target", platform::Bytes(5000));
  app.fileManager.links["/films/link.avi"] = "/films/target";
  app.fileManager.links["/films/loose.avi"] = "/films/nowhere";

  app.controller->offerFile("/films/loose.avi");
  EXPECT_EQ(app.takeEvents({"alert("}), kNoSuchFilm);
  app.controller->offerFile("/films/link.avi");

  EXPECT_EQ(engine::path.get(), "/films/link.avi");
  EXPECT_TRUE(app.alerts.shown().size() == 1);
}

TEST_F(InputSelection, ARefusedOfferKeepsTheEarlierChoice) {
  app.start();
  app.choose(platform::Bytes(99));
  app.files.put("/films/film.mov", platform::Bytes(10));

  app.controller->offerFile("/films/film.mov");

  EXPECT_EQ(engine::path.get(), kInput);
  EXPECT_EQ(engine::inputfilesize, 99U);
  EXPECT_EQ(app.screen.pathfield.stringValue(), kInput);
}

}  // namespace
}  // namespace zelvo::tests
