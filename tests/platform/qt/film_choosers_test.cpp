#include "platform/qt/chooser/film_choosers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QTest>
#include <filesystem>

#include "platform/headless/path_probe.h"
#include "tests/platform/qt/panel_bench.h"

namespace zelvo::tests {
namespace {

using platform::ChooserRequest;
using platform::NewFileAnswer;
using platform::qt::QtFilmChoosers;
using testing::ElementsAre;
using testing::IsEmpty;
using Paths = std::vector<std::string>;

class FilmChoosersTest : public testing::Test {
 protected:
  FilmChoosersTest() {
    videos = bench.home.make("Videos");
    for (const char* name : {"Videos/a.avi", "Videos/b.AVI", "Videos/c.bak", "Videos/d.avi"}) put(name);
    bench.home.make("Videos/Holiday");
    put("Videos/Holiday/e.avi");
  }
  void put(const std::string& name) { bench.home.folder().put(name, "RIFF"); }

  [[nodiscard]] ChooserRequest request(const std::string& title) const {
    return {.title = title, .prompt = "Take", .folder = videos};
  }
  void askForFilms() {
    choosers.chooseFilms(request("Which films?"), [this](Paths paths) {
      ++answers;
      films = std::move(paths);
    });
  }
  void askForFilm() {
    choosers.chooseFilm(request("Which film?"), [this](std::optional<std::string> path) {
      ++answers;
      one = std::move(path);
    });
  }
  void askForFolder() {
    choosers.chooseFolder(request("Which folder?"), [this](std::optional<std::string> path) {
      ++answers;
      one = std::move(path);
    });
  }
  void askForNewFile(const std::string& name = "a-salvaged.avi") {
    choosers.chooseNewFile({.chooser = request("Save where?"),
                            .name = name,
                            .tickBox = "Save the report beside it",
                            .isTicked = true,
                            .refusal = [this](const std::string& path) { return path == refused ? "Not there." : ""; }},
                           [this](std::optional<NewFileAnswer> answer) {
                             ++answers;
                             file = std::move(answer);
                           });
  }
  void enter(const std::string& name) {
    bench.nameField().setFocus();
    bench.nameField().selectAll();
    bench.type(name);
    bench.press(Qt::Key_Return);
  }
  void selectToo(const std::string& name) {
    QTest::mouseClick(bench.chooser().browser().list().viewport(), Qt::LeftButton, Qt::ControlModifier,
                      bench.placeOf(name).center());
    bench.serve();
  }
  [[nodiscard]] std::string in(const std::string& name) const { return videos + "/" + name; }
  [[nodiscard]] QCheckBox& box() { return *bench.chooser().tickBox(); }

