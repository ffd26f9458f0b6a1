#include "app/globals.h"

#include <cstdint>

#include "controls/view_transparent.h"
#include "engine/globals.h"
#include "platform/headless/view_host.h"
#include "tests/app/app_bench.h"

namespace zelvo::tests {
namespace {

/// As they are before anything runs: a reset comes only with the first test.
const struct AtStart {
  std::uint8_t negvalue = app::negvalue;
  std::uint64_t oSize = app::oSize;
  bool scanIsRunning = app::scanIsRunning;
  bool stopflag = engine::stopflag;
  bool validitycheck1 = engine::validitycheck1;
  bool flag = engine::flag;
  std::uint64_t inputfilesize = engine::inputfilesize;
  std::uint64_t globalsectorforsample = engine::globalsectorforsample;
} atStart;

TEST(GlobalsAtStart, NumbersAreZeroAndNothingIsSet) {
  EXPECT_EQ(atStart.negvalue, 0);
  EXPECT_EQ(atStart.oSize, 0U);
  EXPECT_FALSE(atStart.scanIsRunning);
  EXPECT_FALSE(atStart.stopflag);
  EXPECT_FALSE(atStart.validitycheck1);
  EXPECT_FALSE(atStart.flag);
  EXPECT_EQ(atStart.inputfilesize, 0U);
  EXPECT_EQ(atStart.globalsectorforsample, 0U);
}

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
