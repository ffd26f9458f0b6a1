// Runs on real threads: stops at any moment, a new run after an older one, and what the main thread sees of them.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "engine/repair_file.h"
#include "platform/headless/screen.h"
#include "platform/linux/main_queue.h"
#include "platform/linux/workers.h"
#include "tests/support/avi_builder.h"
#include "tests/support/engine_bench.h"
#include "tests/support/memory_files.h"

namespace zelvo::tests {
namespace {

using engine::RunEnd;

/// Keeps the last value, and acts once at a given count of values.
class CountingRelay final : public engine::ProgressRelay {
 public:
  explicit CountingRelay(platform::headless::Events& events) : events_(events) {}
  void setProgressBarValue(double percent) override {
    value = percent;
    if (++count_ == actAt) act();
  }
  void updateProgressBar() override { shown = value; }
  void updateSaveProgressBar() override {}
  void updateSaveProgressBar2() override {}
  void setMovieView(const std::string& path) override { events_.add("setMovieView(" + path + ")"); }

  platform::Relaxed<double> value;
  double shown = -1;  ///< main thread
  std::uint64_t actAt = 0;
  std::function<void()> act;

 private:
  platform::headless::Events& events_;
  std::atomic<std::uint64_t> count_ = 0;
};

class RunThreads : public testing::Test {
 protected:
  RunThreads() {
    engine::resetGlobals();
    job->controll = &relay;
  }
  ~RunThreads() override {
    workers.joinAll();
    engine::resetGlobals();
  }

  /// What the controller does when a file is chosen and its repair is started.
  void choose(const std::string& path, const std::string& output, platform::Bytes bytes) {
    engine::path.set(path);
    engine::inputfilesize = bytes.size();
    engine::internalpath.set(output);
    engine::stopflag = false;
    files.put(path, std::move(bytes));
  }
  std::shared_ptr<engine::Run> start() {
    auto run = engine::RepairFile::newRun();
    ++left;
    workers.start(run->cancel, [this, run] {
      job->retrieveAudioVideoSamples(run);
      queue.perform([this] { --left; });
    });
    return run;
  }
  /// The main thread's loop until every run has ended.
  void runMainThread() {
    queue.runUntil([this] { return left == 0; });
    workers.joinAll();
  }
  /// What the controller does when a stop is confirmed.
  static void stop(engine::Run& run) {
    engine::stopflag = true;
    run.cancel->cancel();
  }

  bool happened(const std::string& event) {
    const auto lines = events.lines();
    return std::find(lines.begin(), lines.end(), event) != lines.end();
  }