  PanelBench bench;
  std::string videos;
  QtFilmChoosers choosers{bench.window.panels(), bench.alerts, bench.files};
  int answers = 0;
  Paths films;
  std::optional<std::string> one;
  std::optional<NewFileAnswer> file;
  std::string refused;
};

// ---- Several films ----

TEST_F(FilmChoosersTest, FilmsOfAnyNameAreListed) {
  askForFilms();
  EXPECT_THAT(bench.listed(), ElementsAre("Holiday", "a.avi", "b.AVI", "c.bak", "d.avi"));
  EXPECT_EQ(bench.top()->title().toStdString(), "Which films?");
  EXPECT_THAT(bench.buttonTitles(), ElementsAre("Cancel", "Take"));
  EXPECT_EQ(answers, 0);
}

TEST_F(FilmChoosersTest, SeveralAreTakenInTheListsOrderByTheMouse) {
  askForFilms();
  bench.listed();
  bench.select("d.avi");
  selectToo("a.avi");
  selectToo("c.bak");
  EXPECT_EQ(bench.nameField().placeholderText().toStdString(), "3 films chosen");
  EXPECT_TRUE(bench.nameField().text().isEmpty());
  bench.click(bench.button("Take"));
  EXPECT_THAT(films, ElementsAre(in("a.avi"), in("c.bak"), in("d.avi")));
  EXPECT_EQ(answers, 1);
  EXPECT_EQ(bench.top(), nullptr);
}

TEST_F(FilmChoosersTest, SeveralAreTakenByTheKeyboard) {
  askForFilms();
  bench.listed();
  bench.chooser().browser().list().setFocus(Qt::TabFocusReason);
  bench.press(Qt::Key_Down);
  bench.press(Qt::Key_Down, Qt::ShiftModifier);
  bench.press(Qt::Key_Return);
  EXPECT_THAT(films, ElementsAre(in("a.avi"), in("b.AVI")));
}

TEST_F(FilmChoosersTest, FoldersAmongSeveralAreLeftOut) {
  askForFilms();
  bench.listed();
  bench.select("Holiday");
  selectToo("b.AVI");
  selectToo("d.avi");
  bench.click(bench.button("Take"));
  EXPECT_THAT(films, ElementsAre(in("b.AVI"), in("d.avi")));
}

TEST_F(FilmChoosersTest, OneOfThemIsTakenByItsNameOrByADoubleClick) {
  askForFilms();
  bench.listed();
  bench.select("b.AVI");
  EXPECT_EQ(bench.nameField().text().toStdString(), "b.AVI");
  bench.press(Qt::Key_Return);
  EXPECT_THAT(films, ElementsAre(in("b.AVI")));
  askForFilms();
  bench.listed();
  bench.open("d.avi");
  EXPECT_THAT(films, ElementsAre(in("d.avi")));
  EXPECT_EQ(answers, 2);
}

TEST_F(FilmChoosersTest, FolderIsEnteredAndForgetsWhatWasSelected) {
  askForFilms();
  bench.listed();
  bench.select("a.avi");
  selectToo("b.AVI");
  bench.open("Holiday");
  EXPECT_THAT(bench.listed(), ElementsAre("e.avi"));
  EXPECT_TRUE(bench.nameField().placeholderText().isEmpty());
  bench.click(bench.button("Take"));
  EXPECT_TRUE(bench.says("Choose a file in the list"));
  EXPECT_EQ(answers, 0);
}

TEST_F(FilmChoosersTest, CancelledIsNone) {
  askForFilms();
  bench.press(Qt::Key_Escape);
  EXPECT_EQ(answers, 1);
  EXPECT_THAT(films, IsEmpty());
}

TEST_F(FilmChoosersTest, WhatIsGoneIsSaidAndNothingTaken) {
  askForFilms();
  bench.listed();
  bench.select("a.avi");
  selectToo("b.AVI");
  std::filesystem::remove(in("b.AVI"));
  bench.click(bench.button("Take"));
  EXPECT_TRUE(bench.says("There is no file"));
  EXPECT_EQ(answers, 0);
}

TEST_F(FilmChoosersTest, OpensWhereTheLastChoiceWasWithoutAFolder) {
  askForFilm();
  bench.listed();
  enter("Holiday/e.avi");
  EXPECT_EQ(one, in("Holiday/e.avi"));
  choosers.chooseFilms({.title = "Which films?", .prompt = "Take", .folder = {}}, [](const Paths&) {});
  EXPECT_THAT(bench.listed(), ElementsAre("e.avi"));
  bench.press(Qt::Key_Escape);
  choosers.chooseFilms({.title = "Which films?", .prompt = "Take", .folder = videos + "/gone"}, [](const Paths&) {});
  EXPECT_THAT(bench.listed(), ElementsAre("e.avi")) << "where the folder that is asked for is gone, too";
}

// ---- One film, a folder ----

TEST_F(FilmChoosersTest, OneFilmIsTaken) {
  askForFilm();
  bench.listed();
  bench.select("a.avi");
  selectToo("b.AVI");
  bench.click(bench.button("Take"));
  EXPECT_EQ(one, in("b.AVI")) << "one at a time";
}

TEST_F(FilmChoosersTest, CancelledFilmAndFolderAreNothing) {
  one = "before";
  askForFilm();
  bench.press(Qt::Key_Escape);
  EXPECT_EQ(one, std::nullopt);
  one = "before";
  askForFolder();
  bench.press(Qt::Key_Escape);
  EXPECT_EQ(one, std::nullopt);
  EXPECT_EQ(answers, 2);
}

TEST_F(FilmChoosersTest, FolderIsTheOneThatIsShownOrTheSelectedOne) {
  askForFolder();
  EXPECT_THAT(bench.listed(), ElementsAre("Holiday"));
  bench.click(bench.button("Take"));
  EXPECT_EQ(one, videos);
  askForFolder();
  bench.listed();
  bench.select("Holiday");
  bench.click(bench.button("Take"));
  EXPECT_EQ(one, in("Holiday"));
}

TEST_F(FilmChoosersTest, WhatIsNoFolderIsSaid) {
  askForFolder();
  bench.listed();
  enter("a.avi");
  EXPECT_TRUE(bench.says("is not a folder"));
  enter("none");
  EXPECT_TRUE(bench.says("There is no folder"));
  EXPECT_EQ(answers, 0);
}

// ---- A new file ----

TEST_F(FilmChoosersTest, ProposedNameIsTakenWithItsBox) {
  askForNewFile();
  bench.listed();
  EXPECT_EQ(bench.nameField().text().toStdString(), "a-salvaged.avi");
  EXPECT_EQ(bench.nameField().selectedText().toStdString(), "a-salvaged");
  EXPECT_TRUE(bench.says("Saves to  " + in("a-salvaged.avi")));
  bench.press(Qt::Key_Return);
  ASSERT_TRUE(file);
  EXPECT_EQ(file->path, in("a-salvaged.avi"));
  EXPECT_TRUE(file->isTicked);
}

TEST_F(FilmChoosersTest, BoxIsUntickedByMouseOrKeyboard) {
  askForNewFile();
  bench.click(box());
  EXPECT_FALSE(box().isChecked());
  box().setFocus(Qt::TabFocusReason);
  bench.press(Qt::Key_Space);
  EXPECT_TRUE(box().isChecked());
  bench.press(Qt::Key_Space);
  bench.click(bench.button("Take"));
  ASSERT_TRUE(file);
  EXPECT_FALSE(file->isTicked);
}

TEST_F(FilmChoosersTest, FileThatIsThereIsReplacedOnlyWhenThatIsWanted) {
  askForNewFile();
  bench.listed();
  const auto answering = [this](Qt::Key key) {
    bench.later([this, key] {
      EXPECT_TRUE(bench.says("There is a file"));
      bench.press(key);
    });
    enter("d.avi");
  };
  answering(Qt::Key_Escape);
  EXPECT_EQ(answers, 0);
  EXPECT_NE(bench.top(), nullptr) << "another name can be chosen";
  bench.later([this] { bench.click(bench.button("Replace")); });
  enter("d.avi");
  ASSERT_TRUE(file);
  EXPECT_EQ(file->path, in("d.avi"));
}

TEST_F(FilmChoosersTest, RefusedPathIsSaidAndNotAskedAbout) {
  refused = in("a.avi");
  askForNewFile();
  bench.listed();
  enter("a.avi");
  EXPECT_TRUE(bench.says("Not there."));
  EXPECT_EQ(answers, 0);
  enter("other.avi");
  EXPECT_EQ(answers, 1);
}

TEST_F(FilmChoosersTest, FolderIsEnteredRatherThanTaken) {
  askForNewFile();
  bench.listed();
  enter("Holiday");
  EXPECT_TRUE(bench.says("Now type a name"));
  EXPECT_THAT(bench.listed(), ElementsAre("e.avi"));
  enter("f.avi");
  ASSERT_TRUE(file);
  EXPECT_EQ(file->path, in("Holiday/f.avi"));
}

TEST_F(FilmChoosersTest, NamesThatCannotBeAreSaid) {
  askForNewFile();
  bench.listed();
  enter("none/f.avi");
  EXPECT_TRUE(bench.says("There is no folder"));
  enter("a.avi/f.avi");
  EXPECT_TRUE(bench.says("is not a folder"));
  enter(std::string(300, 'x'));
  EXPECT_TRUE(bench.says("too long"));
  bench.nameField().clear();
  bench.press(Qt::Key_Return);
  EXPECT_TRUE(bench.says("Please type a name."));
  EXPECT_EQ(answers, 0);
}

TEST_F(FilmChoosersTest, FolderThatMayNotBeWrittenIsSaid) {
  std::filesystem::permissions(in("Holiday"), std::filesystem::perms(0555));
  askForNewFile();
  bench.listed();
  const AsOrdinaryUser ordinary;
  enter("Holiday/f.avi");
  EXPECT_TRUE(bench.says("You may not save in"));
  EXPECT_EQ(answers, 0);
}

TEST_F(FilmChoosersTest, CancelledNewFileIsNothing) {
  askForNewFile();
  bench.press(Qt::Key_Escape);
  EXPECT_EQ(answers, 1);
  EXPECT_FALSE(file);
}

TEST_F(FilmChoosersTest, PathThatDoesNotAnswerIsNotLookedAt) {
  platform::headless::HeadlessPathProbe probe;
  probe.dead = {videos + "/far"};
  QtFilmChoosers careful(bench.window.panels(), bench.alerts, bench.files, &probe);
  careful.chooseFilm(request("Which film?"), [this](std::optional<std::string> path) { one = std::move(path); });
  bench.listed();
  enter("far/f.avi");
  EXPECT_EQ(one, in("far/f.avi"));
  careful.chooseNewFile({.chooser = request("Save where?"), .name = "x.avi", .tickBox = {}, .refusal = {}},
                        [this](std::optional<NewFileAnswer> answer) { file = std::move(answer); });
  bench.listed();
  enter("far/f.avi");
  EXPECT_TRUE(bench.says("does not answer"));
  EXPECT_FALSE(file);
}

// A screen reader may hold on to what it found a moment ago.
TEST_F(FilmChoosersTest, WhatHasEndedAnswersToNothing) {
  askForNewFile();
  bench.listed();
  platform::qt::QtButton& take = bench.button("Take");
  platform::qt::QtButton& cancel = bench.button("Cancel");
  QLineEdit& name = bench.nameField();
  platform::qt::FolderBrowser& browser = bench.chooser().browser();
  take.click();
  ASSERT_EQ(answers, 1);
  take.click();
  cancel.click();
  name.setText(QStringLiteral("other.avi"));
  browser.enter(in("Holiday"));
  bench.serveUntil([&] { return browser.isRead(); });
  EXPECT_EQ(answers, 1);
  ASSERT_TRUE(file);
  EXPECT_EQ(file->path, in("a-salvaged.avi"));
}

// The events that delete it come only after what its answer asks.
TEST_F(FilmChoosersTest, WhatHasEndedAnswersToNothingWhileItsAnswerAsks) {
  int inside = 0;
  choosers.chooseFilms(request("Which films?"), [&](const Paths&) {
    ++answers;
    bench.later([&] {
      inside = answers;
      bench.press(Qt::Key_Return);
    });
    bench.alerts.runAlertPanel({.title = "Really?",
                                .message = {},
                                .defaultButton = "Yes",
                                .alternateButton = std::nullopt,
                                .otherButton = std::nullopt});
  });
  bench.listed();
  bench.select("a.avi");
  platform::qt::QtButton& take = bench.button("Take");
  platform::qt::FolderBrowser& browser = bench.chooser().browser();
  bench.later([&] {
    take.click();
    browser.refresh();
  });
  take.click();
  EXPECT_EQ(answers, 1);
  EXPECT_EQ(inside, 1);
}

TEST_F(FilmChoosersTest, ChooserThatIsUpWhenTheProgramEndsGivesNoAnswer) {
  {
    QtFilmChoosers ending(bench.window.panels(), bench.alerts, bench.files);
    ending.chooseFilms(request("Which films?"), [this](const Paths&) { ++answers; });
    ASSERT_NE(bench.top(), nullptr);
  }
  EXPECT_EQ(bench.top(), nullptr);
  EXPECT_EQ(answers, 0);
}

}  // namespace
}  // namespace zelvo::tests
