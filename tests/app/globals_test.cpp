#include "app/globals.h"

#include "controls/view_transparent.h"
#include "platform/headless/view_host.h"
#include "tests/app/app_bench.h"

namespace zelvo::tests {
namespace {

using Globals = FlowTest;

TEST_F(Globals, NothingAssignsTheProcessWideOverlaySoItsCountStaysZero) {
  platform::headless::Events drawing;
  platform::headless::RecordingViewHost lower("lower", drawing, {0, 0, 0, 0});
  platform::headless::RecordingViewHost upper("upper", drawing, {0, 0, 0, 0});
  const auto first = controls::ViewTransparent::initWithFrame({0, 0, 10, 10}, &lower, app.notifications);
  const auto second = controls::ViewTransparent::initWithFrame({0, 0, 10, 10}, &upper, app.notifications);
  ASSERT_EQ(first->viewsOverlaidCount(), 1);

  reachResultPage();

  EXPECT_EQ(app::viewTransparentDummy, nullptr);
  EXPECT_EQ(controls::viewsOverlaidCountOf(app::viewTransparentDummy), 0);
}

}  // namespace
}  // namespace zelvo::tests
