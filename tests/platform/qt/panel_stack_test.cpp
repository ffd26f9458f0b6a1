#include "platform/qt/panels/panel_stack.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QWheelEvent>
#include <algorithm>
#include <string>
#include <vector>

#include "controls/button_startup_issues.h"
#include "controls/filled_button.h"
#include "controls/view_transparent.h"
#include "platform/qt/panels/panel_frame.h"
#include "tests/platform/qt/element_bench.h"

namespace zelvo::tests {
namespace {

using controls::ViewTransparent;
using platform::qt::PanelFrame;
using platform::qt::QtButton;
using Role = PanelFrame::Role;

/// A panel with the buttons "No", which cancels, and "Yes", which Enter presses.
struct Question {
  explicit Question(platform::qt::PanelStack& stack, const QString& title = QStringLiteral("Sure?"))
      : panel(*new PanelFrame(stack, {QStringLiteral("sheet-question"), title, QStringLiteral("Think.")})),
        no(panel.addButton(QStringLiteral("No"), Role::cancels)),
        yes(panel.addButton(QStringLiteral("Yes"), Role::byDefault)) {
    no.setAction([this](platform::Button&) { presses.emplace_back("no"); });
    yes.setAction([this](platform::Button&) { presses.emplace_back("yes"); });
  }

  PanelFrame& panel;
  QtButton& no;
  QtButton& yes;
  std::vector<std::string> presses;
};

class PanelStack : public testing::Test {
 protected:
  PanelStack() {
    browse.setAction([this](platform::Button&) { ++browsed; });
    a.no.setObjectName(QStringLiteral("a.no"));
  }
  ~PanelStack() override {
    while (PanelFrame* const top = panels.top()) panels.orderOut(*top);
  }
  void begin(PanelFrame& panel) {
    panels.begin(panel);
    settle();
  }
  void end(PanelFrame& panel) {
    panels.end(panel);
    panels.orderOut(panel);
    settle();
  }
  /// The widget that has the keyboard.
  [[nodiscard]] QWidget* focus() const { return bench.window.focusWidget(); }
  /// The overlays that lie in the window, the lowest first; the pages' own is the first of them.
  [[nodiscard]] std::vector<ViewTransparent*> overlays() const {
    std::vector<ViewTransparent*> found;
    for (QObject* child : panels.content().children()) {
      auto* const widget = dynamic_cast<platform::qt::HostedWidget*>(child);
      if (auto* overlay = widget == nullptr ? nullptr : dynamic_cast<ViewTransparent*>(widget->host().client())) {
        found.push_back(overlay);
      }
    }
    return found;
  }
  [[nodiscard]] static bool isLit(const QtButton& button) {
    return dynamic_cast<controls::FilledButton&>(*button.host().client()).hovering();
  }
  /// The uppermost widget at the middle of `widget`.
  [[nodiscard]] QWidget* uppermostAt(const QWidget& widget) const {
    return bench.window.childAt(widget.mapTo(&bench.window, widget.rect().center()));
  }