  platform::headless::Events events;
  MemoryFiles files;
  platform::headless::Screen screen;
  platform::linux_::LinuxMainQueue queue{std::chrono::milliseconds(0)};
  platform::linux_::LinuxWorkers workers;
  platform::headless::HeadlessSheets sheets{queue, &events};
  platform::headless::HeadlessMovieLoader movies{&events};
  platform::headless::HeadlessLog log{nullptr};
  CountingRelay relay{events};
  std::unique_ptr<engine::RepairFile> job = std::make_unique<engine::RepairFile>(
      engine::RepairServices{files, files, movies, workers, queue, sheets, log}, screen.job);
  int left = 0;  ///< runs that have not ended; main thread
};

platform::Bytes input(int pairs = 100) { return AviBuilder().interleaved(pairs, 9000, 701).build(); }

/// The file that a run of its own makes of `bytes`.
platform::Bytes rebuilt(platform::Bytes bytes) {
  EngineBench bench;
  bench.choose(std::move(bytes));
  bench.run();
  return bench.output();
}

TEST_F(RunThreads, WholeRunGivesTheSameFileAsOnOneThread) {
  const platform::Bytes expected = rebuilt(input());
  choose("/in.avi", "/out.avi", input());

  start();
  runMainThread();

  EXPECT_EQ(files.content("/out.avi"), expected);
  EXPECT_EQ(sheets.shown(), std::vector<std::string>{"repaircompletedwindow"});
  EXPECT_EQ(relay.shown, 100.0);
  EXPECT_FALSE(screen.stopbutton.isEnabled());
}

class StoppedRun : public RunThreads, public testing::WithParamInterface<unsigned> {
 protected:
  /// Sizes that the output may have, once its tables are as they are.
  std::vector<std::uint64_t> possibleSizes() const {
    const std::uint64_t whole = 8 + job->layout.RIFFLISTsize;
    const std::uint64_t audio = job->layout.audiodatasize + 8 * job->audiosamplecount;
    const std::uint64_t video = job->layout.videodatasize + 8 * job->videosamplecount;
    return {whole, whole - audio, whole - audio - video};
  }
};

TEST_P(StoppedRun, EndsInOneOfTheStatesThatAStopLeaves) {
  std::mt19937 random(GetParam());
  choose("/in.avi", "/out.avi", input());
  // 1 value of the check, 1025 of the harvest, one per block of the scan, ten of the animation.
  const std::uint64_t blocks = files.at("/in.avi").size / 1024;
  relay.actAt = 1 + random() % (1026 + 11 * blocks);
  const bool byFlagAlone = GetParam() % 3 == 0;
  // Known before it starts, so that its first value may stop it.
  const std::shared_ptr<engine::Run> run = engine::RepairFile::newRun();
  relay.act = [&] {
    engine::stopflag = true;
    if (!byFlagAlone) run->cancel->cancel();
  };
  ++left;
  workers.start(run->cancel, [&] {
    job->retrieveAudioVideoSamples(run);
    queue.perform([&] { --left; });
  });
  runMainThread();

  EXPECT_FALSE(happened("beginSheet(repaircompletedwindow, mainWindow)"));
  if (job->runEnd == RunEnd::notSupported) {
    EXPECT_FALSE(files.has("/out.avi"));
    EXPECT_EQ(sheets.shown(), std::vector<std::string>{"filenotsupportedwindow"});
    return;
  }
  EXPECT_EQ(job->runEnd, RunEnd::rebuilt);
  EXPECT_TRUE(happened("setMovieView(/out.avi)"));
  const std::vector<std::uint64_t> sizes = possibleSizes();
  EXPECT_NE(std::find(sizes.begin(), sizes.end(), files.content("/out.avi").size()), sizes.end());
  EXPECT_FALSE(job->writeFailure.get().has_value());
}

INSTANTIATE_TEST_SUITE_P(Seeds, StoppedRun, testing::Range(1U, 31U), testing::PrintToStringParamName());

class AbandonedRun : public RunThreads, public testing::WithParamInterface<unsigned> {};

TEST_P(AbandonedRun, EndsWithoutHandingOverAFile) {
  std::mt19937 random(GetParam());
  choose("/in.avi", "/out.avi", input());
  const auto run = engine::RepairFile::newRun();
  relay.actAt = 1 + random() % (1026 + files.at("/in.avi").size / 1024);
  relay.act = [&] { run->cancel->abandon(); };
  ++left;
  workers.start(run->cancel, [&] {
    job->retrieveAudioVideoSamples(run);
    queue.perform([&] { --left; });
  });
  runMainThread();

  EXPECT_FALSE(files.has("/out.avi"));
  EXPECT_FALSE(happened("setMovieView(/out.avi)"));
  EXPECT_FALSE(happened("beginSheet(repaircompletedwindow, mainWindow)"));
}

INSTANTIATE_TEST_SUITE_P(Seeds, AbandonedRun, testing::Range(1U, 11U), testing::PrintToStringParamName());

// ---- A new run after an older one ----

/// The older run is held in its video copy until the gate opens.
class RunBehindAnother : public RunThreads {
 protected:
  void startAndHoldInTheVideoCopy() {
    choose("/in1.avi", "/out1.avi", input());
    files.at("/in1.avi").onRead = [this](std::uint64_t, std::size_t) {
      if (!files.has("/out1.avi")) return;
      copying = true;
      while (!gateOpen) std::this_thread::yield();
    };
    older = start();
    while (!copying) std::this_thread::yield();
  }
  /// Where an event stands in the list; its length when it did not happen.
  std::size_t place(const std::string& event) {
    const auto lines = events.lines();
    return static_cast<std::size_t>(std::find(lines.begin(), lines.end(), event) - lines.begin());
  }

