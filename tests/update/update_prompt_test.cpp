#include "update/update_prompt.h"

#include <gtest/gtest.h>

#include "tests/update/fakes.h"

namespace zelvo::tests {
namespace {

constexpr const char* kQuestion =
    "alert(\"A newer version of Zelvo AVI Repair is available\", \"Do you want to update\", \"YES\", \"NO\", \"\")";
constexpr const char* kUpdaterLaunch =
    "launch(/Applications/Zelvo AVI Repair/.autoUpd.app/Contents/MacOS/Auto Updator.app, 512)";
constexpr const char* kNoUpdateLaunch = "launch(/Applications/.autoUpd.app, 512)";

class UpdatePrompt : public testing::Test, protected UpdateBench {
 protected:
  void publishOther() { web.bodies[kListAddress] = listOf({{"CFBundleShortVersionString", "1.9"}}); }
  Lines happened() { return events.lines(); }

  platform::headless::HeadlessButton button{"update1", &events};
};

TEST_F(UpdatePrompt, YesLaunchesTheUpdater) {
  publishOther();
  alerts.script({platform::kAlertDefault});
  updates.checkForUpdateClicked(nullptr);
  EXPECT_EQ(happened(), (Lines{kQuestion, kUpdaterLaunch}));
}

TEST_F(UpdatePrompt, NoLaunchesNothing) {
  publishOther();
  alerts.script({platform::kAlertAlternate});
  updates.checkForUpdateClicked(&button);
  EXPECT_EQ(happened(), Lines{kQuestion});
}

TEST_F(UpdatePrompt, TheThirdTitleIsThereAndEmpty) {
  publishOther();
  updates.checkForUpdateClicked(nullptr);
  ASSERT_EQ(alerts.shown().size(), 1U);
  EXPECT_EQ(alerts.shown().front().otherButton, "");
}

TEST_F(UpdatePrompt, AnyAnswerWhoseLowestByteIsNotZeroLaunches) {
  publishOther();
  alerts.script({-1, 2, 256, 257, -256});
  for (int answer = 0; answer < 5; ++answer) updates.checkForUpdateClicked(nullptr);
  EXPECT_EQ(happened(), (Lines{kQuestion, kUpdaterLaunch, kQuestion, kUpdaterLaunch, kQuestion, kQuestion,
                               kUpdaterLaunch, kQuestion}));
}

TEST_F(UpdatePrompt, WithoutAnUpdateASenderLaunchesTheOtherUpdater) {
  updates.checkForUpdateClicked(&button);
  EXPECT_EQ(happened(), Lines{kNoUpdateLaunch});
}

TEST_F(UpdatePrompt, WithoutAnUpdateStartUpDoesNothing) {
  updates.checkForUpdateClicked(nullptr);
  EXPECT_EQ(happened(), Lines{});
}

TEST_F(UpdatePrompt, WithoutANetworkASenderTakesTheWayOfNoUpdate) {
  publishOther();
  reachability.flags = std::nullopt;
  updates.checkForUpdateClicked(&button);
  EXPECT_EQ(happened(), Lines{kNoUpdateLaunch});
}

TEST_F(UpdatePrompt, AFailedLaunchIsNotTold) {
  publishOther();
  launcher.answer = false;
  alerts.script({platform::kAlertDefault});
  updates.checkForUpdateClicked(nullptr);
  EXPECT_EQ(happened(), (Lines{kQuestion, kUpdaterLaunch}));
}

TEST_F(UpdatePrompt, LaunchedPathsAreMappedBelowThePrefix) {
  platform::PathMapper mapper("/opt");
  update::VersionCheck check(reachability, bundle, files, web, lists);
  update::UpdatePrompt prompt(check, alerts, launcher, bundle, mapper);
  prompt.checkForUpdateClicked(&button);
  publishOther();
  alerts.script({platform::kAlertDefault});
  prompt.checkForUpdateClicked(&button);
  EXPECT_EQ(happened(),
            (Lines{"launch(/opt/zelvo/avi-repair/Applications/.autoUpd.app, 512)", kQuestion,
                   "launch(/opt/zelvo/avi-repair/Applications/Zelvo AVI Repair/.autoUpd.app/Contents/MacOS/Auto "
                   "Updator.app, 512)"}));
}

TEST_F(UpdatePrompt, UpdateLaunchesWhatLiesFourLevelsAboveTheBundle) {
  bundle.path = "/opt/zelvo/avi-repair/Applications/Zelvo AVI Repair/Zelvo AVI Repair.app";
  putOwnList(listOf({{"cloudPlistUrl", kListAddress}, {"CFBundleShortVersionString", "2.0"}}));
  publishOther();
  alerts.script({platform::kAlertDefault});
  updates.update();
  EXPECT_EQ(happened(), (Lines{kQuestion, "launch(/opt/zelvo/.autoUpd.app/Contents/MacOS/Auto Updator.app, 512)"}));
}

TEST_F(UpdatePrompt, UpdateAnsweredNoLaunchesNothing) {
  publishOther();
  alerts.script({platform::kAlertAlternate});
  updates.update();
  EXPECT_EQ(happened(), Lines{kQuestion});
}

TEST_F(UpdatePrompt, UpdateWithoutAnotherVersionAsksNothing) {
  updates.update();
  EXPECT_EQ(happened(), Lines{});
}

}  // namespace
}  // namespace zelvo::tests
