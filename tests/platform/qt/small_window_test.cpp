// The window on small screens: it opens within them, and at its least size nothing is out of reach.
#include <gtest/gtest.h>

#include <QApplication>
#include <QIcon>
#include <QImage>
#include <QLabel>
#include <QPaintEvent>
#include <QScrollArea>
#include <algorithm>
#include <vector>

#include "app/texts.h"
#include "platform/qt/chooser/file_chooser.h"
#include "platform/qt/drawing/text.h"
#include "platform/qt/panels/panel_frame.h"
#include "platform/qt/window/step_marker.h"
#include "tests/platform/qt/deep_samples.h"
#include "tests/platform/qt/window_bench.h"

namespace zelvo::tests {
namespace {

namespace qt = platform::qt;

constexpr QSize kSmall(640, 420);

class SmallWindow : public testing::Test {
 protected:
  SmallWindow() {
    window.resize(kSmall);
    bench.settle();
  }
  void showPage(int page) {
    window.controllerOutlets().tabview.selectFirstTabViewItem();
    for (int step = 0; step < page; ++step) window.controllerOutlets().tabview.selectNextTabViewItem();
    bench.settle();
  }
  /// The part of the widget that can be seen is all of it.
  static bool isWhole(const QWidget& widget) { return widget.visibleRegion().boundingRect() == widget.rect(); }
  static std::string placeOf(const QWidget& widget) {
    const QRect seen = widget.visibleRegion().boundingRect();
    return widget.accessibleName().toStdString() + " " + std::to_string(seen.width()) + "x" +
           std::to_string(seen.height()) + " of " + std::to_string(widget.width()) + "x" +
           std::to_string(widget.height());
  }

