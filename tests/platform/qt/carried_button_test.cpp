// A button of the application on the window's element, with real events.
#include <QMouseEvent>

#include "controls/hover_button_settings_apply.h"
#include "controls/view_transparent.h"
#include "platform/qt/drawing/button.h"
#include "platform/qt/drawing/hosted_widget.h"
#include "tests/platform/qt/element_bench.h"

namespace zelvo::tests {
namespace {

using platform::qt::HostedWidget;

/// Counts the presses that no child kept.
class Page final : public QWidget {
 public:
  int presses = 0;

 protected:
  void mousePressEvent(QMouseEvent*) override { ++presses; }
};

/// A button of 100 x 40 points at (50, 60) above an overlay, in a window that is not shown yet.
class CarriedButton : public testing::Test {
 protected:
  CarriedButton() {
    movePointerAway();
    window.resize(300, 200);
    overlay.host().carry(controls::ViewTransparent::initWithFrame({0, 0, 300, 200}, &overlay.host(), centre));
    overlay.lower();
    button.setGeometry(50, 60, 100, 40);
    control.setViewTransparent(overlayView());
  }
  controls::ViewTransparent* overlayView() { return dynamic_cast<controls::ViewTransparent*>(overlay.host().client()); }

  ~CarriedButton() override { movePointerAway(); }

  platform::linux_::LinuxMainQueue queue;
  platform::NotificationCentre centre;
  platform::qt::Pictures pictures{ZELVO_PICTURES};
  Page window;
  HostedWidget& overlay = *new HostedWidget(&window);
  platform::qt::QtButton& button =
      *new platform::qt::QtButton(queue, pictures, QStringLiteral("OK"), platform::qt::QtButton::Look::push, &window);
  controls::HoverButtonSettingsApply& control =
      platform::makeCarried<controls::HoverButtonSettingsApply>(button.host(), button);
};

TEST_F(CarriedButton, LightsUpWithTheHandWhileThePointerIsOverIt) {
  showActive(window);
  movePointerOver(button);
  EXPECT_TRUE(control.hovering());
  EXPECT_EQ(button.cursor().shape(), Qt::PointingHandCursor);
  movePointer(window, {5, 5});
  EXPECT_FALSE(control.hovering());
}

TEST_F(CarriedButton, LightsUpWhenItIsShownUnderAStillPointer) {
  button.hide();
  showActive(window);
  movePointer(window, button.geometry().center());
  button.show();
  settle();
  EXPECT_TRUE(control.hovering());
}

TEST_F(CarriedButton, GoesDarkWhenItMovesAwayFromAStillPointer) {
  showActive(window);
  movePointerOver(button);
  button.move(50, 140);
  settle();
  EXPECT_FALSE(control.hovering());
  button.move(50, 60);
  settle();
  EXPECT_TRUE(control.hovering());
}

TEST_F(CarriedButton, StaysDarkWithAnArrowBelowALaterOverlay) {
  showActive(window);
  HostedWidget upper;
  auto made = controls::ViewTransparent::initWithFrame({0, 0, 300, 200}, &upper.host(), centre);
  controls::ViewTransparent* const view = made.get();
  upper.host().carry(std::move(made));
  ASSERT_EQ(overlayView()->viewsOverlaidCount(), 1);

  movePointerOver(button);
  button.repaint();
  EXPECT_FALSE(control.hovering());
  EXPECT_EQ(button.cursor().shape(), Qt::ArrowCursor);

  view->postRemovedNotification();
  button.host().resynchronise();
  button.repaint();
  EXPECT_TRUE(control.hovering());
  EXPECT_EQ(button.cursor().shape(), Qt::PointingHandCursor);
  upper.host().carry(nullptr);
}

TEST_F(CarriedButton, StaysDarkWhileSomethingElseLiesOverIt) {
  showActive(window);
  QWidget cover(&window);
  cover.setGeometry(0, 0, 300, 200);
  cover.show();
  movePointerOver(button);
  EXPECT_FALSE(control.hovering());
}

TEST_F(CarriedButton, HasNoHandWhileItIsDisabled) {
  showActive(window);
  movePointerOver(button);
  control.setDisabled(true);
  settle();
  EXPECT_EQ(button.cursor().shape(), Qt::ArrowCursor);
}

TEST_F(CarriedButton, IsPressedAlthoughItsControlIsShownTheMouse) {
  int presses = 0;
  button.setAction([&](platform::Button&) { ++presses; });
  showActive(window);
  clickOn(button);
  EXPECT_EQ(presses, 1);
}

TEST_F(CarriedButton, CannotBeClickedBelowAnOverlay) {
  int presses = 0;
  button.setAction([&](platform::Button&) { ++presses; });
  showActive(window);
  overlay.raise();
  clickOn(button);
  EXPECT_EQ(presses, 0);
  EXPECT_EQ(window.presses, 0);
}

}  // namespace
}  // namespace zelvo::tests