#include "platform/qt/deep/queue_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "tests/platform/qt/deep_samples.h"
#include "tests/platform/qt/element_bench.h"

namespace zelvo::tests {
namespace {

using platform::QueuedFilm;
using platform::qt::QueueModel;
using testing::ElementsAre;
using testing::IsEmpty;

enum Sample { clean, repaired, partial, hopeless, failed, working, stopped, waiting };

class QueueTableTest : public testing::Test {
 protected:
  QueueTableTest() {
    outlets.queue.setOpener([this](std::size_t film) { opened.push_back(film); });
    outlets.queue.setRemover([this](std::size_t film) { removed.push_back(film); });
    outlets.queue.show(sampleQueue());
    outlets.pages.show(platform::DeepPage::films);
    settle();
  }
  void click(int row, int column) { clickAt(*table.viewport(), table.visualRect(at(row, column)).center()); }
  [[nodiscard]] QModelIndex at(int row, int column) const { return table.films().index(row, column); }
  [[nodiscard]] std::string text(int row, int column, int role = Qt::DisplayRole) const {
    return at(row, column).data(role).toString().toStdString();
  }
  void walkTo(int row) {
    table.setFocus(Qt::TabFocusReason);
    pressKey(table, Qt::Key_Home);
    for (int step = 0; step < row; ++step) pressKey(table, Qt::Key_Down);
  }