  std::atomic<bool> copying = false;
  std::atomic<bool> gateOpen = false;
  std::shared_ptr<engine::Run> older;
};

TEST_F(RunBehindAnother, WaitsForItAndIsWhole) {
  startAndHoldInTheVideoCopy();
  stop(*older);
  choose("/in2.avi", "/out2.avi", input(80));
  start();

  gateOpen = true;
  runMainThread();

  EXPECT_LT(place("setMovieView(/out1.avi)"), place("movieWithFile(/in2.avi)"));
  EXPECT_LT(place("movieWithFile(/in2.avi)"), place("setMovieView(/out2.avi)"));
  EXPECT_EQ(files.content("/out2.avi"), rebuilt(input(80)));
  EXPECT_EQ(sheets.shown(), std::vector<std::string>{"repaircompletedwindow"});
}

TEST_F(RunBehindAnother, ChoosingTheNextFileNeverWakesTheOlderRun) {
  startAndHoldInTheVideoCopy();
  stop(*older);
  choose("/in2.avi", "/out2.avi", input(80));  // clears the stop flag
  const platform::Bytes whole = rebuilt(input());

  gateOpen = true;
  runMainThread();

  // Its video copy runs to its end, and the audio is still skipped.
  EXPECT_EQ(files.content("/out1.avi").size(), whole.size() - job->layout.audiodatasize - 8 * job->audiosamplecount);
  EXPECT_TRUE(sheets.shown().empty());
  EXPECT_FALSE(engine::stopflag);
}

TEST_F(RunBehindAnother, OlderRunKeepsWorkingOnItsOwnFileAndPath) {
  startAndHoldInTheVideoCopy();
  choose("/in2.avi", "/out2.avi", input(80));

  gateOpen = true;
  runMainThread();

  EXPECT_EQ(files.content("/out1.avi"), rebuilt(input()));
  EXPECT_FALSE(files.has("/out2.avi"));
  EXPECT_TRUE(happened("setMovieView(/out1.avi)"));
}

TEST_F(RunBehindAnother, CancelledWhileItWaitsDoesNothing) {
  startAndHoldInTheVideoCopy();
  choose("/in2.avi", "/out2.avi", input(80));
  const std::shared_ptr<engine::Run> waiting = start();
  waiting->cancel->cancel();

  gateOpen = true;
  runMainThread();

  EXPECT_FALSE(happened("movieWithFile(/in2.avi)"));
  EXPECT_FALSE(files.has("/out2.avi"));
  EXPECT_EQ(files.content("/out1.avi"), rebuilt(input()));
}

TEST_F(RunThreads, OfManyRunsStartedAndStoppedOneAfterTheOtherTheLastIsWhole) {
  std::shared_ptr<engine::Run> last;
  for (int i = 0; i < 20; ++i) {
    if (last) stop(*last);
    choose("/in.avi", "/out" + std::to_string(i) + ".avi", input(70));
    last = start();
  }

  runMainThread();

  EXPECT_EQ(files.content("/out19.avi"), rebuilt(input(70)));
  EXPECT_EQ(sheets.shown().size(), 1U + (happened("beginSheet(filenotsupportedwindow, mainWindow)") ? 1U : 0U));
}

// ---- Sheets that were queued before a stop ----

TEST_F(RunThreads, CompletedSheetQueuedBeforeAStopIsDroppedWhenItWouldOpen) {
  choose("/in.avi", "/out.avi", input());
  const std::shared_ptr<engine::Run> run = start();
  workers.joinAll();  // everything is queued, nothing has been shown

  stop(*run);
  runMainThread();

  EXPECT_TRUE(sheets.shown().empty());
  EXPECT_TRUE(happened("beginSheet(repaircompletedwindow) dropped"));
}

TEST_F(RunThreads, CompletedSheetIsDroppedEvenAfterTheNextFileWasChosen) {
  choose("/in.avi", "/out.avi", input());
  const std::shared_ptr<engine::Run> run = start();
  workers.joinAll();

  stop(*run);
  choose("/in2.avi", "/out2.avi", input());
  runMainThread();

  EXPECT_TRUE(sheets.shown().empty());
}

TEST_F(RunThreads, InvalidFileSheetQueuedBeforeAStopStillOpens) {
  choose("/in.avi", "/out.avi", platform::Bytes(5000, std::byte{0x20}));
  const std::shared_ptr<engine::Run> run = start();
  workers.joinAll();

  stop(*run);
  runMainThread();

  EXPECT_EQ(sheets.shown(), std::vector<std::string>{"invalidfilewindow"});
}

TEST_F(RunThreads, NotSupportedSheetQueuedBeforeAStopStillOpens) {
  AviBuilder videoOnly;
  videoOnly.withAudioStream = false;
  choose("/in.avi", "/out.avi", videoOnly.atLeast(600000).build());
  const std::shared_ptr<engine::Run> run = start();
  workers.joinAll();

  stop(*run);
  runMainThread();

  EXPECT_EQ(sheets.shown(), std::vector<std::string>{"filenotsupportedwindow"});
}

TEST_F(RunThreads, CompletedSheetIsDroppedWhenTheWriteFailsAfterTheAnimation) {
  choose("/in.avi", "/out.avi", input());
  files.put("/out.avi", {}).badWriteFrom = 100000;
  files.at("/out.avi").writeError = std::make_error_code(std::errc::no_space_on_device);
  start();
  workers.joinAll();
  runMainThread();

  EXPECT_TRUE(sheets.shown().empty());
  EXPECT_TRUE(job->writeFailure.get().has_value());
  EXPECT_TRUE(happened("setMovieView(/out.avi)"));
}

}  // namespace
}  // namespace zelvo::tests
