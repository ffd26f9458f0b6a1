#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <QTest>
#include <filesystem>

#include "platform/headless/path_probe.h"
#include "tests/platform/qt/panel_bench.h"

namespace zelvo::tests {
namespace {

using platform::kPanelCancelled;
using platform::kPanelOk;
using platform::OpenPanel;
using testing::ElementsAre;

class OpenPanelTest : public testing::Test {
 protected:
  OpenPanelTest() {
    videos = bench.home.make("Videos");
    put("Videos/b.avi");
    put("Videos/A.AVI");
    put("Videos/c.DivX");
    put("Videos/d.xvid");
    put("Videos/e.mov");
    put("Videos/.hidden.avi");
    bench.home.make("Videos/Holiday");
  }

  void put(const std::string& name) { bench.home.folder().put(name, "RIFF"); }

  /// As the window asks for a film.
  void begin() {
    panel = panelMaker->openPanel();
    panel->setAllowedFileTypes({"avi", "divx", "xvid"});
    panel->setTreatsFilePackagesAsDirectories(false);
    panel->setExtensionHidden(false);
    panel->setCanChooseDirectories(false);
    panel->setCanChooseFiles(true);
    panel->setAllowsMultipleSelection(false);
    show();
  }
  void show() {
    panel->beginSheetModalForWindow(bench.window, [this, shown = panel.get()](int answer) {
      answers.push_back(answer);
      chosen = shown->filename();
    });
  }
  /// Types a name in the place of what is there and presses Enter.
  void enter(const std::string& name) {
    bench.nameField().setFocus();
    bench.nameField().selectAll();
    bench.type(name);
    bench.press(Qt::Key_Return);
  }
  bool isShown() { return !bench.window.panels().isEmpty(); }