  ElementBench bench;
  platform::qt::PanelStack& panels = bench.window.panels();
  QtButton& browse = *bench.window.choosePage().browsebutton;
  Question a{panels};
  Question b{panels, QStringLiteral("Really?")};
  int browsed = 0;
};

// ---- Begin and end ----

TEST_F(PanelStack, PanelLiesAboveAnOverlayAboveABackdrop) {
  begin(a.panel);
  EXPECT_TRUE(a.panel.isVisible());
  QWidgetList order;
  for (QObject* child : panels.content().children()) {
    auto* const widget = qobject_cast<QWidget*>(child);
    if (widget != nullptr && widget->isVisible()) order.push_back(widget);
  }
  ASSERT_GE(order.size(), 3);
  EXPECT_EQ(order.back(), &a.panel);
  const auto* const overlay = dynamic_cast<platform::qt::HostedWidget*>(order[order.size() - 2]);
  ASSERT_NE(overlay, nullptr);
  EXPECT_NE(dynamic_cast<ViewTransparent*>(overlay->host().client()), nullptr);
  const QWidget* const backdrop = order[order.size() - 3];
  EXPECT_TRUE(backdrop->testAttribute(Qt::WA_TransparentForMouseEvents));
  for (const QWidget* one : {static_cast<const QWidget*>(overlay), backdrop}) {
    EXPECT_EQ(one->geometry(), panels.content().rect());
  }
}

TEST_F(PanelStack, ContentIsDimmedWhileAPanelIsShown) {
  const QPoint corner(3, 300);
  const QRgb before = bench.window.grab().toImage().pixel(corner);
  begin(a.panel);
  const QRgb during = bench.window.grab().toImage().pixel(corner);
  EXPECT_LT(qGray(during), qGray(before) - 40);
  end(a.panel);
  EXPECT_EQ(bench.window.grab().toImage().pixel(corner), before);
}

TEST_F(PanelStack, EndedPanelStaysVisibleUntilItIsOrderedOut) {
  begin(a.panel);
  panels.end(a.panel);
  EXPECT_TRUE(a.panel.isVisible());
  EXPECT_TRUE(panels.isEmpty());
  panels.orderOut(a.panel);
  EXPECT_FALSE(a.panel.isVisible());
}

TEST_F(PanelStack, PanelThatIsShownBeginsNoSecondTime) {
  begin(a.panel);
  begin(a.panel);
  EXPECT_EQ(overlays().size(), 2U);
  end(a.panel);
  EXPECT_TRUE(panels.isEmpty());
}

TEST_F(PanelStack, PanelThatBeginsAgainGetsANewOverlay) {
  begin(a.panel);
  const ViewTransparent* const first = overlays().back();
  end(a.panel);
  begin(a.panel);
  const ViewTransparent* const second = overlays().back();
  EXPECT_NE(first, second);
  EXPECT_EQ(second->viewsOverlaidCount(), 0);
  EXPECT_EQ(overlays().front()->viewsOverlaidCount(), 1);
}

TEST_F(PanelStack, EndOfAShownPanelIsAnnouncedOnce) {
  ViewTransparent* const ground = overlays().front();
  begin(a.panel);
  EXPECT_EQ(ground->viewsOverlaidCount(), 1);
  panels.end(a.panel);
  panels.end(a.panel);
  panels.orderOut(a.panel);
  EXPECT_EQ(ground->viewsOverlaidCount(), 0);
}

TEST_F(PanelStack, EndOfAPanelThatIsNotShownIsNotAnnounced) {
  ViewTransparent* const ground = overlays().front();
  begin(a.panel);
  panels.end(b.panel);
  EXPECT_EQ(ground->viewsOverlaidCount(), 1);
  EXPECT_TRUE(panels.isShown(a.panel));
}

TEST_F(PanelStack, ObserverIsToldOfEveryBeginAndEnd) {
  int told = 0;
  panels.setObserver([&] { ++told; });
  begin(a.panel);
  panels.end(b.panel);
  end(a.panel);
  EXPECT_EQ(told, 2);
  panels.setObserver({});
}

TEST_F(PanelStack, PanelThatGoesWhileItIsShownGivesTheInputBack) {
  auto* const passing = new PanelFrame(panels, {QString(), QStringLiteral("Passing"), QString()});
  passing->addButton(QStringLiteral("OK"));
  begin(*passing);
  passing->deleteLater();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  settle();
  EXPECT_TRUE(panels.isEmpty());
  EXPECT_EQ(overlays().front()->viewsOverlaidCount(), 0);
  clickOn(browse);
  EXPECT_EQ(browsed, 1);
}

// ---- Nested panels and the hover look ----

TEST_F(PanelStack, NestedPanelsAreCounted) {
  begin(a.panel);
  begin(b.panel);
  ASSERT_EQ(overlays().size(), 3U);
  EXPECT_EQ(overlays()[0]->viewsOverlaidCount(), 2);
  EXPECT_EQ(overlays()[1]->viewsOverlaidCount(), 1);
  EXPECT_EQ(overlays()[2]->viewsOverlaidCount(), 0);
  end(b.panel);
  EXPECT_EQ(overlays()[0]->viewsOverlaidCount(), 1);
  EXPECT_EQ(overlays()[1]->viewsOverlaidCount(), 0);
  end(a.panel);
  EXPECT_EQ(overlays()[0]->viewsOverlaidCount(), 0);
}

TEST_F(PanelStack, PageButtonUnderThePointerGoesDarkWithAPanelAndLightsUpAfterIt) {
  movePointerOver(browse);
  ASSERT_TRUE(isLit(browse));
  begin(a.panel);
  EXPECT_FALSE(isLit(browse));
  end(a.panel);
  EXPECT_TRUE(isLit(browse));
}

TEST_F(PanelStack, PanelButtonLightsUpUnderAStillPointer) {
  begin(a.panel);
  const QPoint place = a.yes.mapTo(&bench.window, a.yes.rect().center());
  end(a.panel);
  movePointer(bench.window, place);
  begin(a.panel);
  EXPECT_TRUE(isLit(a.yes));
  EXPECT_FALSE(isLit(a.no));
}

TEST_F(PanelStack, LowerPanelsButtonIsDarkWhileAnotherPanelLiesAboveIt) {
  begin(a.panel);
  movePointerOver(a.no);
  ASSERT_TRUE(isLit(a.no));
  begin(b.panel);
  EXPECT_FALSE(isLit(a.no));
  end(b.panel);
  EXPECT_TRUE(isLit(a.no));
}

TEST_F(PanelStack, ButtonGoesDarkWhenItsPanelMovesAwayWithTheWindowsSize) {
  begin(a.panel);
  movePointerOver(a.yes);
  ASSERT_TRUE(isLit(a.yes));
  bench.window.resize(1200, 900);
  settle();
  EXPECT_FALSE(isLit(a.yes));
}

// ---- What lies below gets nothing ----

TEST_F(PanelStack, ClickBesideThePanelGoesNowhere) {
  begin(a.panel);
  clickOn(browse);
  clickAt(bench.window, {5, 5});
  EXPECT_EQ(browsed, 0);
  EXPECT_TRUE(a.presses.empty());
}

TEST_F(PanelStack, ClickOnThePanelsOwnAreaGoesNowhere) {
  begin(a.panel);
  clickAt(a.panel, {20, 20});
  EXPECT_EQ(browsed, 0);
  EXPECT_TRUE(a.presses.empty());
  EXPECT_TRUE(panels.isShown(a.panel));
}

TEST_F(PanelStack, WheelBesideThePanelGoesNowhere) {
  class WheelCounter final : public QObject {
   public:
    int wheels = 0;
    bool eventFilter(QObject*, QEvent* event) override {
      if (event->type() == QEvent::Wheel) ++wheels;
      return false;
    }
  } counter;
  bench.window.choosePage().installEventFilter(&counter);
  panels.content().installEventFilter(&counter);
  const auto turn = [&] {
    const QPointF place(200, 400);
    QWheelEvent wheel(place, bench.window.mapToGlobal(place), {}, {0, 120}, Qt::NoButton, {}, Qt::NoScrollPhase, false);
    QSpontaneKeyEvent::setSpontaneous(&wheel);  // one that no program made goes on to parents while nobody takes it
    qApp->notify(bench.window.windowHandle(), &wheel);
  };
  turn();
  ASSERT_GT(counter.wheels, 0) << "without a panel it arrives";
  counter.wheels = 0;
  begin(a.panel);
  turn();
  EXPECT_EQ(counter.wheels, 0);
}

TEST_F(PanelStack, DropIsRefusedBesideThePanelAndOnIt) {
  std::vector<std::string> files;
  bench.window.setFileReceiver([&](const std::string& file) { files.push_back(file); });
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile(QStringLiteral("/films/a.avi"))});
  begin(a.panel);
  const QPoint onPanel = a.panel.mapTo(&bench.window, a.panel.rect().center());
  for (const QPoint& place : {QPoint(30, 300), onPanel}) {
    QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, {});
    enter.ignore();
    QCoreApplication::sendEvent(bench.window.windowHandle(), &enter);
    EXPECT_FALSE(enter.isAccepted());
    QDropEvent drop(place, Qt::CopyAction, &data, Qt::LeftButton, {});
    drop.ignore();
    QCoreApplication::sendEvent(bench.window.windowHandle(), &drop);
    EXPECT_FALSE(drop.isAccepted());
  }
  EXPECT_TRUE(files.empty());
}

