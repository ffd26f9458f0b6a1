#include <algorithm>

#include "controls/view_transparent.h"
#include "platform/headless/view_host.h"
#include "tests/app/app_bench.h"

namespace zelvo::tests {
namespace {

using UpdateFlow = FlowTest;

TEST_F(UpdateFlow, EveryMemberIsHandedOver) {
  auto& controller = *app.controller;
  EXPECT_TRUE(controller.checkForUpdate());
  EXPECT_TRUE(controller.isInternetAvailable());
  controller.update();
  controller.autoUpdateScanningThread();
  controller.copyUpdator();
  controller.updateCleanupThread();
  EXPECT_TRUE(controller.isWriteDeletablePath("/a"));
  EXPECT_EQ(controller.md5(std::nullopt), "digest");
  EXPECT_EQ(controller.md5(std::span<const std::byte>()), "digest");
  EXPECT_EQ(controller.hashString("http://a"), "digest");
  EXPECT_EQ(app.takeEvents(), (Lines{"checkForUpdate", "isInternetAvailable", "update", "autoUpdateScanningThread",
                                     "copyUpdator", "updateCleanupThread", "isWriteDeletablePath(/a)", "md5(nothing)",
                                     "md5(0)", "hashString(http://a)"}));
}

TEST_F(UpdateFlow, BackgroundScanIsToldWhatTheControllerKnows) {
  app.start();
  app.controller->autoUpdateScan();
  app::scanIsRunning = true;
  app.controller->autoUpdateScan();
  app.controller->scanInfoOrSavingNotProcessing = false;
  app.controller->autoUpdateScan();
  EXPECT_EQ(app.takeEvents(), (Lines{"autoUpdateScan(not scanning, idle, 0)", "autoUpdateScan(scanning, idle, 0)",
                                     "autoUpdateScan(scanning, busy, 0)"}));
}

TEST_F(UpdateFlow, BackgroundScanIsToldTheOverlaysCount) {
  platform::headless::Events drawing;
  platform::headless::RecordingViewHost lower("lower", drawing, {0, 0, 0, 0});
  platform::headless::RecordingViewHost upper("upper", drawing, {0, 0, 0, 0});
  const auto first = controls::ViewTransparent::initWithFrame({0, 0, 10, 10}, &lower, app.notifications);
  const auto second = controls::ViewTransparent::initWithFrame({0, 0, 10, 10}, &upper, app.notifications);
  app.start();
  app::viewTransparentDummy = first.get();
  app.controller->autoUpdateScan();
  EXPECT_EQ(app.takeEvents(), Lines{"autoUpdateScan(not scanning, idle, 1)"});
}

TEST_F(UpdateFlow, StartUpChecksOnceAndNoFlowAsksForAnythingElse) {
  const Lines asked = {"checkForUpdate",
                       "isInternetAvailable",
                       "autoUpdateScan",
                       "copyUpdator",
                       "updateCleanup",
                       "isWriteDeletablePath",
                       "md5",
                       "hashString"};
  app.controller->init();
  app.controller->awakeFromNib();
  app.controller->applicationDidFinishLaunching();
  EXPECT_EQ(app.takeEvents(asked), Lines{"checkForUpdateClicked(nobody)"});

  app.choose(smallAvi());
  repairWhole();
  app.press(app.screen.repaircompletedokbutton);
  app.press(app.screen.previewbutton);
  app.press(app.screen.main3);
  runWorkers();
  app.controller->applicationWillTerminate();

  const Lines lines = app.events.lines();
  EXPECT_EQ(std::count(lines.begin(), lines.end(), "update"), 0);
  EXPECT_EQ(app.takeEvents(asked), Lines{});
}

}  // namespace
}  // namespace zelvo::tests
