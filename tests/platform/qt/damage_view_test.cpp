#include "platform/qt/damage/damage_view.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QMouseEvent>
#include <QPainter>
#include <QtTest>
#include <limits>
#include <set>
#include <string>
#include <vector>

#include "platform/qt/damage/damage_paints.h"
#include "platform/qt/drawing/appearance.h"

namespace zelvo::tests {
namespace {

using platform::DamageBar;
using platform::DamageMark;
using platform::DamagePaint;
using platform::DamagePicture;
using platform::qt::DamageView;
using testing::ElementsAre;
using testing::IsEmpty;

/// A file of 1000 bytes, and pictures and sound of 100 s. Two losses far apart, and two that share a pixel.
DamagePicture fourLosses() {
  DamagePicture picture;
  picture.losses = {{"first", 10}, {"second", 50}, {"third", 90}, {"fourth", 90.01}};
  picture.bars = {{"The damaged file",
                   "1000 bytes",
                   1000,
                   false,
                   {{0, 20, DamagePaint::header, DamageMark::kNoLoss},
                    {100, 200, DamagePaint::lost, 0},
                    {500, 500, DamagePaint::foreign, 1},
                    {900, 900.1, DamagePaint::lost, 2},
                    {900.1, 900.2, DamagePaint::mended, 3}}},
                  {"video", "1:40.00", 100, true, {{10, 20, DamagePaint::lost, 0}, {90, 90.01, DamagePaint::lost, 2}}},
                  {"sound", "1:40.00", 100, true, {{90.01, 90.02, DamagePaint::mended, 3}}}};
  return picture;
}

class DamageViewTest : public testing::Test {
 protected:
  DamageViewTest() {
    view.show(fourLosses());
    view.resize(800, view.heightForWidth(800));
  }
  void pointAt(std::size_t bar, double share) {
    const QPointF place = at(bar, share);
    QMouseEvent moved(QEvent::MouseMove, place, view.mapToGlobal(place), Qt::NoButton, Qt::NoButton, {});
    QApplication::sendEvent(&view, &moved);
  }
  [[nodiscard]] std::string words() const { return view.words().toStdString(); }
  void key(Qt::Key which) { QTest::keyClick(&view, which); }
  [[nodiscard]] QPoint at(std::size_t bar, double share) const {
    const QRectF area = view.barArea(bar);
    return QPointF(area.left() + share * area.width(), area.center().y()).toPoint();
  }
  [[nodiscard]] QImage drawn(double scale = 1) {
    QImage picture((QSizeF(view.size()) * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    picture.setDevicePixelRatio(scale);
    picture.fill(Qt::white);
    view.render(&picture);
    return picture;
  }

  DamageView view;
};

TEST_F(DamageViewTest, EveryLossIsFoundByPointingAtIt) {
  const DamagePicture picture = fourLosses();
  for (std::size_t bar = 0; bar < picture.bars.size(); ++bar) {
    for (const DamageMark& mark : picture.bars[bar].marks) {
      if (mark.loss == DamageMark::kNoLoss) continue;
      EXPECT_THAT(view.lossesAt(view.markArea(bar, mark).center()), testing::Contains(mark.loss)) << bar;
    }
  }
}

TEST_F(DamageViewTest, WhatHasNoExtentIsWideEnoughToMeet) {
  const DamageMark& mark = view.picture().bars[0].marks[2];
  EXPECT_GE(view.markArea(0, mark).width(), 3);
  EXPECT_TRUE(view.barArea(0).contains(view.markArea(0, mark)));
}

TEST_F(DamageViewTest, AMarkAtTheVeryEndLiesInsideTheBar) {
  EXPECT_TRUE(view.barArea(0).contains(view.markArea(0, {1000, 1000, DamagePaint::lost, 0})));
  EXPECT_TRUE(view.barArea(0).contains(view.markArea(0, {-5, 5000, DamagePaint::lost, 0})));
}

TEST_F(DamageViewTest, PointingTellsWhatHappenedThere) {
  pointAt(0, 0.15);
  EXPECT_EQ(words(), "first");
  pointAt(1, 0.15);
  EXPECT_EQ(words(), "first");
  pointAt(2, 0.15);
  EXPECT_EQ(words(), "0:15: as it was");
}

TEST_F(DamageViewTest, APlaceOfSeveralLossesSaysHowMany) {
  pointAt(0, 0.902);
  EXPECT_EQ(words(), "third; 1 more here");
}

TEST_F(DamageViewTest, TheKeyboardWalksFromLossToLoss) {
  std::vector<std::size_t> seen;
  view.setSelectionObserver([&seen](std::size_t loss) { seen.push_back(loss); });
  for (const Qt::Key which :
       {Qt::Key_Right, Qt::Key_Right, Qt::Key_Down, Qt::Key_Left, Qt::Key_End, Qt::Key_Right, Qt::Key_Home, Qt::Key_Up})
    key(which);
  EXPECT_THAT(seen, ElementsAre(0, 1, 2, 1, 3, 0));
  EXPECT_EQ(words(), "first");
  EXPECT_EQ(view.accessibleDescription().toStdString(), "first");
}

TEST_F(DamageViewTest, EnterAsksForTheTimeOfTheLoss) {
  std::vector<double> times;
  view.setTimeReceiver([&times](double seconds) { times.push_back(seconds); });
  key(Qt::Key_Return);
  EXPECT_THAT(times, IsEmpty());  // none is marked
  key(Qt::Key_Right);
  key(Qt::Key_Right);
  key(Qt::Key_Enter);
  EXPECT_THAT(times, ElementsAre(50));
}

TEST_F(DamageViewTest, AClickMarksTheLossAndAsksForTheTime) {
  std::vector<double> times;
  view.setTimeReceiver([&times](double seconds) { times.push_back(seconds); });
  QTest::mouseClick(&view, Qt::LeftButton, {}, at(0, 0.15));
  EXPECT_EQ(view.selected(), 0U);
  EXPECT_THAT(times, ElementsAre(10));
  times.clear();
  QTest::mouseClick(&view, Qt::LeftButton, {}, at(2, 0.75));
  ASSERT_EQ(times.size(), 1U);
  EXPECT_NEAR(times[0], 75, 0.2);
  times.clear();
  QTest::mouseClick(&view, Qt::LeftButton, {}, at(0, 0.4));  // nobody knows what time that is
  QTest::mouseClick(&view, Qt::RightButton, {}, at(1, 0.4));
  EXPECT_THAT(times, IsEmpty());
}

TEST_F(DamageViewTest, AnotherPictureForgetsWhatWasMarked) {
  key(Qt::Key_Right);
  view.show({});
  EXPECT_FALSE(view.selected());
  EXPECT_EQ(words(), "No picture and no sound is lost.");
  key(Qt::Key_Right);
  EXPECT_FALSE(view.selected());
}

TEST_F(DamageViewTest, TheGravestOfWhatSharesAPixelIsPainted) {
  view.select({});
  const QImage picture = drawn();
  const QPoint place = view.markArea(0, view.picture().bars[0].marks[2 + 1]).center().toPoint();
  EXPECT_EQ(picture.pixelColor(place), platform::qt::colourOf(DamagePaint::lost, view.palette()));
}

TEST_F(DamageViewTest, PaintsAreToldApartByColourAndByPattern) {
  std::set<QRgb> colours;
  std::set<int> patterns;
  std::set<QString> names;
  for (std::size_t i = 0; i < platform::kDamagePaints; ++i) {
    const auto paint = static_cast<DamagePaint>(i);
    colours.insert(platform::qt::colourOf(paint, view.palette()).rgb());
    names.insert(platform::qt::nameOf(paint));
    if (paint != DamagePaint::kept && paint != DamagePaint::header) patterns.insert(platform::qt::patternOf(paint));
  }
  EXPECT_EQ(colours.size(), platform::kDamagePaints);
  EXPECT_EQ(names.size(), platform::kDamagePaints);
  EXPECT_EQ(patterns.size(), platform::kDamagePaints - 2);
}

TEST_F(DamageViewTest, ALossOfOnePictureInAFilmOfHoursIsSeenAtEveryScale) {
  DamagePicture picture;
  picture.losses = {{"one", 5000}};
  picture.bars = {{"video", "3:00:00.00", 10800, true, {{5000, 5000.04, DamagePaint::lost, 0}}}};
  view.show(picture);
  for (const double scale : {1.0, 1.5, 2.0}) {
    const QImage image = drawn(scale);
    const QPointF place = view.markArea(0, view.picture().bars[0].marks[0]).center() * scale;
    EXPECT_EQ(image.pixelColor(place.toPoint()), platform::qt::colourOf(DamagePaint::lost, view.palette())) << scale;
  }
}

TEST_F(DamageViewTest, HostileFiguresArePaintedAllTheSame) {
  DamagePicture picture;
  picture.losses = {{"x", 0}};
  for (const double extent : {0.0, -1.0, 1e300, std::numeric_limits<double>::quiet_NaN()}) {
    picture.bars = {{"", "", extent, true, {{-1e300, 1e300, DamagePaint::lost, 0}, {5, 1, DamagePaint::hurt, 0}}}};
    view.show(picture);
    static_cast<void>(drawn());
    pointAt(0, 0.5);
  }
}

TEST_F(DamageViewTest, TheLegendWrapsWhereTheWidgetIsNarrow) {
  EXPECT_GT(view.heightForWidth(260), view.heightForWidth(900));
}

}  // namespace
}  // namespace zelvo::tests
