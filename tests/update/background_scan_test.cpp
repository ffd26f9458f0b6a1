#include "update/background_scan.h"

#include <gtest/gtest.h>

#include "tests/update/fakes.h"

namespace zelvo::tests {
namespace {

class BackgroundScan : public testing::Test, protected UpdateBench {};

TEST_F(BackgroundScan, WhenIdleOneThreadIsStarted) {
  updates.autoUpdateScan({.scanIsRunning = false, .scanInfoOrSavingNotProcessing = true, .viewsOverlaidCount = 0});
  EXPECT_EQ(workers.waiting(), 1U);
  EXPECT_TRUE(web.asked.empty());
}

TEST_F(BackgroundScan, WhileAScanRunsNothingIsStarted) {
  updates.autoUpdateScan({.scanIsRunning = true, .scanInfoOrSavingNotProcessing = true, .viewsOverlaidCount = 0});
  EXPECT_EQ(workers.waiting(), 0U);
}

TEST_F(BackgroundScan, WhileWorkIsUnderWayNothingIsStarted) {
  updates.autoUpdateScan({.scanIsRunning = false, .scanInfoOrSavingNotProcessing = false, .viewsOverlaidCount = 0});
  EXPECT_EQ(workers.waiting(), 0U);
}

TEST_F(BackgroundScan, AnyOverlaidCountButZeroKeepsItFromStarting) {
  for (const std::int32_t count : {1, -1, 2}) {
    updates.autoUpdateScan(
        {.scanIsRunning = false, .scanInfoOrSavingNotProcessing = true, .viewsOverlaidCount = count});
  }
  EXPECT_EQ(workers.waiting(), 0U);
}

TEST_F(BackgroundScan, TheThreadChecksAndShowsNothing) {
  web.bodies[kListAddress] = listOf({{"CFBundleShortVersionString", "1.9"}});
  updates.autoUpdateScan({.scanIsRunning = false, .scanInfoOrSavingNotProcessing = true, .viewsOverlaidCount = 0});
  EXPECT_TRUE(workers.runNext());
  EXPECT_EQ(web.asked, Lines{kListAddress});
  EXPECT_TRUE(events.lines().empty());
}

}  // namespace
}  // namespace zelvo::tests
