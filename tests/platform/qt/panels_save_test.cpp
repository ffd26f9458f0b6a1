#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "platform/headless/path_probe.h"
#include "tests/platform/qt/panel_bench.h"

namespace zelvo::tests {
namespace {

using platform::kPanelCancelled;
using platform::kPanelOk;
using platform::NameVerdict;
using platform::SavePanel;
using testing::ElementsAre;

class SavePanelTest : public testing::Test {
 protected:
  SavePanelTest() { videos = bench.home.make("Videos"); }

  /// As the window asks where to save.
  void begin(const std::optional<std::string>& directory = std::nullopt) {
    panel = panelMaker->savePanel();
    panel->setPrompt("Save");
    panel->setCanCreateDirectories(true);
    panel->setSavedFile(savedFile);
    panel->setNameJudge([this](const std::string& path) {
      judged.push_back(path);
      return verdict;
    });
    panel->beginSheet(directory, "Repaired", bench.window, [this, shown = panel.get()](int answer) {
      answers.push_back(answer);
      chosen = shown->filename();
      shown->endSheet();
      shown->orderOut();
    });
  }
  void enter(const std::string& name) {
    bench.nameField().setFocus();
    bench.nameField().selectAll();
    if (name.empty()) bench.press(Qt::Key_Delete);
    bench.type(name);
    bench.press(Qt::Key_Return);
  }
  bool isShown() { return !bench.window.panels().isEmpty(); }
  /// The name is refused with this sentence.
  void expectRefused(const std::string& name, const std::string& sentence) {
    enter(name);
    EXPECT_TRUE(isShown()) << name;
    EXPECT_TRUE(bench.says(sentence)) << name << ": " << bench.chooser().said().toStdString();
  }

