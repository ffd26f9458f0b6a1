// The flows with real threads: workers of the system, and a main thread that serves a queue. Moments are picked by a
// seeded generator; nothing sleeps, and nothing depends on which thread is faster.
#include <atomic>
#include <chrono>
#include <future>
#include <random>

#include "engine/padded_copy.h"
#include "platform/linux/main_queue.h"
#include "platform/linux/workers.h"
#include "tests/app/app_bench.h"
#include "tests/support/avi_builder.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;

/// The input is just over 512 KiB, so that a run is quick.
class Threads : public testing::Test {
 protected:
  Threads() {
    app.application.onDeliverRedraws = [this] { queue.runDueRedraws(); };
    app.waits.onWait = [this](const platform::WaitPanel& notice) {
      queue.runUntil(notice.finished);
      return true;
    };
    app.start();
  }
  ~Threads() override { quit(); }

  void quit() {
    app.controller->applicationWillTerminate();
    queue.runUntil([] { return true; });
  }
  void choose() { app.choose(avi, kInput); }
  void start() { ASSERT_TRUE(app.press(app.screen.repairbutton)); }
  void serveUntil(const std::function<bool()>& done) { queue.runUntil(done); }
  /// Serves the main queue for a few turns, until the run has come to a certain percentage, or to its end.
  void serveToARandomMoment() {
    if (random() % 4 == 0) return;
    const double percent = static_cast<double>(random() % 101);
    auto turns = static_cast<int>(random() % 40);
    serveUntil([&] { return turns-- <= 0 || app.controller->progressbarValue > percent; });
  }
  void finishRun() {
    serveUntil([this] { return app.isShown(app.screen.repaircompletedwindow); });
    app.press(app.screen.repaircompletedokbutton);
    serveUntil([this] { return app.controller->mythread->finished(); });
  }
  /// What a run alone makes of the input.
  Bytes rebuiltAlone() {
    choose();
    start();
    finishRun();
    const Bytes rebuilt = app.files.content(*app.controller->unipath());
    app.press(app.screen.main3);
    return rebuilt;
  }

  std::mt19937 random{20240613};  // NOLINT: the same moments every time
  const Bytes avi = AviBuilder().interleaved(45, 10000, 1800).build();
  platform::linux_::LinuxMainQueue queue{std::chrono::milliseconds(1)};
  platform::linux_::LinuxWorkers workers;
  AppBench app{queue, workers, false};
};

TEST_F(Threads, AThousandStartsAndStopsAtRandomMomentsLeaveTheLastRunWhole) {
  const Bytes alone = rebuiltAlone();
  for (int i = 0; i < 1000; ++i) {
    choose();
    start();
    serveToARandomMoment();
    app.press(app.screen.repaircompletedokbutton);
    ASSERT_TRUE(app.press(app.screen.stoprepairokbutton));
    ASSERT_EQ(app.screen.tabview.page(), 1);
    ASSERT_EQ(app.controller->progressbarValue, 0.0);
  }
  choose();
  start();
  finishRun();

  EXPECT_EQ(app.files.content(*app.controller->unipath()), alone);
  EXPECT_EQ(*app.controller->unipath(), engine::internalpath.get());
}

TEST_F(Threads, AStoppedRunNeverMovesTheBarOfTheNext) {
  for (int i = 0; i < 100; ++i) {
    choose();
    start();
    serveToARandomMoment();
    app.press(app.screen.stoprepairokbutton);
    serveUntil([] { return true; });
    ASSERT_EQ(app.screen.progressbar.doubleValue(), 0.0);
  }
}

TEST_F(Threads, ChoosingAndStartingWhileTheStoppedRunStillWorksMixesNothing) {
  const Bytes alone = rebuiltAlone();
  const Bytes other = AviBuilder().interleaved(60, 8000, 1200).build();
  for (int i = 0; i < 50; ++i) {
    app.choose(other, "/films/other.avi");
    start();
    serveToARandomMoment();
    app.press(app.screen.stoprepairokbutton);
    choose();
    start();
    finishRun();
    ASSERT_EQ(app.files.content(*app.controller->unipath()), alone) << i;
    app.press(app.screen.main3);
  }
}