  WindowBench bench;
  qt::MainWindow& window = *bench.window;
};

TEST_F(SmallWindow, TheWindowMayBeThatSmall) { EXPECT_EQ(window.size(), kSmall); }

TEST_F(SmallWindow, TheWindowOpensWithinTheFreePartOfTheScreen) {
  window.fitInto({910, 480});
  EXPECT_LE(window.width(), 910);
  EXPECT_LE(window.height(), 480 - 30) << "with room for a title bar";
  window.fitInto({1920, 1080});
  EXPECT_EQ(window.size(), QSize(960, 620));
  window.fitInto({320, 200});
  EXPECT_EQ(window.size(), kSmall);
}

TEST_F(SmallWindow, EveryButtonOfEveryPageComesIntoViewWhenTheKeyboardReachesIt) {
  for (const int page : {0, 1, 2}) {
    showPage(page);
    if (page == 2) window.controllerOutlets().clickherebutton.setHidden(false);
    bench.settle();
    for (QPushButton* const button : window.findChildren<QPushButton*>()) {
      if (!button->isVisible() || !button->isEnabled()) continue;
      button->setFocus(Qt::TabFocusReason);
      bench.settle();
      EXPECT_TRUE(isWhole(*button)) << "page " << page + 1 << ": " << button->text().toStdString() << " "
                                    << placeOf(*button);
    }
  }
}

TEST_F(SmallWindow, PagesScrollDownAndNotAcross) {
  for (const int page : {0, 1, 2}) {
    showPage(page);
    for (QScrollArea* const area : window.findChildren<QScrollArea*>()) {
      if (!area->isVisible()) continue;
      EXPECT_LE(area->widget()->width(), area->viewport()->width()) << "page " << page + 1;
    }
  }
}

TEST_F(SmallWindow, EveryStopOfTheDeepRepairsPagesComesIntoViewAndNothingScrollsAcross) {
  const platform::DeepOutlets& deep = bench.deep->outlets();
  deep.donorbutton.setHidden(false);
  deep.result.show(partialResult());
  deep.result.showComparison(sampleComparison());
  deep.queue.show(sampleQueue());
  for (const auto page : {platform::DeepPage::run, platform::DeepPage::result, platform::DeepPage::films}) {
    deep.pages.show(page);
    bench.settle();
    int stops = 0;
    for (QWidget* const stop : window.findChildren<QWidget*>()) {
      if (!stop->isVisible() || !stop->isEnabled() || (stop->focusPolicy() & Qt::TabFocus) == 0) continue;
      ++stops;
      stop->setFocus(Qt::TabFocusReason);
      bench.settle();
      const QRect place(stop->mapTo(&window, QPoint()), stop->size());
      EXPECT_TRUE(window.rect().contains(place)) << static_cast<int>(page) << ": " << placeOf(*stop);
    }
    EXPECT_GE(stops, 3);
    for (QScrollArea* const area : window.findChildren<QScrollArea*>()) {
      if (!area->isVisible()) continue;
      EXPECT_LE(area->widget()->width(), area->viewport()->width()) << static_cast<int>(page);
    }
  }
  deep.pages.show(platform::DeepPage::none);
}

TEST_F(SmallWindow, OffersAreSeenWhenTheirPageComes) {
  const platform::DeepOutlets& deep = bench.deep->outlets();
  deep.refusedoffer.show("A deep repair may still bring holiday at the lake, second part.avi back.");
  deep.partlyoffer.show("The repair has not kept all of the film. A deep repair may bring back more.");
  for (const auto& [page, button] :
       {std::pair(0, window.choosePage().refusedofferbutton), {2, window.resultPage().partlyofferbutton}}) {
    showPage(page);
    EXPECT_TRUE(isWhole(*button)) << page;
    EXPECT_GE(button->width(), button->sizeHint().width()) << page;
  }
}

TEST_F(SmallWindow, TheStepsAreAllNamed) {
  showPage(2);
  for (const QLabel* const label : window.resultPage().findChildren<QLabel*>()) {
    EXPECT_FALSE(label->isVisible() && label->text() == QStringLiteral("Zelvo AVI Repair"))
        << "gives its room to the steps";
  }
  const QWidget* steps = nullptr;
  for (const QLabel* const label : window.resultPage().findChildren<QLabel*>()) {
    if (const auto* const marker = dynamic_cast<const qt::StepMarker*>(label)) steps = marker;
  }
  ASSERT_NE(steps, nullptr);
  EXPECT_GE(steps->width(), steps->sizeHint().width());
  const QPoint end = steps->mapTo(&window, QPoint(steps->width(), 0));
  EXPECT_LE(end.x(), window.resultPage().home->mapTo(&window, QPoint()).x()) << "nothing lies over their names";
}

TEST_F(SmallWindow, TheHintOfTheResultPageGoesOnInALineBelow) {
  auto& outlets = window.controllerOutlets();
  outlets.downloadmplayertext1.setStringValue(app::texts::kHint1);
  outlets.downloadmplayertext2.setStringValue(app::texts::kHint2);
  outlets.downloadmplayertext3.setStringValue(app::texts::kHint3);
  outlets.downloadmplayertext4.setStringValue(app::texts::kHint4);
  outlets.clickherebutton.setHidden(false);
  showPage(2);

  const auto labelSaying = [&](std::string_view text) -> const QLabel* {
    for (const QLabel* const label : window.findChildren<QLabel*>()) {
      if (label->isVisible() && label->text().trimmed() == qt::shown(text).trimmed()) return label;
    }
    return nullptr;
  };
  const QLabel* const first = labelSaying(app::texts::kHint1);
  const QLabel* const last = labelSaying(app::texts::kHint4);
  ASSERT_TRUE(first != nullptr && last != nullptr);
  EXPECT_GE(last->mapTo(&window, QPoint()).y(), first->mapTo(&window, QPoint()).y() + first->height());
  for (QScrollArea* const area : window.findChildren<QScrollArea*>()) {
    if (!area->isVisible()) continue;
    EXPECT_LE(area->widget()->width(), area->viewport()->width());
  }
  for (const QLabel* const piece : {first, last}) {
    EXPECT_GE(piece->width(), piece->sizeHint().width()) << piece->text().toStdString();
    EXPECT_LE(piece->mapTo(&window, QPoint(piece->width(), 0)).x(), window.width()) << piece->text().toStdString();
  }
}

TEST_F(SmallWindow, EveryFixedPanelShowsItsButtons) {
  qt::WindowPanels& panels = window.fixedPanels();
  for (qt::PanelFrame* panel :
       {&panels.filenotselectedwindow, &panels.stoprepairwindow, &panels.invalidfilewindow,
        &panels.filenotsupportedwindow, &panels.repaircompletedwindow, &panels.saveprogresspanel,
        &panels.stopsavingwindow, &panels.savecompletedwindow, &panels.PreviewErrorWindow}) {
    bench.sheets->beginSheet(*panel, window, {});
    bench.settle();
    EXPECT_TRUE(window.rect().contains(panel->geometry())) << panel->title().toStdString();
    for (QPushButton* const button : panel->findChildren<QPushButton*>()) {
      EXPECT_TRUE(isWhole(*button)) << panel->title().toStdString() << ": " << placeOf(*button);
    }
    window.panels().orderOut(*panel);
    bench.settle();
  }
}

TEST_F(SmallWindow, TheChooserShowsItsFieldAndItsButtons) {
  bench.click(*window.choosePage().browsebutton);
  bench.until([&] { return !window.panels().isEmpty(); });
  qt::PanelFrame& panel = *window.panels().top();
  EXPECT_TRUE(window.rect().contains(panel.geometry()));
  for (QPushButton* const button : panel.findChildren<QPushButton*>()) {
    if (!button->isVisible()) continue;
    EXPECT_TRUE(isWhole(*button)) << button->text().toStdString() << " " << placeOf(*button);
  }
  bench.key(Qt::Key_Escape);
}

/// Collects what a widget paints.
class PaintedRegion final : public QObject {
 public:
  explicit PaintedRegion(QWidget& widget) { widget.installEventFilter(this); }
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Paint) region += dynamic_cast<QPaintEvent*>(event)->region();
    return false;
  }
  QRegion region;
};