  PanelBench bench;
  platform::Panels* panelMaker = &bench.panels;
  std::string videos;
  std::shared_ptr<SavePanel> panel;
  std::vector<int> answers;
  std::vector<std::string> judged;
  NameVerdict verdict;
  std::string savedFile;
  std::optional<std::string> chosen;
};

TEST_F(SavePanelTest, ProposedNameIsTakenByEnter) {
  begin();
  EXPECT_EQ(bench.focus(), &bench.nameField());
  bench.press(Qt::Key_Return);
  EXPECT_THAT(answers, ElementsAre(kPanelOk));
  EXPECT_EQ(chosen, videos + "/Repaired");
  EXPECT_FALSE(isShown());
}

TEST_F(SavePanelTest, NothingIsMadeByTheChoiceItself) {
  begin();
  bench.press(Qt::Key_Return);
  EXPECT_FALSE(std::filesystem::exists(videos + "/Repaired"));
}

TEST_F(SavePanelTest, TypingReplacesTheProposedName) {
  begin();
  bench.type("Film 1");
  EXPECT_EQ(bench.nameField().text(), QStringLiteral("Film 1"));
  bench.click(bench.button("Save"));
  EXPECT_EQ(chosen, videos + "/Film 1");
}

TEST_F(SavePanelTest, ExistingFolderOfTheNameIsAnAnswerAndNotEntered) {
  bench.home.make("Videos/Repaired");
  begin();
  bench.listed();
  bench.press(Qt::Key_Return);
  EXPECT_THAT(answers, ElementsAre(kPanelOk));
  EXPECT_EQ(chosen, videos + "/Repaired");
}

TEST_F(SavePanelTest, ListShowsFoldersOnlyAndLeavesTheNameAlone) {
  bench.home.make("Videos/Holiday");
  bench.home.folder().put("Videos/film.avi", "RIFF");
  begin();
  EXPECT_THAT(bench.listed(), ElementsAre("Holiday"));
  bench.select("Holiday");
  EXPECT_EQ(bench.nameField().text(), QStringLiteral("Repaired"));
  bench.open("Holiday");
  EXPECT_EQ(bench.nameField().text(), QStringLiteral("Repaired"));
  bench.click(bench.button("Save"));
  EXPECT_EQ(chosen, videos + "/Holiday/Repaired");
}

TEST_F(SavePanelTest, SaysWhereItSaves) {
  bench.home.make("Videos/Holiday");
  begin();
  EXPECT_TRUE(bench.says("Saves to  " + videos + "/Repaired"));
  bench.open("Holiday");
  EXPECT_TRUE(bench.says("Saves to  " + videos + "/Holiday/Repaired"));
}

TEST_F(SavePanelTest, SaysTheFileThatComesToLieInTheFolder) {
  savedFile = "/repaired.avi";
  begin();
  EXPECT_TRUE(bench.says("Saves to  " + videos + "/Repaired/repaired.avi"));
}

TEST_F(SavePanelTest, StartsInTheFolderOfTheInput) {
  const std::string card = bench.home.make("card");
  bench.panels.noteInput(card + "/MVI_0001.AVI");
  begin();
  EXPECT_EQ(bench.chooser().browser().folder(), card);
}

TEST_F(SavePanelTest, InputThatWasNamedFromTheWorkingFolderHasAFolder) {
  bench.panels.noteInput("film.avi");
  begin();
  EXPECT_EQ(bench.chooser().browser().folder(), std::filesystem::current_path().string());
}

TEST_F(SavePanelTest, StartsInTheFolderOfTheFilmThatTheOpenPanelChose) {
  const std::string card = bench.home.make("card");
  bench.home.folder().put("card/film.avi", "RIFF");
  const auto open = bench.panels.openPanel();
  open->beginSheetModalForWindow(bench.window, [](int) {});
  enter(card + "/film.avi");
  begin();
  EXPECT_EQ(bench.chooser().browser().folder(), card);
}

TEST_F(SavePanelTest, StartsInTheFolderThatItIsTold) {
  const std::string told = bench.home.make("told");
  begin(told);
  EXPECT_EQ(bench.chooser().browser().folder(), told);
}

TEST_F(SavePanelTest, StartsInVideosWhereThereIsNoSuchFolder) {
  begin(bench.home.path("gone"));
  EXPECT_EQ(bench.chooser().browser().folder(), videos);
}

TEST_F(SavePanelTest, EscCancels) {
  begin();
  bench.press(Qt::Key_Escape);
  EXPECT_THAT(answers, ElementsAre(kPanelCancelled));
  EXPECT_EQ(chosen, std::nullopt);
}

TEST_F(SavePanelTest, PlaceThatDoesNotAnswerIsTakenWithoutALookAtIt) {
  platform::headless::HeadlessPathProbe probe;
  platform::qt::QtPanels panels(bench.window.panels(), bench.alerts, bench.files, &probe);
  panelMaker = &panels;
  begin();
  probe.dead = {"/gone"};
  enter("/gone/Repaired");
  EXPECT_THAT(answers, ElementsAre(kPanelOk));  // there is no such folder, which a look would have told
  EXPECT_EQ(chosen, "/gone/Repaired");
  EXPECT_TRUE(judged.empty());
  panel.reset();
}

TEST_F(SavePanelTest, FolderThatDoesNotAnswerIsNotStartedIn) {
  platform::headless::HeadlessPathProbe probe;
  platform::qt::QtPanels panels(bench.window.panels(), bench.alerts, bench.files, &probe);
  panelMaker = &panels;
  const std::string old = bench.home.make("Old");
  probe.dead = {old};
  begin(old);
  EXPECT_EQ(bench.chooser().browser().folder(), videos);
  panel.reset();
}

TEST_F(SavePanelTest, JudgeIsAskedForTheWholePath) {
  begin();
  enter("My film");
  EXPECT_THAT(judged, ElementsAre(videos + "/My film"));
}

TEST_F(SavePanelTest, RefusedNameIsToldWhyAndThePanelStays) {
  verdict = {NameVerdict::Kind::refused, "That would overwrite the damaged file itself."};
  begin();
  bench.press(Qt::Key_Return);
  EXPECT_TRUE(isShown());
  EXPECT_TRUE(bench.says("That would overwrite the damaged file itself."));
  EXPECT_TRUE(answers.empty());
  verdict = {};
  enter("Other");
  EXPECT_EQ(chosen, videos + "/Other");
}

TEST_F(SavePanelTest, UserAgreesToReplace) {
  verdict = {NameVerdict::Kind::ask, "Replace the film that is there?"};
  begin();
  bench.later([&] {
    EXPECT_TRUE(bench.says("Replace the film that is there?"));
    bench.click(bench.button("Replace"));
  });
  bench.press(Qt::Key_Return);
  EXPECT_THAT(answers, ElementsAre(kPanelOk));
  EXPECT_EQ(chosen, videos + "/Repaired");
}

TEST_F(SavePanelTest, EscAndEnterDoNotReplace) {
  verdict = {NameVerdict::Kind::ask, "Replace the film that is there?"};
  begin();
  for (const auto key : {Qt::Key_Escape, Qt::Key_Return}) {
    bench.later([&] { bench.press(key); });
    bench.press(Qt::Key_Return);
    EXPECT_TRUE(isShown());
    EXPECT_TRUE(answers.empty());
    EXPECT_EQ(bench.focus(), &bench.nameField());
  }
}

TEST_F(SavePanelTest, PanelThatIsTakenAwayDuringTheQuestionIsCancelledOnce) {
  verdict = {NameVerdict::Kind::ask, "Replace the film that is there?"};
  begin();
  bench.later([&] {
    panel->orderOut();
    panel.reset();
    bench.click(bench.button("Replace"));
  });
  bench.press(Qt::Key_Return);
  EXPECT_THAT(answers, ElementsAre(kPanelCancelled));
}

TEST_F(SavePanelTest, EndOfTheProgramDuringTheQuestionReplacesNothing) {
  verdict = {NameVerdict::Kind::ask, "Replace the film that is there?"};
  bench.later([&] {
    begin();
    bench.later([&] { bench.application.terminate(); });
    bench.press(Qt::Key_Return);
  });
  EXPECT_EQ(bench.application.run(), 0);
  EXPECT_TRUE(answers.empty());
}

TEST_F(SavePanelTest, EndingOrHidingAPanelThatIsShownCancelsIt) {
  begin();
  panel->endSheet();
  EXPECT_THAT(answers, ElementsAre(kPanelCancelled));
  EXPECT_FALSE(isShown());
  panel->endSheet();
  panel->orderOut();
  EXPECT_EQ(answers.size(), 1U);
}

TEST_F(SavePanelTest, NamesThatAreNoneAreRefused) {
  begin();
  for (const char* const none : {"", "/", "//", ".", "..", "Films/.."}) expectRefused(none, "Please type a name.");
  EXPECT_TRUE(judged.empty());
}

TEST_F(SavePanelTest, SlashesAtTheEndAreNotPartOfTheName) {
  begin();
  enter("Repaired//");
  EXPECT_EQ(chosen, videos + "/Repaired");
}

TEST_F(SavePanelTest, TypedPathIsTaken) {
  const std::string other = bench.home.make("Other");
  begin();
  enter(other + "/Mine");
  EXPECT_EQ(chosen, other + "/Mine");
  begin();
  enter("../Other/Mine");
  EXPECT_EQ(chosen, videos + "/../Other/Mine");
  begin();
  enter("~/Mine");
  EXPECT_EQ(chosen, bench.home.path("Mine"));
}

TEST_F(SavePanelTest, FolderAboveMustExist) {
  bench.home.folder().put("Videos/film.avi", "RIFF");
  begin();
  expectRefused("gone/Mine", "There is no folder");
  expectRefused("film.avi/Mine", "is not a folder.");
}

TEST_F(SavePanelTest, NameTooLongForADiskIsRefused) {
  begin();
  expectRefused(std::string(256, 'n'), "That name is too long.");
}

TEST_F(SavePanelTest, FolderThatCannotBeWrittenIsSaid) {
  bench.home.make("Videos/Mine");
  std::filesystem::permissions(bench.home.path(), std::filesystem::perms(0755));
  std::filesystem::permissions(videos + "/Mine", std::filesystem::perms(0555));  // whoever owns it
  std::filesystem::permissions(videos, std::filesystem::perms(0555));
  begin();
  const AsOrdinaryUser ordinary;
  expectRefused("Repaired", "You may not save in");
  expectRefused("Mine", "You may not save in");
  EXPECT_TRUE(judged.empty());
}

TEST_F(SavePanelTest, NewFolderIsMadeAndEntered) {
  begin();
  bench.click(bench.chooser().browser().newFolderButton());
  bench.type("Films of 2019");
  bench.press(Qt::Key_Return);
  EXPECT_TRUE(std::filesystem::is_directory(videos + "/Films of 2019"));
  EXPECT_EQ(bench.chooser().browser().folder(), videos + "/Films of 2019");
  EXPECT_EQ(bench.nameField().text(), QStringLiteral("Repaired"));
  EXPECT_EQ(bench.focus(), &bench.nameField());
  bench.press(Qt::Key_Return);
  EXPECT_EQ(chosen, videos + "/Films of 2019/Repaired");
}

TEST_F(SavePanelTest, NewFolderThatCannotBeIsSaid) {
  bench.home.make("Videos/taken");
  begin();
  bench.click(bench.chooser().browser().newFolderButton());
  bench.press(Qt::Key_Return);
  EXPECT_TRUE(bench.says("Please type a name."));
  bench.type("taken");
  bench.press(Qt::Key_Return);
  EXPECT_TRUE(bench.says("That name is taken already."));
  bench.type("/x");
  bench.press(Qt::Key_Return);
  EXPECT_TRUE(bench.says("A name cannot hold a slash (/)."));
  bench.press(Qt::Key_Escape);
  EXPECT_EQ(bench.chooser().browser().folder(), videos);
  EXPECT_TRUE(answers.empty());
}

TEST_F(SavePanelTest, NewFolderQuestionGoesWithThePanel) {
  begin();
  bench.click(bench.chooser().browser().newFolderButton());
  panel->orderOut();
  EXPECT_FALSE(isShown());
  EXPECT_THAT(answers, ElementsAre(kPanelCancelled));
}

TEST_F(SavePanelTest, EnterInTheListEntersAFolder) {
  bench.home.make("Videos/Holiday");
  begin();
  bench.listed();
  bench.press(Qt::Key_Tab, Qt::ShiftModifier);
  bench.press(Qt::Key_Return);
  EXPECT_EQ(bench.chooser().browser().folder(), videos + "/Holiday");
  EXPECT_TRUE(answers.empty());
}

TEST_F(SavePanelTest, CompletionMayLetGoOfThePanel) {
  panel = bench.panels.savePanel();
  panel->beginSheet(std::nullopt, "Repaired", bench.window, [this](int answer) {
    answers.push_back(answer);
    panel.reset();
  });
  bench.click(bench.button("Save"));
  bench.serve();
  EXPECT_THAT(answers, ElementsAre(kPanelOk));
  EXPECT_FALSE(isShown());
}

}  // namespace
}  // namespace zelvo::tests
