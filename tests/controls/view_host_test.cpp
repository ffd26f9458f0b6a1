#include "platform/headless/view_host.h"

#include "controls/hosted_view.h"
#include "controls/hover_button_settings_apply.h"
#include "tests/controls/button_bench.h"

namespace zelvo::tests {
namespace {

using platform::headless::MouseEventKind;
using platform::headless::RecordingViewHost;

/// Leaves a state saved behind.
class CarelessView final : public controls::HostedView {
 public:
  explicit CarelessView(platform::ViewHost& host) : HostedView(host) {}
  void drawRect(platform::Canvas& canvas, const platform::Rect&) override { canvas.saveState(); }
};

TEST(RecordingViewHost, TellsOfADrawingThatLeavesTheColoursChanged) {
  platform::headless::Events events;
  RecordingViewHost host("view", events, {0, 0, 10, 10});
  platform::makeCarried<CarelessView>(host);

  host.paint();

  EXPECT_EQ(events.lines(), (Lines{"saveState()", "view.paint left states saved: 1"}));
}

using HostedButton = ButtonTest<controls::HoverButtonSettingsApply>;

TEST_F(HostedButton, CursorRectanglesAreMadeAnewAtOnceOutsideOfADrawing) {
  attachOverlay();

  host.invalidateCursorRects();

  EXPECT_EQ(takeEvents(),
            (Lines{"button.invalidateCursorRects()", "button.addCursorRect(0, 0, 100, 24; pointing hand)"}));
}

TEST_F(HostedButton, ARedrawIsAskedForOnceAndDoneOnce) {
  button.setDisabled(true);
  EXPECT_TRUE(host.needsDisplay());

  host.paint();

  EXPECT_FALSE(host.needsDisplay());
}

TEST_F(HostedButton, AnotherClientStartsWithoutAreasAndCursors) {
  attachOverlay();
  show();
  host.paint();

  host.carry(nullptr);

  EXPECT_TRUE(host.trackingAreas().empty());
  EXPECT_EQ(host.cursorAt(kInside), platform::CursorShape::arrow);
}

TEST(HostPile, TheHighestHostUnderThePointGetsTheEventInItsOwnCoordinates) {
  platform::headless::Events events;
  RecordingViewHost below("below", events, {0, 0, 100, 100}, true);
  RecordingViewHost above("above", events, {50, 50, 50, 50}, true);
  platform::headless::HostPile pile;
  pile.add(below);
  pile.add(above);

  pile.deliver(MouseEventKind::down, {60, 60});
  pile.deliver(MouseEventKind::up, {40, 40});
  pile.deliver(MouseEventKind::down, {100, 100});

  EXPECT_EQ(events.lines(), (Lines{"above.element.mouseDown()", "below.element.mouseUp()"}));
}

}  // namespace
}  // namespace zelvo::tests