  ElementBench bench;
  const platform::DeepOutlets& outlets = bench.deep.outlets();
  platform::qt::QueueTable& table = *bench.deep.filmsPage().queue;
  std::vector<std::size_t> opened;
  std::vector<std::size_t> removed;
};

TEST_F(QueueTableTest, RowTellsNameStateAndResult) {
  EXPECT_EQ(text(partial, QueueModel::film), "2019-06-22 wedding of Anna and Paul, second part, dance and cake.avi");
  EXPECT_EQ(text(partial, QueueModel::film, Qt::ToolTipRole),
            "/media/card/DCIM/2019-06-22 wedding of Anna and Paul, second part, dance and cake.avi");
  EXPECT_EQ(text(partial, QueueModel::state), "Done");
  EXPECT_EQ(text(partial, QueueModel::result), "14 seconds are lost");
  EXPECT_EQ(text(clean, QueueModel::result), "Nothing was wrong") << "a verdict says so where nothing else is said";
  EXPECT_EQ(text(failed, QueueModel::state), "Failed");
  EXPECT_EQ(text(failed, QueueModel::result), "The file could not be read: Input/output error");
  EXPECT_EQ(text(working, QueueModel::result), "Looking at every byte");
  EXPECT_EQ(text(stopped, QueueModel::state), "Stopped");
  EXPECT_EQ(text(waiting, QueueModel::state), "Waiting");
}

TEST_F(QueueTableTest, ProgressIsToldInPerCent) {
  EXPECT_EQ(text(working, QueueModel::progress, Qt::AccessibleTextRole), "38 %");
  EXPECT_EQ(text(clean, QueueModel::progress, Qt::AccessibleTextRole), "100 %");
  EXPECT_EQ(text(waiting, QueueModel::progress, Qt::AccessibleTextRole), "");
  QueuedFilm film = sampleQueue()[working];
  for (const auto& [share, told] :
       {std::pair(7.0, "100 %"), {-1.0, "0 %"}, {std::numeric_limits<double>::quiet_NaN(), ""}}) {
    film.share = share;
    outlets.queue.update(working, film);
    EXPECT_EQ(text(working, QueueModel::progress, Qt::AccessibleTextRole), told) << share;
  }
}

TEST_F(QueueTableTest, ClickOpensTheResultOfAFilmThatIsDone) {
  for (const int row : {clean, partial, failed, working, waiting}) click(row, QueueModel::film);
  click(repaired, QueueModel::result);
  EXPECT_THAT(opened, ElementsAre(clean, partial, repaired));
  EXPECT_THAT(removed, IsEmpty());
}

TEST_F(QueueTableTest, EnterOpensTheResultOfAFilmThatIsDone) {
  walkTo(partial);
  pressKey(table, Qt::Key_Return);
  walkTo(failed);
  pressKey(table, Qt::Key_Enter);
  EXPECT_THAT(opened, ElementsAre(partial));
}

TEST_F(QueueTableTest, CrossTakesAFilmOutUnlessItIsWorkedOn) {
  click(waiting, QueueModel::takeOut);
  click(working, QueueModel::takeOut);
  click(clean, QueueModel::takeOut);
  EXPECT_THAT(removed, ElementsAre(waiting, clean));
  EXPECT_THAT(opened, IsEmpty());
}

TEST_F(QueueTableTest, DeleteTakesAFilmOutUnlessItIsWorkedOn) {
  walkTo(working);
  pressKey(table, Qt::Key_Delete);
  pressKey(table, Qt::Key_Down);
  pressKey(table, Qt::Key_Delete);
  EXPECT_THAT(removed, ElementsAre(stopped));
}

TEST_F(QueueTableTest, WhatChangesInARowChangesThereAndKeepsTheKeyboardsPlace) {
  walkTo(repaired);
  QueuedFilm film = sampleQueue()[working];
  film.state = QueuedFilm::State::done;
  film.verdict = platform::DeepVerdict::repaired;
  film.words.clear();
  outlets.queue.update(working, film);
  EXPECT_EQ(text(working, QueueModel::result), "Nothing is lost");
  EXPECT_EQ(table.currentIndex().row(), repaired);
  outlets.queue.update(100, film);
  EXPECT_EQ(table.films().rowCount(), 8);
}

TEST_F(QueueTableTest, KeyboardsPlaceStaysWhenAFilmIsTakenOut) {
  walkTo(waiting);
  auto films = sampleQueue();
  films.pop_back();
  outlets.queue.show(films);
  EXPECT_EQ(table.currentIndex().row(), stopped);
  outlets.queue.show({});
  EXPECT_FALSE(table.currentIndex().isValid());
  pressKey(table, Qt::Key_Return);
  pressKey(table, Qt::Key_Delete);
  EXPECT_THAT(opened, IsEmpty());
  EXPECT_THAT(removed, IsEmpty());
}

TEST_F(QueueTableTest, EmptyTableSaysWhatToDo) {
  const auto looks = [this] { return table.grab().toImage(); };
  outlets.queue.show({});
  EXPECT_EQ(table.accessibleDescription().toStdString(), "No films yet. Add some to repair them one after the other.");
  const QImage empty = looks();
  QImage middle = empty.copy(QRect(QPoint(0, 0), empty.size()).adjusted(40, 40, -40, -40));
  QImage blank = middle;
  blank.fill(middle.pixelColor(0, 0));
  EXPECT_NE(middle, blank);
  outlets.queue.show(sampleQueue());
  EXPECT_EQ(table.accessibleDescription().toStdString(), "");
}

TEST_F(QueueTableTest, NameThatIsNoTextIsShownAllTheSame) {
  QueuedFilm film;
  film.path = "/films/<b>\xff.avi";
  outlets.queue.show({film});
  EXPECT_FALSE(text(0, QueueModel::film).empty());
  EXPECT_EQ(text(0, QueueModel::film, Qt::ToolTipRole).find("<b>"), std::string::npos) << "no text is taken for HTML";
}

TEST_F(QueueTableTest, ColumnsFillTheTableAtEverySize) {
  for (const QSize size : {QSize(960, 620), QSize(640, 420), QSize(1400, 900)}) {
    bench.window.resize(size);
    settle();
    int width = 0;
    for (int column = 0; column < QueueModel::kColumns; ++column) width += table.columnWidth(column);
    EXPECT_EQ(width, table.viewport()->width()) << size.width();
  }
}

}  // namespace
}  // namespace zelvo::tests