TEST_F(PanelStack, ShortcutsPressNothingBelowAPanel) {
  begin(a.panel);
  pressKey(bench.window, Qt::Key_O, Qt::ControlModifier);
  EXPECT_EQ(browsed, 0);
  end(a.panel);
  pressKey(bench.window, Qt::Key_O, Qt::ControlModifier);
  EXPECT_EQ(browsed, 1);
}

TEST_F(PanelStack, OverlayIsNoStopOfTheKeyboard) {
  begin(a.panel);
  for (const QWidget* one : allBelow<QWidget>(panels.content())) {
    const auto* const hosted = dynamic_cast<const platform::qt::HostedWidget*>(one);
    if (hosted != nullptr && dynamic_cast<ViewTransparent*>(hosted->host().client()) != nullptr) {
      EXPECT_EQ(one->focusPolicy(), Qt::NoFocus);
    }
  }
}

// ---- Geometry ----

TEST_F(PanelStack, PanelsStayInTheMiddleAndOverlaysCoverTheWindowWhenItsSizeChanges) {
  begin(a.panel);
  begin(b.panel);
  bench.window.resize(1100, 800);
  settle();
  for (const ViewTransparent* overlay : overlays()) EXPECT_NE(overlay, nullptr);
  for (const QWidget* child : panels.content().findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
    const auto* const hosted = dynamic_cast<const platform::qt::HostedWidget*>(child);
    if (hosted == nullptr) continue;
    EXPECT_EQ(hosted->geometry(), panels.content().rect());
  }
  for (const PanelFrame* panel : {&a.panel, &b.panel}) {
    EXPECT_NEAR(panel->geometry().center().x(), 550, 1);
    EXPECT_TRUE(panels.content().rect().contains(panel->geometry()));
  }
}

TEST_F(PanelStack, PanelShowsItsWholeText) {
  const QString longText = QStringLiteral("Nothing was changed in your file. ").repeated(8);
  auto& panel = *new PanelFrame(panels, {QString(), QStringLiteral("Title"), longText});
  panel.addButton(QStringLiteral("OK"));
  begin(panel);
  EXPECT_GE(panel.message().height(), panel.message().heightForWidth(panel.message().width()));
  end(panel);
}

}  // namespace
}  // namespace zelvo::tests
