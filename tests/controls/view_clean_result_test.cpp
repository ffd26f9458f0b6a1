#include "controls/view_clean_result.h"

#include "tests/controls/button_bench.h"

namespace zelvo::tests {
namespace {

TEST(ViewCleanResult, IsWhiteWithAFrameOnItsOutermostFourPoints) {
  platform::headless::Events events;
  platform::headless::RecordingViewHost host("result", events, {10, 10, 300, 200});
  platform::makeCarried<controls::ViewCleanResult>(host);

  host.paint(platform::Rect{0, 0, 50, 50});

  EXPECT_EQ(events.lines(),
            (Lines{"result.drawBase(0, 0, 50, 50)", "setFillColour(1, 1, 1, 1)", "fillRect(0, 0, 300, 200)",
                   "saveState()", "setStrokeColour(0.0118, 0.3725, 0.5608, 1)",
                   "strokeRectWithWidth(2, 2, 296, 196; 4)", "restoreState()"}));
}

TEST(ViewCleanResult, TakesTheKeyboard) {
  platform::headless::Events events;
  platform::headless::RecordingViewHost host("result", events, {10, 10, 300, 200});

  EXPECT_EQ(platform::makeCarried<controls::ViewCleanResult>(host).acceptsFirstResponder(), true);
}

TEST(ViewCleanResult, LetsTheMouseThrough) {
  platform::headless::Events events;
  platform::headless::RecordingViewHost host("result", events, {10, 10, 300, 200});
  platform::makeCarried<controls::ViewCleanResult>(host);

  EXPECT_FALSE(host.deliver(platform::headless::MouseEventKind::down, {5, 5}));
}

}  // namespace
}  // namespace zelvo::tests