TEST_F(SmallWindow, TheChoosersFocusFrameGoesFromWhereTheListWasWhenAWarningAppears) {
  bench.click(*window.choosePage().browsebutton);
  bench.until([&] { return !window.panels().isEmpty(); });
  qt::FileChooser* chooser = nullptr;
  for (QWidget* const one : window.findChildren<QWidget*>()) {
    if (auto* const found = dynamic_cast<qt::FileChooser*>(one)) chooser = found;
  }
  ASSERT_NE(chooser, nullptr);
  bench.until([&] { return chooser->browser().isRead(); });
  QWidget& list = chooser->browser().list();
  list.setFocus(Qt::TabFocusReason);
  bench.settle();
  const QRect before(list.mapTo(chooser, QPoint(0, 0)), list.size());
  PaintedRegion painted(*chooser);
  chooser->say(
      QStringLiteral("A warning of so many words that it takes more than one line of a window as small as this. ")
          .repeated(3));
  bench.settle();
  ASSERT_LT(list.height(), before.height()) << "the warning takes room";
  EXPECT_TRUE(painted.region.contains(before.adjusted(0, before.height(), 0, 1)));
  bench.key(Qt::Key_Escape);
}

TEST_F(SmallWindow, TheProgramsSignIsDrawnFromItsPictureWhereNoThemeHasIt) {
  const QIcon sign = bench.pictures.icon("zelvo-avi-repair");
  for (const int pixels : {16, 32, 48, 256}) {
    const QImage drawn = sign.pixmap(QSize(pixels, pixels), 1.0).toImage();
    ASSERT_EQ(drawn.size(), QSize(pixels, pixels));
    EXPECT_EQ(qAlpha(drawn.pixel(pixels / 2, pixels / 2)), 255) << pixels;
  }
  EXPECT_TRUE(bench.pictures.icon("no such picture").isNull());
}

// ---- Where the keyboard goes ----

TEST_F(SmallWindow, TheKeyboardNeverPassesThroughHomeOnAChangeOfPages) {
  const std::vector<const QWidget*> homes = {window.choosePage().home, window.repairPage().home,
                                             window.resultPage().home};
  int passes = 0;
  const QObject whileTested;  // the focus goes on moving while the window is taken down
  QObject::connect(qApp, &QApplication::focusChanged, &whileTested, [&](QWidget*, const QWidget* now) {
    if (std::find(homes.begin(), homes.end(), now) != homes.end()) ++passes;
  });
  bench.repair(damagedFilm(bench.temp));
  EXPECT_EQ(passes, 0);
  EXPECT_TRUE(window.resultPage().previewbutton->hasFocus());
  window.resultPage().home->click();  // as a shortcut or a screen reader presses it
  bench.settle();
  EXPECT_EQ(window.page(), 0);
  EXPECT_EQ(passes, 0);
  EXPECT_TRUE(window.choosePage().repairbutton->hasFocus()) << "the film is still chosen";
}

}  // namespace
}  // namespace zelvo::tests