TEST_F(Threads, WhatAStoppedRunWroteIsGoneBeforeTheNextOneWritesThoughTheMainThreadServesNothing) {
  constexpr std::chrono::seconds kLongest(60);
  std::promise<void> writing;
  std::promise<void> stopped;
  std::promise<bool> nextWrites;
  app.files.onTouch = [&, go = stopped.get_future().share()](const std::string& what) {
    if (what == "openForWriting(/Applications/testfile1.avi)") {
      writing.set_value();
      EXPECT_EQ(go.wait_for(kLongest), std::future_status::ready) << "nobody stopped the run";
    }
    if (what == "createFile(/Applications/testfile2.avi)") nextWrites.set_value(app.files.has(kScratch1));
  };
  choose();
  start();
  ASSERT_EQ(writing.get_future().wait_for(kLongest), std::future_status::ready) << "the first run never wrote";
  ASSERT_TRUE(app.files.has(kScratch1));

  app.press(app.screen.stoprepairokbutton);
  choose();
  start();
  stopped.set_value();

  auto wasThere = nextWrites.get_future();
  ASSERT_EQ(wasThere.wait_for(kLongest), std::future_status::ready) << "the second run never wrote";
  EXPECT_FALSE(wasThere.get());
  finishRun();
}

TEST_F(Threads, HomeAtRandomMomentsLeavesNoFileOfTheAbandonedRun) {
  for (int i = 0; i < 50; ++i) {
    choose();
    start();
    serveToARandomMoment();
    app.press(app.screen.main3);
    const auto run = app.controller->mythread;
    serveUntil([&] { return run->finished(); });
    ASSERT_FALSE(app.files.has(kScratch1)) << i;
    ASSERT_FALSE(app.files.has(kScratch2)) << i;
  }
}

TEST_F(Threads, ASaveDuringTheWritingWaitsForTheWholeFile) {
  const Bytes alone = rebuiltAlone();
  Bytes expected = alone;
  expected.resize(engine::paddedCopySize(alone.size()));
  const std::size_t rest = alone.size() % engine::kPaddedBlockSize;
  std::copy_n(alone.end() - static_cast<std::ptrdiff_t>(rest), rest,
              expected.end() - static_cast<std::ptrdiff_t>(rest));

  for (int i = 0; i < 30; ++i) {
    const std::string folder = "/home/user/Repaired" + std::to_string(i);
    choose();
    start();
    serveToARandomMoment();
    ASSERT_TRUE(app.press(app.screen.savebutton));
    ASSERT_TRUE(app.panels.lastSavePanel()->choose(folder));
    serveUntil([this] { return app.isShown(app.screen.savecompletedwindow); });
    ASSERT_EQ(app.files.content(folder + "/repaired.avi"), expected) << i;
    app.press(app.screen.savecompletedokbutton);
    app.press(app.screen.repaircompletedokbutton);
    app.press(app.screen.main3);
  }
}

TEST_F(Threads, TheSheetsOfASaveOpenAfterTheCopy) {
  rebuiltAlone();
  choose();
  start();
  finishRun();
  // The worker may be through long before the copy is.
  int looks = 0;
  app.application.onDeliverRedraws = [&] {
    queue.runDueRedraws();
    ++looks;
    EXPECT_FALSE(app.isShown(app.screen.savecompletedwindow));
    EXPECT_TRUE(app.isShown(app.screen.saveprogresspanel));
  };

  app.press(app.screen.savebutton);
  app.panels.lastSavePanel()->choose("/home/user/Repaired");

  EXPECT_GT(looks, 0);
  serveUntil([this] { return app.isShown(app.screen.savecompletedwindow); });
  EXPECT_FALSE(app.isShown(app.screen.saveprogresspanel));
}

