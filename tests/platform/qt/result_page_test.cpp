#include "platform/qt/deep/result_page.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QTableWidget>
#include <string>
#include <vector>

#include "tests/platform/qt/deep_samples.h"
#include "tests/platform/qt/element_bench.h"

namespace zelvo::tests {
namespace {

using platform::DeepVerdict;
using testing::ElementsAre;
using testing::IsEmpty;

class ResultPageTest : public testing::Test {
 protected:
  ResultPageTest() {
    outlets.result.setTimeReceiver([this](double seconds) { times.push_back(seconds); });
    outlets.result.show(partialResult());
    outlets.pages.show(platform::DeepPage::result);
    settle();
  }
  void clickRow(int row) {
    clickAt(*page.losses().viewport(), page.losses().visualRect(page.losses().model()->index(row, 0)).center());
  }
  [[nodiscard]] std::vector<std::string> visibleTexts() const {
    std::vector<std::string> texts;
    for (const QLabel* const label : page.findChildren<QLabel*>()) {
      if (label->isVisible()) texts.push_back(label->text().toStdString());
    }
    return texts;
  }

  ElementBench bench;
  const platform::DeepOutlets& outlets = bench.deep.outlets();
  platform::qt::DeepResultPage& page = bench.deep.resultPage();
  std::vector<double> times;
};

TEST_F(ResultPageTest, VerdictIsASentenceWithAPictureOfItsTone) {
  const std::vector<std::pair<DeepVerdict, std::string>> tones = {{DeepVerdict::clean, "sheet-done"},
                                                                  {DeepVerdict::repaired, "sheet-done"},
                                                                  {DeepVerdict::partial, "sheet-warning"},
                                                                  {DeepVerdict::hopeless, "sheet-failed"}};
  for (const auto& [verdict, picture] : tones) {
    platform::DeepResult result = partialResult();
    result.verdict = verdict;
    outlets.result.show(result);
    EXPECT_EQ(page.verdictPicture(), picture);
    EXPECT_EQ(page.sentence().toStdString(), result.sentence);
  }
}

TEST_F(ResultPageTest, TellsOfTheFilmAndOfEachOfItsLines) {
  const auto texts = visibleTexts();
  EXPECT_THAT(texts, testing::IsSupersetOf({"MVI_0042.AVI", "Header", "the film's own", "Index", "made anew"}));
  outlets.result.show(hopelessResult());
  settle();
  EXPECT_THAT(visibleTexts(), testing::Not(testing::Contains("made anew"))) << "of the film before";
}

TEST_F(ResultPageTest, WalkingInTheListMarksTheLossInThePicture) {
  page.losses().setFocus(Qt::TabFocusReason);
  settle();
  EXPECT_EQ(page.damage().selected(), 0U);
  pressKey(page, Qt::Key_Down);
  EXPECT_EQ(page.damage().selected(), 1U);
  pressKey(page, Qt::Key_End);
  EXPECT_EQ(page.damage().selected(), 5U);
  EXPECT_THAT(times, IsEmpty()) << "the film is looked at when it is asked for";
  pressKey(page, Qt::Key_Return);
  EXPECT_THAT(times, ElementsAre(598));
}

TEST_F(ResultPageTest, WalkingInThePictureMarksTheLossInTheList) {
  page.damage().setFocus(Qt::TabFocusReason);
  pressKey(page, Qt::Key_Right);
  pressKey(page, Qt::Key_Right);
  EXPECT_EQ(page.losses().marked(), page.damage().selected());
  EXPECT_EQ(page.losses().marked(), 2U);
  pressKey(page, Qt::Key_Return);
  EXPECT_THAT(times, ElementsAre(182));
}

TEST_F(ResultPageTest, ClickOnALossMarksItAndAsksForItsTime) {
  clickRow(1);
  EXPECT_EQ(page.damage().selected(), 1U);
  EXPECT_THAT(times, ElementsAre(133));
}

TEST_F(ResultPageTest, ClickInThePictureMarksTheRowAndAsksForTheTime) {
  const auto& mark = page.damage().picture().bars[0].marks[1];
  clickAt(page.damage(), page.damage().markArea(0, mark).center().toPoint());
  EXPECT_EQ(page.losses().marked(), 0U);
  EXPECT_THAT(times, ElementsAre(41));
}

TEST_F(ResultPageTest, EveryLossOfTheResultIsARowInItsOrder) {
  const platform::DeepResult result = partialResult();
  ASSERT_EQ(page.losses().model()->rowCount(), static_cast<int>(result.picture.losses.size()));
  for (int row = 0; row < page.losses().model()->rowCount(); ++row) {
    EXPECT_EQ(page.losses().model()->index(row, 0).data().toString().toStdString(),
              result.picture.losses[static_cast<std::size_t>(row)].words);
  }
}

TEST_F(ResultPageTest, LossesThatHadNoRoomAreCounted) {
  platform::DeepResult result = partialResult();
  result.picture.lossesLeftOut = 1200;
  outlets.result.show(result);
  settle();
  EXPECT_THAT(visibleTexts(), testing::Contains("1,200 more are told in the report."));
  outlets.result.show(partialResult());
  settle();
  EXPECT_THAT(visibleTexts(), testing::Not(testing::Contains("0 more are told in the report.")));
}

TEST_F(ResultPageTest, FilmWithoutLossesHasNoEmptyList) {
  outlets.result.show(cleanResult());
  settle();
  EXPECT_FALSE(page.losses().isVisible());
  EXPECT_TRUE(page.damage().isVisible());
  EXPECT_THAT(visibleTexts(), testing::Not(testing::Contains("What happened where")));
}

TEST_F(ResultPageTest, HopelessFilmHasNeitherPictureNorPreview) {
  outlets.result.show(hopelessResult());
  settle();
  EXPECT_FALSE(page.damage().isVisible());
  EXPECT_FALSE(page.losses().isVisible());
  EXPECT_TRUE(page.copyreportbutton->isVisible());
}

TEST_F(ResultPageTest, AnotherResultForgetsTheMarkAndTheComparison) {
  clickRow(1);
  outlets.result.showComparison(sampleComparison());
  outlets.result.show(partialResult());
  settle();
  EXPECT_FALSE(page.damage().selected());
  EXPECT_FALSE(page.losses().marked());
  EXPECT_FALSE(page.comparison().isVisible());
}

TEST_F(ResultPageTest, ComparisonIsATableThatComesIntoView) {
  bench.window.resize(bench.window.minimumSize());
  settle();
  page.copyreportbutton->setFocus(Qt::TabFocusReason);
  settle();
  outlets.result.showComparison(sampleComparison());
  settle();
  const QTableWidget& table = page.comparison().table();
  ASSERT_EQ(table.rowCount(), 3);
  EXPECT_EQ(table.item(0, 0)->text().toStdString(), "Pictures");
  EXPECT_EQ(table.item(0, 1)->text().toStdString(), "13,300");
  EXPECT_EQ(table.item(2, 2)->text().toStdString(), "yes");
  const QRect place(page.comparison().mapTo(&page, QPoint()), page.comparison().size());
  EXPECT_GE(place.top(), page.home->mapTo(&page, QPoint()).y() + page.home->height()) << "not below the strip";
  EXPECT_LE(place.bottom(), page.height());
  EXPECT_TRUE(page.copyreportbutton->hasFocus()) << "the keyboard stays where it was";
}

TEST_F(ResultPageTest, ComparisonWithoutRowsIsItsSentenceAlone) {
  outlets.result.showComparison({.sentence = "The normal repair takes no such film.", .rows = {}});
  settle();
  EXPECT_EQ(page.comparison().sentence().toStdString(), "The normal repair takes no such film.");
  EXPECT_FALSE(page.comparison().table().isVisible());
}

TEST_F(ResultPageTest, NarrowPageShowsTheFilmBelowTheDamage) {
  const auto isBeside = [this] {
    return page.copyreportbutton->mapTo(&page, QPoint()).x() > page.damage().mapTo(&page, QPoint()).x() + 200;
  };
  EXPECT_TRUE(isBeside());
  bench.window.resize(bench.window.minimumSize());
  settle();
  EXPECT_FALSE(isBeside());
}

TEST_F(ResultPageTest, ManyLongLossesStayUsable) {
  platform::DeepResult result = partialResult();
  result.picture.losses.assign(4000, {std::string(300, 'w') + " " + std::string(300, 'x'), 7});
  outlets.result.show(result);
  settle();
  EXPECT_LT(page.losses().height(), 400);
  page.losses().setFocus(Qt::TabFocusReason);
  pressKey(page, Qt::Key_End);
  EXPECT_EQ(page.damage().selected(), 3999U);
}

}  // namespace
}  // namespace zelvo::tests
