// What a screen reader is told of the deep repair's pages.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/qt/drawing/appearance.h"
#include "tests/platform/qt/deep_samples.h"
#include "tests/platform/qt/element_bench.h"
#include "tests/platform/qt/screen_reader.h"

namespace zelvo::tests {
namespace {

using platform::DeepPage;
using testing::Contains;
using testing::ElementsAre;

class DeepAccessibility : public testing::Test {
 protected:
  DeepAccessibility() {
    outlets.donorbutton.setHidden(false);
    outlets.result.show(partialResult());
    outlets.result.showComparison(sampleComparison());
    outlets.queue.show(sampleQueue());
    outlets.runpathlabel.setStringValue("/films/a.avi");
  }
  void show(DeepPage page) {
    outlets.pages.show(page);
    settle();
  }
  /// The names of the cells of a table, row by row.
  static std::vector<std::string> cellsOf(QAccessibleInterface& table, int row, int columns) {
    std::vector<std::string> names;
    QAccessibleTableInterface* const cells = table.tableInterface();
    if (cells == nullptr) return names;
    for (int column = 0; column < columns; ++column) names.push_back(nameOf(*cells->cellAt(row, column)));
    return names;
  }

  ElementBench bench;
  const platform::DeepOutlets& outlets = bench.deep.outlets();
  platform::qt::DeepResultPage& result = bench.deep.resultPage();
  platform::qt::QueueTable& queue = *bench.deep.filmsPage().queue;
};

TEST_F(DeepAccessibility, NoInteractiveElementIsNameless) {
  for (const DeepPage page : {DeepPage::run, DeepPage::result, DeepPage::films}) {
    show(page);
    int interactive = 0;
    walk(told(bench.window), [&](QAccessibleInterface& element) {
      // Cells may say nothing, and the headings above them too.
      if (!isInteractive(element) || element.role() == QAccessible::Cell || element.role() == QAccessible::TreeItem ||
          element.role() == QAccessible::ColumnHeader) {
        return;
      }
      ++interactive;
      EXPECT_NE(nameOf(element), "") << static_cast<int>(page) << ": "
                                     << (element.object() != nullptr ? element.object()->metaObject()->className()
                                                                     : "no object");
    });
    EXPECT_GE(interactive, 3) << static_cast<int>(page);
  }
}

TEST_F(DeepAccessibility, PageIsNamedInItsStrip) {
  for (const auto& [page, name] : {std::pair(DeepPage::run, "Deep repair"),
                                   {DeepPage::result, "Deep repair"},
                                   {DeepPage::films, "Several films"}}) {
    show(page);
    std::vector<std::string> names;
    walk(told(bench.window), [&](QAccessibleInterface& element) { names.push_back(nameOf(element)); });
    EXPECT_THAT(names, Contains(name));
  }
}

TEST_F(DeepAccessibility, LossesAreReadAsAList) {
  show(DeepPage::result);
  QAccessibleInterface& list = told(result.losses());
  EXPECT_EQ(list.role(), QAccessible::List);
  EXPECT_EQ(nameOf(list), "What happened where");
  std::vector<std::string> read;
  for (int child = 0; child < list.childCount(); ++child) {
    QAccessibleInterface* const row = list.child(child);
    if (row->role() == QAccessible::ListItem) read.push_back(nameOf(*row));
  }
  std::vector<std::string> losses;
  for (const platform::DamageLoss& loss : partialResult().picture.losses) losses.push_back(loss.words);
  EXPECT_EQ(read, losses);
}

TEST_F(DeepAccessibility, MarkedLossIsTheListsSelectedRow) {
  show(DeepPage::result);
  result.damage().select(2);
  QAccessibleInterface& list = told(result.losses());
  EXPECT_EQ(list.child(2)->state().selected, 1U);
  EXPECT_EQ(list.child(1)->state().selected, 0U);
}

TEST_F(DeepAccessibility, DamagePictureTellsTheMarkedLoss) {
  show(DeepPage::result);
  EXPECT_EQ(nameOf(result.damage()), "Damage picture");
  result.damage().setFocus(Qt::TabFocusReason);
  EXPECT_EQ(told(result.damage()).text(QAccessible::Description).toStdString(),
            "0:41 to 0:43: 50 pictures lost, the sound goes on");
}

TEST_F(DeepAccessibility, ComparisonIsReadAsATable) {
  show(DeepPage::result);
  QAccessibleInterface& table = told(result.comparison().table());
  EXPECT_EQ(nameOf(table), "Normal and deep repair");
  ASSERT_NE(table.tableInterface(), nullptr);
  EXPECT_EQ(table.tableInterface()->columnDescription(1).toStdString(), "Normal repair");
  EXPECT_THAT(cellsOf(table, 0, 3), ElementsAre("Pictures", "13,300", "14,650"));
}

TEST_F(DeepAccessibility, QueueIsReadAsATable) {
  show(DeepPage::films);
  QAccessibleInterface& table = told(queue);
  EXPECT_EQ(nameOf(table), "Films to be repaired");
  EXPECT_THAT(cellsOf(table, 1, 5),
              ElementsAre("MVI_0041.AVI", "Done", "Nothing is lost", "100 %", "Take it out of the list"));
  EXPECT_THAT(cellsOf(table, 5, 5), ElementsAre("MVI_0045.AVI", "Working", "Looking at every byte", "38 %", ""));
}

TEST_F(DeepAccessibility, LinesOfTheResultTellWhatTheyAreAbout) {
  show(DeepPage::result);
  for (const QLabel* const label : result.findChildren<QLabel*>()) {
    if (label->text() != QStringLiteral("the film's own")) continue;
    EXPECT_EQ(told(*const_cast<QLabel*>(label)).text(QAccessible::Description).toStdString(), "Header");
    return;
  }
  FAIL() << "no such line";
}

TEST_F(DeepAccessibility, ProgressBarIsNamedAndHasItsValueOrIsBusy) {
  platform::qt::FlatProgressBar& bar = bench.deep.runPage().runprogress->bar();
  show(DeepPage::run);
  EXPECT_EQ(nameOf(bar), "Deep repair of your film");
  EXPECT_EQ(told(bar).valueInterface()->maximumValue().toDouble(), 0) << "nobody knows how much there is";
  outlets.runprogress.follow([] { return platform::DeepProgress{"Reading", 25, 100}; });
  QAccessibleValueInterface& value = *told(bar).valueInterface();
  EXPECT_NEAR(value.currentValue().toDouble() / value.maximumValue().toDouble(), 0.25, 0.0001);
  outlets.runprogress.follow({});
}

TEST_F(DeepAccessibility, QuietButtonsSayWhatTheyAreFor) {
  const auto& page = bench.window.choosePage();
  EXPECT_EQ(nameOf(*page.deeprepairbutton), "Deep repair");
  EXPECT_EQ(told(*page.deeprepairbutton).text(QAccessible::Description).toStdString(),
            "Looks at every byte of the film, for those that Repair cannot mend");
  EXPECT_EQ(nameOf(*page.addfilmsbutton), "Add films…");
  EXPECT_EQ(told(*page.addfilmsbutton).text(QAccessible::Description).toStdString(),
            "Deep repair of several films, one after the other");
  EXPECT_EQ(nameOf(*result.comparebutton), "Compare");
}

}  // namespace
}  // namespace zelvo::tests
