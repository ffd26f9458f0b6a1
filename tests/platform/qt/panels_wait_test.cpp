#include <gtest/gtest.h>

#include <thread>

#include "tests/platform/qt/panel_bench.h"

namespace zelvo::tests {
namespace {

using platform::WaitPanel;
using platform::qt::FlatProgressBar;
using platform::qt::PanelFrame;

class WaitPanels : public testing::Test {
 protected:
  WaitPanel notice() {
    return {.title = "Finishing",
            .message = "Only a moment.",
            .cancelButton = "Give up",
            .percent = [this] { return percent; },
            .finished = [this] { return finished; }};
  }
  FlatProgressBar& bar() { return *bench.top()->findChildren<FlatProgressBar*>().front(); }

  PanelBench bench;
  double percent = 0.0;
  bool finished = false;
};

TEST_F(WaitPanels, WhatIsFinishedIsNotShown) {
  int shown = 0;
  bench.window.panels().setBeginObserver([&](PanelFrame&) { ++shown; });
  finished = true;
  EXPECT_TRUE(bench.waits.runWaitPanel(notice()));
  EXPECT_EQ(shown, 0);
}

TEST_F(WaitPanels, EndsAsSoonAsTheWorkHas) {
  std::thread worker;
  bench.later([&] { worker = std::thread([&] { bench.queue.perform([&] { finished = true; }); }); });
  EXPECT_TRUE(bench.waits.runWaitPanel(notice()));
  worker.join();
  EXPECT_TRUE(bench.window.panels().isEmpty());
}

TEST_F(WaitPanels, ButtonGivesUp) {
  bench.later([&] { bench.click(bench.button("Give up")); });
  EXPECT_FALSE(bench.waits.runWaitPanel(notice()));
}

TEST_F(WaitPanels, EscGivesUp) {
  bench.later([&] { bench.press(Qt::Key_Escape); });
  EXPECT_FALSE(bench.waits.runWaitPanel(notice()));
}

TEST_F(WaitPanels, EndOfTheProgramGivesUp) {
  std::optional<bool> answer;
  bench.later([&] {
    bench.later([&] { bench.application.terminate(); });
    answer = bench.waits.runWaitPanel(notice());
  });
  EXPECT_EQ(bench.application.run(), 0);
  EXPECT_EQ(answer, false);
  EXPECT_FALSE(bench.waits.runWaitPanel(notice()));
}

TEST_F(WaitPanels, BarFollowsTheWork) {
  percent = 25.0;
  std::vector<int> seen;
  bench.later([&] {
    seen.push_back(bar().value() * 100 / bar().maximum());
    percent = 75.0;
    bench.serveUntil([&] { return bar().value() * 100 / bar().maximum() == 75; });
    finished = true;
  });
  EXPECT_TRUE(bench.waits.runWaitPanel(notice()));
  EXPECT_EQ(seen, std::vector<int>{25});
}

TEST_F(WaitPanels, TitleMessageAndButtonAreShown) {
  bench.later([&] {
    EXPECT_TRUE(bench.says("Finishing"));
    EXPECT_TRUE(bench.says("Only a moment."));
    EXPECT_EQ(bench.buttonTitles(), std::vector<std::string>{"Give up"});
    EXPECT_EQ(bench.focus(), &bench.button("Give up"));
    finished = true;
  });
  EXPECT_TRUE(bench.waits.runWaitPanel(notice()));
}

TEST_F(WaitPanels, AlertAboveItIsAnsweredFirst) {
  int answer = 2;
  bench.later([&] {
    bench.later([&] { bench.press(Qt::Key_Return); });
    answer = bench.alerts.runAlertPanel(
        {.title = "Full", .message = {}, .defaultButton = {}, .alternateButton = {}, .otherButton = {}});
    finished = true;
  });
  EXPECT_TRUE(bench.waits.runWaitPanel(notice()));
  EXPECT_EQ(answer, platform::kAlertDefault);
}

}  // namespace
}  // namespace zelvo::tests
