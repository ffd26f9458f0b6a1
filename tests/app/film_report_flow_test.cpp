// What the window's own elements are told on the way: the chosen film, how far a run is, what was kept, why not.
#include "tests/app/app_bench.h"
#include "tests/support/avi_builder.h"

namespace zelvo::tests {
namespace {

using platform::FilmReport;
using platform::FilmVerdict;
using platform::RunStage;

class OwnElements : public FlowTest {
 protected:
  [[nodiscard]] std::optional<FilmReport> report() const { return app.screen.filmreport.report(); }
};

TEST_F(OwnElements, TheCardTellsTheFilmThatIsChosen) {
  app.start();
  const platform::Bytes film = smallAvi();
  app.choose(film);
  const auto& card = app.screen.chosenfilm.film();
  ASSERT_TRUE(card);
  EXPECT_EQ(card->path, kInput);
  EXPECT_EQ(card->size, film.size());
  ASSERT_TRUE(card->readLength);
  EXPECT_DOUBLE_EQ(card->readLength().value_or(0), 90 * 0.04);
}

TEST_F(OwnElements, AFilmThatCannotBeReadHasNoLength) {
  app.start();
  app.choose(smallAvi());
  app.files.refuse(kInput, std::make_error_code(std::errc::permission_denied));
  EXPECT_EQ(app.screen.chosenfilm.film()->readLength(), std::nullopt);
}

TEST_F(OwnElements, TheReportIsThereBeforeTheCompletedSheet) {
  app.start();
  app.choose(smallAvi());
  bool sheetCameFirst = false;
  bool wasTold = false;
  app.screen.filmreport.changed = [&] {
    if (!report()) return;
    if (!wasTold && app.isShown(app.screen.repaircompletedwindow)) sheetCameFirst = true;
    wasTold = true;
  };
  repairWhole();
  EXPECT_TRUE(app.isShown(app.screen.repaircompletedwindow));
  EXPECT_TRUE(wasTold);
  EXPECT_FALSE(sheetCameFirst);
  EXPECT_EQ(report()->verdict, FilmVerdict::good);
}

TEST_F(OwnElements, HeadersOverZerosEndWithNothing) {
  platform::Bytes film = smallAvi();
  std::fill(film.begin() + 1000, film.end(), std::byte{0});
  app.start();
  app.choose(film);
  repairWhole();
  ASSERT_TRUE(report());
  EXPECT_EQ(report()->verdict, FilmVerdict::nothing);
}

TEST_F(OwnElements, ANewRunBeginsWithoutAReport) {
  reachResultPage();
  ASSERT_TRUE(report());
  ASSERT_TRUE(app.press(app.screen.main3));
  app.choose(smallAvi(), "/films/other.avi");
  ASSERT_TRUE(app.press(app.screen.repairbutton));
  EXPECT_FALSE(report());
}

TEST_F(OwnElements, AStoppedRunTellsNothingMore) {
  app.start();
  app.choose(smallAvi());
  ASSERT_TRUE(app.press(app.screen.repairbutton));
  app.controller->stopRepairOk(&app.screen.stoprepairokbutton);
  runWorkers();
  EXPECT_FALSE(report());
}

TEST_F(OwnElements, TheProgressIsThatOfTheRunAtWork) {
  app.start();
  EXPECT_EQ(app.screen.runprogress.look().stage, RunStage::none);
  MemoryFile& input = app.choose(smallAvi());
  std::vector<platform::RunProgress> looks;
  input.onRead = [&](std::uint64_t, std::size_t) { looks.push_back(app.screen.runprogress.look()); };
  ASSERT_TRUE(app.press(app.screen.repairbutton));
  EXPECT_EQ(app.screen.runprogress.look().stage, RunStage::none) << "it has not begun";
  runWorkers();
  ASSERT_FALSE(looks.empty());
  EXPECT_EQ(looks.front().stage, RunStage::searching);
  EXPECT_EQ(looks.front().all, input.bytes.size());
  EXPECT_EQ(looks.back().stage, RunStage::writing);
  EXPECT_GT(looks.back().all, 500000U);
  bool isBetween = false;
  for (const auto& look : looks) {
    EXPECT_LE(look.done, look.all);
    if (look.stage != RunStage::searching) continue;
    if (look.done == look.all) continue;
    EXPECT_EQ(look.done % 1024, 0U);
    isBetween = isBetween || look.done > 0;
  }
  EXPECT_TRUE(isBetween);
  EXPECT_EQ(app.screen.runprogress.look().stage, RunStage::none) << "it has ended";
}

TEST_F(OwnElements, TheProgressOfTheNextRunBeginsAnew) {
  reachResultPage();
  app.press(app.screen.main3);
  MemoryFile& input = app.choose(smallAvi());
  std::optional<platform::RunProgress> first;
  input.onRead = [&](std::uint64_t, std::size_t) {
    if (!first) first = app.screen.runprogress.look();
  };
  std::optional<platform::RunProgress> beforeTheFile;
  app.files.onTouch = [&](const std::string& what) {
    if (what == "createFile(/Applications/testfile2.avi)") beforeTheFile = app.screen.runprogress.look();
  };

  repairWhole();

  ASSERT_TRUE(first);
  EXPECT_EQ(first->stage, RunStage::searching);
  ASSERT_TRUE(beforeTheFile);
  EXPECT_EQ(beforeTheFile->stage, RunStage::writing);
  EXPECT_EQ(beforeTheFile->done, 0U);
}

TEST_F(OwnElements, TheProgressOfAStoppedRunIsNotToldWhileItWorksOn) {
  app.start();
  MemoryFile& input = app.choose(smallAvi());
  bool isStopped = false;
  std::vector<RunStage> stages;
  input.onRead = [&](std::uint64_t, std::size_t) {
    if (!isStopped) app.controller->stopRepairOk(&app.screen.stoprepairokbutton);
    isStopped = true;
    stages.push_back(app.screen.runprogress.look().stage);
  };
  ASSERT_TRUE(app.press(app.screen.repairbutton));
  runWorkers();
  ASSERT_TRUE(isStopped);
  for (const RunStage stage : stages) EXPECT_EQ(stage, RunStage::none);
}

TEST_F(OwnElements, TheReasonOfARefusalIsTold) {
  app.start();
  app.choose(AviBuilder().interleaved(4, 3000, 100).build());
  repairWhole();
  EXPECT_TRUE(app.isShown(app.screen.filenotsupportedwindow));
  EXPECT_EQ(app.screen.rejectionreason.reason(), platform::Rejection::tooSmall);
}

TEST_F(OwnElements, TheSavePanelIsToldWhatItSaves) {
  reachResultPage();
  ASSERT_TRUE(app.press(app.screen.savebutton));
  EXPECT_EQ(app.panels.lastSavePanel()->savedFile(), "/repaired.avi");
}

}  // namespace
}  // namespace zelvo::tests