  PanelBench bench;
  platform::Panels* panelMaker = &bench.panels;
  std::string videos;
  std::shared_ptr<OpenPanel> panel;
  std::vector<int> answers;
  std::optional<std::string> chosen;
};

TEST_F(OpenPanelTest, ListsFoldersAndFilmsInAnyLetterCase) {
  begin();
  EXPECT_THAT(bench.listed(), ElementsAre("Holiday", "A.AVI", "b.avi", "c.DivX", "d.xvid"));
}

TEST_F(OpenPanelTest, NothingIsChosenBeforeTheAnswer) {
  begin();
  EXPECT_EQ(panel->filename(), std::nullopt);
}

TEST_F(OpenPanelTest, TypedNameIsChosenByEnter) {
  begin();
  EXPECT_EQ(bench.focus(), &bench.nameField());
  enter("b.avi");
  EXPECT_THAT(answers, ElementsAre(kPanelOk));
  EXPECT_EQ(chosen, videos + "/b.avi");
  EXPECT_FALSE(isShown());
}

TEST_F(OpenPanelTest, TypedPathIsChosen) {
  const std::string other = bench.home.make("Other");
  put("Other/film.AVI");
  begin();
  enter(other + "/film.AVI");
  EXPECT_EQ(chosen, other + "/film.AVI");
  begin();
  enter("~/Other/film.AVI");
  EXPECT_EQ(chosen, other + "/film.AVI");
  begin();
  enter("file://" + other + "/film.AVI");
  EXPECT_EQ(chosen, other + "/film.AVI");
  begin();
  enter("../Videos/b.avi");
  EXPECT_EQ(chosen, other + "/../Videos/b.avi");
}

TEST_F(OpenPanelTest, ClickedFilmIsChosenByTheButton) {
  begin();
  bench.select("c.DivX");
  EXPECT_EQ(bench.nameField().text(), QStringLiteral("c.DivX"));
  bench.click(bench.button("Open"));
  EXPECT_EQ(chosen, videos + "/c.DivX");
}

TEST_F(OpenPanelTest, DoubleClickChoosesAFilmAndEntersAFolder) {
  put("Videos/Holiday/beach.avi");
  begin();
  bench.open("Holiday");
  EXPECT_THAT(bench.listed(), ElementsAre("beach.avi"));
  EXPECT_TRUE(answers.empty());
  bench.open("beach.avi");
  EXPECT_THAT(answers, ElementsAre(kPanelOk));
  EXPECT_EQ(chosen, videos + "/Holiday/beach.avi");
}

TEST_F(OpenPanelTest, KeyboardAloneWalksAndChooses) {
  put("Videos/Holiday/beach.avi");
  begin();
  bench.listed();
  bench.press(Qt::Key_Tab, Qt::ShiftModifier);  // from the field to the list above it
  ASSERT_EQ(bench.focus(), &bench.chooser().browser().list());
  bench.press(Qt::Key_Home);
  bench.press(Qt::Key_Return);
  EXPECT_THAT(bench.listed(), ElementsAre("beach.avi"));
  bench.press(Qt::Key_Backspace);
  EXPECT_EQ(bench.chooser().browser().folder(), videos);
  bench.listed();
  bench.press(Qt::Key_Down);
  EXPECT_EQ(bench.nameField().text(), QStringLiteral("A.AVI"));
  bench.press(Qt::Key_Return);
  EXPECT_EQ(chosen, videos + "/A.AVI");
}

TEST_F(OpenPanelTest, TabReachesEveryPartAndComesBack) {
  begin();
  bench.listed();
  std::vector<QWidget*> way;
  for (int step = 0; step < 6; ++step) {
    bench.press(Qt::Key_Tab);
    way.push_back(bench.focus());
  }
  platform::qt::FolderBrowser& browser = bench.chooser().browser();
  const std::vector<QWidget*> expected = {&bench.button("Cancel"), &bench.button("Open"), &browser.upButton(),
                                          &browser.placeList(),    &browser.list(),       &bench.nameField()};
  EXPECT_EQ(way, expected);
}

TEST_F(OpenPanelTest, EscCancels) {
  begin();
  bench.press(Qt::Key_Escape);
  EXPECT_THAT(answers, ElementsAre(kPanelCancelled));
  EXPECT_EQ(chosen, std::nullopt);
  EXPECT_FALSE(isShown());
}

TEST_F(OpenPanelTest, CancelButtonCancels) {
  begin();
  bench.select("b.avi");
  bench.click(bench.button("Cancel"));
  EXPECT_THAT(answers, ElementsAre(kPanelCancelled));
  EXPECT_EQ(chosen, std::nullopt);
}

TEST_F(OpenPanelTest, OtherExtensionIsRefusedHoweverItWasTyped) {
  begin();
  enter("e.mov");
  EXPECT_TRUE(bench.says("Only files whose names end in .avi, .divx or .xvid can be chosen."));
  EXPECT_TRUE(isShown());
  enter(videos + "/e.mov");
  EXPECT_TRUE(isShown());
  EXPECT_TRUE(answers.empty());
}

TEST_F(OpenPanelTest, MissingFileIsSaid) {
  begin();
  enter("lost.avi");
  EXPECT_TRUE(bench.says("There is no file \u201clost.avi\u201d."));
  EXPECT_TRUE(answers.empty());
}

TEST_F(OpenPanelTest, SentenceGoesWithTheNextKey) {
  begin();
  enter("lost.avi");
  EXPECT_FALSE(bench.chooser().said().isEmpty());
  bench.type("x");
  EXPECT_TRUE(bench.chooser().said().isEmpty());
}

TEST_F(OpenPanelTest, TypedFolderIsEnteredAndNotChosen) {
  put("Videos/Holiday/beach.avi");
  begin();
  enter("Holiday");
  EXPECT_TRUE(bench.says("That is a folder. Now choose a file in it."));
  EXPECT_THAT(bench.listed(), ElementsAre("beach.avi"));
  EXPECT_TRUE(bench.nameField().text().isEmpty());
  EXPECT_TRUE(answers.empty());
}

TEST_F(OpenPanelTest, FolderWithAFilmsNameIsAFolder) {
  bench.home.make("Videos/scenes.avi");
  begin();
  enter("scenes.avi");
  EXPECT_TRUE(answers.empty());
  EXPECT_EQ(bench.chooser().browser().folder(), videos + "/scenes.avi");
}

TEST_F(OpenPanelTest, UnreadableFileIsSaid) {
  put("Videos/secret.avi");
  std::filesystem::permissions(videos + "/secret.avi", std::filesystem::perms::none);
  begin();
  const AsOrdinaryUser ordinary;
  enter("secret.avi");
  EXPECT_TRUE(bench.says("You may not read that file."));
  EXPECT_TRUE(answers.empty());
}

TEST_F(OpenPanelTest, WhatIsNoOrdinaryFileIsRefused) {
  ASSERT_EQ(::mkfifo((videos + "/pipe.avi").c_str(), 0666), 0);
  begin();
  enter("pipe.avi");
  EXPECT_TRUE(bench.says("That is not an ordinary file."));
  EXPECT_TRUE(answers.empty());
}

TEST_F(OpenPanelTest, NothingTypedIsSaid) {
  begin();
  bench.listed();
  bench.press(Qt::Key_Return);
  EXPECT_TRUE(bench.says("Choose a file in the list, or type its name."));
  EXPECT_TRUE(answers.empty());
}

TEST_F(OpenPanelTest, SelectedFolderIsEnteredByTheButton) {
  begin();
  bench.select("Holiday");
  EXPECT_TRUE(bench.nameField().text().isEmpty());
  bench.click(bench.button("Open"));
  EXPECT_EQ(bench.chooser().browser().folder(), videos + "/Holiday");
  EXPECT_TRUE(answers.empty());
}

TEST_F(OpenPanelTest, NameThatIsNoTextIsHandedOverByteForByte) {
  const std::string name = "caf\xe9.avi";
  put("Videos/" + name);
  begin();
  bench.select("caf\uFFFD.avi");
  bench.press(Qt::Key_Return);
  EXPECT_EQ(chosen, videos + "/" + name);
}

TEST_F(OpenPanelTest, LinkToAFilmCanBeChosen) {
  std::filesystem::create_symlink(videos + "/b.avi", videos + "/link.avi");
  std::filesystem::create_symlink(videos + "/gone.avi", videos + "/broken.avi");
  begin();
  EXPECT_THAT(bench.listed(), ElementsAre("Holiday", "A.AVI", "b.avi", "c.DivX", "d.xvid", "link.avi"));
  enter("link.avi");
  EXPECT_EQ(chosen, videos + "/link.avi");
}

TEST_F(OpenPanelTest, StartsWhereTheLastFilmWasChosen) {
  put("Videos/Holiday/beach.avi");
  begin();
  EXPECT_EQ(bench.chooser().browser().folder(), videos);
  enter(videos + "/Holiday/beach.avi");
  begin();
  EXPECT_EQ(bench.chooser().browser().folder(), videos + "/Holiday");
  bench.press(Qt::Key_Escape);
  std::filesystem::remove_all(videos + "/Holiday");
  begin();
  EXPECT_EQ(bench.chooser().browser().folder(), videos);
}

TEST_F(OpenPanelTest, StartsAtHomeWithoutAFolderForVideos) {
  std::filesystem::remove_all(videos);
  begin();
  EXPECT_EQ(bench.chooser().browser().folder(), bench.home.path());
}

TEST_F(OpenPanelTest, StaysAliveWhoeverLetsGoOfIt) {
  begin();
  const std::weak_ptr<OpenPanel> seen = panel;
  panel.reset();
  EXPECT_FALSE(seen.expired());
  enter("b.avi");
  EXPECT_EQ(chosen, videos + "/b.avi");
  bench.serve();
  EXPECT_TRUE(seen.expired());
}

TEST_F(OpenPanelTest, GoesWithItsMakerWhenTheProgramEnds) {
  auto maker = std::make_unique<platform::qt::QtPanels>(bench.window.panels(), bench.alerts, bench.files);
  panel = maker->openPanel();
  show();
  const std::weak_ptr<OpenPanel> seen = panel;
  panel.reset();
  maker.reset();
  EXPECT_TRUE(seen.expired());
  EXPECT_TRUE(answers.empty());
  EXPECT_FALSE(isShown());
}

TEST_F(OpenPanelTest, FilmThatDoesNotAnswerIsTakenWithoutALookAtIt) {
  platform::headless::HeadlessPathProbe probe;
  probe.dead = {"/gone"};
  platform::qt::QtPanels panels(bench.window.panels(), bench.alerts, bench.files, &probe);
  panelMaker = &panels;
  begin();
  enter("/gone/film.avi");
  EXPECT_EQ(chosen, "/gone/film.avi");  // nothing is there, so that a look would have refused it
  panel.reset();
}

TEST_F(OpenPanelTest, OtherFileThatDoesNotAnswerIsRefused) {
  platform::headless::HeadlessPathProbe probe;
  probe.dead = {"/gone"};
  platform::qt::QtPanels panels(bench.window.panels(), bench.alerts, bench.files, &probe);
  panelMaker = &panels;
  begin();
  enter("/gone/film.mov");
  EXPECT_TRUE(
      bench.says("The disk or server does not answer. Please try again when it is back, or choose another place."));
  EXPECT_TRUE(answers.empty());
  panel.reset();
}

TEST_F(OpenPanelTest, FolderThatDoesNotAnswerAnyMoreIsNotOpenedAgain) {
  platform::headless::HeadlessPathProbe probe;
  platform::qt::QtPanels panels(bench.window.panels(), bench.alerts, bench.files, &probe);
  const std::string old = bench.home.make("Old");
  panels.noteInput(old + "/film.avi");
  probe.dead = {old};
  panelMaker = &panels;
  begin();
  EXPECT_EQ(bench.chooser().browser().folder(), videos);
  panel.reset();
}

TEST_F(OpenPanelTest, UnusedPanelsCostNothingAndShowNothing) {
  const auto first = bench.panels.openPanel();
  EXPECT_EQ(first->filename(), std::nullopt);
  EXPECT_FALSE(isShown());
}

TEST_F(OpenPanelTest, FocusReturnsToWhereItWas) {
  QWidget* const before = bench.focus();
  begin();
  bench.press(Qt::Key_Escape);
  EXPECT_EQ(bench.focus(), before);
}

TEST_F(OpenPanelTest, NothingBelowTakesInputMeanwhile) {
  int pressed = 0;
  bench.window.choosePage().browsebutton->setAction([&](platform::Button&) { ++pressed; });
  begin();
  bench.press(Qt::Key_O, Qt::ControlModifier);
  QTest::mouseClick(bench.window.windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(4, 4));
  bench.window.close();
  EXPECT_TRUE(bench.window.isVisible());
  EXPECT_EQ(pressed, 0);
  EXPECT_EQ(bench.focus(), &bench.nameField());
}

TEST_F(OpenPanelTest, EndOfTheProgramEndsTheLoopOverIt) {
  bench.later([&] {
    begin();
    bench.later([&] { bench.application.terminate(); });
  });
  EXPECT_EQ(bench.application.run(), 0);
  EXPECT_TRUE(answers.empty());
}

TEST_F(OpenPanelTest, IsNeverLargerThanTheWindow) {
  bench.window.resize(bench.window.minimumSize());
  bench.serve();
  begin();
  EXPECT_TRUE(bench.window.rect().contains(bench.top()->geometry()));
  bench.window.resize(1400, 1000);
  bench.serve();
  EXPECT_TRUE(bench.window.rect().contains(bench.top()->geometry()));
  EXPECT_LE(bench.top()->width(), 900);
}

TEST_F(OpenPanelTest, PromptIsTheAcceptingButton) {
  panel = bench.panels.openPanel();
  panel->setPrompt("Take this one");
  show();
  EXPECT_THAT(bench.buttonTitles(), ElementsAre("Cancel", "Take this one"));
}

TEST_F(OpenPanelTest, ChoosesFoldersOnly) {
  panel = bench.panels.openPanel();
  panel->setCanChooseFiles(false);
  panel->setCanChooseDirectories(true);
  panel->setPrompt("Save");
  show();
  EXPECT_THAT(bench.listed(), ElementsAre("Holiday"));
  enter("b.avi");
  EXPECT_TRUE(bench.says("\u201cb.avi\u201d is not a folder."));
  bench.select("Holiday");
  bench.click(bench.button("Save"));
  EXPECT_EQ(chosen, videos + "/Holiday");
}

TEST_F(OpenPanelTest, FolderThatIsShownIsChosenWhenNothingIsTyped) {
  panel = bench.panels.openPanel();
  panel->setCanChooseFiles(false);
  panel->setCanChooseDirectories(true);
  show();
  bench.listed();
  bench.press(Qt::Key_Return);
  EXPECT_EQ(chosen, videos);
}

TEST_F(OpenPanelTest, NewFolderIsOfferedOnlyWhereItMayBeMade) {
  begin();
  EXPECT_FALSE(bench.chooser().browser().newFolderButton().isVisible());
  bench.press(Qt::Key_Escape);
  panel = bench.panels.openPanel();
  panel->setCanCreateDirectories(true);
  show();
  EXPECT_TRUE(bench.chooser().browser().newFolderButton().isVisible());
}

TEST_F(OpenPanelTest, UpButtonLeadsToTheRootAndNoFurther) {
  begin();
  int steps = 0;
  while (bench.chooser().browser().upButton().isEnabled() && steps < 30) {
    bench.click(bench.chooser().browser().upButton());
    ++steps;
  }
  EXPECT_EQ(bench.chooser().browser().folder(), "/");
}

TEST_F(OpenPanelTest, ComingUpSelectsTheFolderThatWasLeft) {
  begin();
  bench.open("Holiday");
  bench.listed();
  bench.click(bench.chooser().browser().upButton());
  bench.listed();
  ASSERT_NE(bench.chooser().browser().selected(), nullptr);
  EXPECT_EQ(bench.chooser().browser().selected()->name, "Holiday");
}

TEST_F(OpenPanelTest, PlaceLeadsThere) {
  begin();
  QListWidget& places = bench.chooser().browser().placeList();
  EXPECT_EQ(places.currentItem()->text(), QStringLiteral("Videos"));
  const QPoint home = places.visualItemRect(places.item(0)).center();
  QTest::mouseClick(bench.window.windowHandle(), Qt::LeftButton, Qt::NoModifier,
                    places.viewport()->mapTo(&bench.window, home));
  EXPECT_EQ(bench.chooser().browser().folder(), bench.home.path());
}

}  // namespace
}  // namespace zelvo::tests
