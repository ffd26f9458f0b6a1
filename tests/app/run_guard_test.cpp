#include "app/run_guard.h"

#include <atomic>
#include <future>
#include <thread>

#include "tests/app/app_bench.h"

namespace zelvo::tests {
namespace {

/// Keeps the values that come through.
class KeptProgress final : public engine::ProgressRelay {
 public:
  void setProgressBarValue(double percent) override {
    if (onValue) onValue();
    values.push_back(percent);
  }
  void updateProgressBar() override {}
  void updateSaveProgressBar() override {}
  void updateSaveProgressBar2() override {}
  void setMovieView(const std::string& path) override { movies.push_back(path); }
  std::function<void()> onValue;
  std::vector<double> values;
  Lines movies;
};

/// Keeps sheets until the test opens them.
class KeptSheets final : public platform::Sheets {
 public:
  void beginSheet(platform::Window&, platform::Window&, std::function<bool()> stillWanted) override {
    asked.push_back(std::move(stillWanted));
  }
  void endSheet(platform::Window&) override {}
  std::vector<std::function<bool()>> asked;
};

class RunGuard : public testing::Test {
 protected:
  void askForSheet(std::function<bool()> wanted = {}) { guard.beginSheet(window, window, std::move(wanted)); }
  platform::headless::HeadlessWindow window{"sheet", nullptr};
  KeptProgress progress;
  KeptSheets sheets;
  app::RunGuard guard{progress, sheets};
};

TEST_F(RunGuard, ProgressOfTheShownRunPasses) {
  guard.beginWork(guard.start());
  guard.setProgressBarValue(5);
  EXPECT_EQ(progress.values, std::vector<double>{5});
}

TEST_F(RunGuard, ProgressOfAHiddenRunIsDropped) {
  guard.beginWork(guard.start());
  guard.hideProgress();
  guard.setProgressBarValue(5);
  EXPECT_TRUE(progress.values.empty());
}

TEST_F(RunGuard, ProgressOfAnOlderRunIsDropped) {
  guard.beginWork(guard.start());
  guard.start();
  guard.setProgressBarValue(5);
  EXPECT_TRUE(progress.values.empty());
}

TEST_F(RunGuard, HidingWaitsForAValueThatIsBeingHandedOn) {
  guard.beginWork(guard.start());
  std::promise<void> handing;
  std::atomic<bool> hidden = false;
  bool wasHidden = false;
  progress.onValue = [&] {
    handing.set_value();
    for (int turn = 0; turn < 20000 && !wasHidden; ++turn) {
      std::this_thread::yield();
      wasHidden = hidden;
    }
  };
  std::thread worker([&] { guard.setProgressBarValue(5); });
  handing.get_future().wait();

  guard.hideProgress();
  hidden = true;
  worker.join();

  EXPECT_FALSE(wasHidden);
  EXPECT_EQ(progress.values, std::vector<double>{5});
}

TEST_F(RunGuard, AStopFromInsideAValueWaitsForNothing) {
  guard.beginWork(guard.start());
  progress.onValue = [this] { guard.hideProgress(); };
  guard.setProgressBarValue(5);
  guard.setProgressBarValue(6);
  EXPECT_EQ(progress.values, std::vector<double>{5});
}

TEST_F(RunGuard, OutsideOfARunEverythingPasses) {
  guard.beginWork(guard.start());
  guard.endWork();
  guard.hideProgress();
  guard.setProgressBarValue(0);
  EXPECT_EQ(progress.values, std::vector<double>{0});
}

TEST_F(RunGuard, TheFileOfAHiddenRunPassesButNotThatOfAnOlderOne) {
  guard.beginWork(guard.start());
  guard.hideProgress();
  guard.setMovieView("/a.avi");
  guard.start();
  guard.setMovieView("/b.avi");
  EXPECT_EQ(progress.movies, Lines{"/a.avi"});
}

TEST_F(RunGuard, ASheetOfAStoppedRunIsWanted) {
  guard.beginWork(guard.start());
  askForSheet();
  guard.hideProgress();
  EXPECT_TRUE(sheets.asked.at(0)());
}

TEST_F(RunGuard, ASheetIsDroppedOnceANewerRunWasStarted) {
  guard.beginWork(guard.start());
  askForSheet();
  guard.start();
  EXPECT_FALSE(sheets.asked.at(0)());
}

TEST_F(RunGuard, ASheetIsDroppedWhenTheProgramEnds) {
  guard.beginWork(guard.start());
  askForSheet();
  guard.close();
  EXPECT_FALSE(sheets.asked.at(0)());
}

TEST_F(RunGuard, ASheetOfAStoppedRunIsDroppedOnceAnotherFilmWasChosen) {
  guard.beginWork(guard.start());
  guard.hideProgress();
  askForSheet();
  guard.choiceMade();
  EXPECT_FALSE(sheets.asked.at(0)());
}

TEST_F(RunGuard, ASheetThatIsAskedForAfterTheChoiceIsDroppedToo) {
  guard.beginWork(guard.start());
  guard.hideProgress();
  guard.choiceMade();
  askForSheet();
  EXPECT_FALSE(sheets.asked.at(0)());
}

TEST_F(RunGuard, AChoiceDropsNoSheetOfARunThatIsShownNorOfALaterOne) {
  guard.beginWork(guard.start());
  guard.choiceMade();
  askForSheet();
  EXPECT_TRUE(sheets.asked.at(0)());
  guard.hideProgress();
  guard.choiceMade();
  guard.beginWork(guard.start());
  askForSheet();
  EXPECT_TRUE(sheets.asked.at(1)());
}

TEST_F(RunGuard, AChoiceDropsNothingThatIsAskedOutsideOfARun) {
  guard.start();
  guard.hideProgress();
  guard.choiceMade();
  askForSheet();
  EXPECT_TRUE(sheets.asked.at(0)());
}

TEST_F(RunGuard, WhatTheEngineAsksItselfStillCounts) {
  guard.beginWork(guard.start());
  askForSheet([] { return false; });
  EXPECT_FALSE(sheets.asked.at(0)());
}

}  // namespace
}  // namespace zelvo::tests