TEST_F(Threads, ASaveStoppedAtARandomMomentShowsNoCompletion) {
  rebuiltAlone();
  choose();
  start();
  finishRun();
  for (int i = 0; i < 50; ++i) {
    ASSERT_TRUE(app.press(app.screen.savebutton));
    ASSERT_TRUE(app.panels.lastSavePanel()->choose("/home/user/Repaired"));
    auto turns = static_cast<int>(random() % 5);
    if (turns < 4) serveUntil([&] { return turns-- <= 0; });
    if (app.isShown(app.screen.savecompletedwindow)) {
      app.press(app.screen.savecompletedokbutton);
      continue;
    }
    app.press(app.screen.stopsavingOKbutton);
    serveUntil([] { return true; });
    ASSERT_FALSE(app.isShown(app.screen.savecompletedwindow));
  }
  ASSERT_TRUE(app.press(app.screen.savebutton));
  ASSERT_TRUE(app.panels.lastSavePanel()->choose("/home/user/Repaired"));
  serveUntil([this] { return app.isShown(app.screen.savecompletedwindow); });
}

TEST_F(Threads, AQuitDuringTheProgressOfASaveEndsIt) {
  choose();
  start();
  finishRun();
  engine::inputfilesize = std::uint64_t{400} * 1000 * 1000;  // four million steps
  app.press(app.screen.savebutton);
  app.panels.lastSavePanel()->choose("/home/user/Repaired");

  quit();

  EXPECT_FALSE(app.isShown(app.screen.savecompletedwindow));
  EXPECT_FALSE(app.files.has(kScratch1));
}

TEST_F(Threads, AQuitEndsAWorkerThatWaitsForTheMainThread) {
  workers.start(std::make_shared<platform::CancelMark>(), [this] { app.controller->nexttab(); });
  workers.start(std::make_shared<platform::CancelMark>(), [this] { app.controller->copyfile(); });

  quit();  // waits for both
}

/// A quit in the middle of each stage: the run stands still there until the quit has abandoned it.
class ThreadsQuit : public testing::TestWithParam<std::string> {};

TEST_P(ThreadsQuit, EndsEveryThreadAndLeavesNoScratchFile) {
  constexpr std::chrono::seconds kLongest(60);
  const std::string stage = GetParam();
  platform::linux_::LinuxMainQueue queue{std::chrono::milliseconds(1)};
  platform::linux_::LinuxWorkers workers;
  AppBench app{queue, workers, false};
  app.start();
  std::atomic<bool> stood = false;
  std::promise<void> reached;
  std::promise<void> quitting;
  const auto stand = [&, abandoned = quitting.get_future().share()](const std::string& at) {
    if (at != stage || stood.exchange(true)) return;
    reached.set_value();
    EXPECT_EQ(abandoned.wait_for(kLongest), std::future_status::ready) << "nobody abandoned the run";
  };
  app.clock.onEndSleeps = [&] { quitting.set_value(); };
  app.choose(smallAvi()).onRead = [&](std::uint64_t, std::size_t) { stand("begun"); };
  app.screen.status.onText = [&](std::string_view text) { stand(std::string(text)); };
  std::atomic<bool> created = false;
  app.files.onTouch = [&](const std::string& what) {
    if (what.starts_with("createFile")) created = true;
    if (what.starts_with("openForWriting")) stand("writing");
  };
  app.press(app.screen.repairbutton);
  ASSERT_EQ(reached.get_future().wait_for(kLongest), std::future_status::ready)
      << "never reached; the status is " << app.screen.status.stringValue();

  app.controller->applicationWillTerminate();
  queue.runUntil([] { return true; });

  EXPECT_TRUE(app.controller->mythread->finished());
  EXPECT_FALSE(app.files.has(kScratch1));
  EXPECT_EQ(app.files.content(kInput), smallAvi());
  EXPECT_TRUE(app.sheets.shown().empty());
  if (stage == "writing") {
    EXPECT_EQ(app.controller->repair1->runEnd, engine::RunEnd::abandoned);
  } else if (stage != "Repairing the file..") {  // the animation begins beside the writer
    EXPECT_FALSE(created);
  }
}

INSTANTIATE_TEST_SUITE_P(AtEachStage, ThreadsQuit,
                         testing::Values("begun", "Analyzing the file..", "Retrieving audio/ video data forks..",
                                         "writing", "Repairing the file.."),
                         [](const auto& stage) {
                           return std::string(stage.param.substr(0, stage.param.find_first_of(" .")));
                         });

}  // namespace
}  // namespace zelvo::tests
