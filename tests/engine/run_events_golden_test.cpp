// Whole runs as lists of everything that happens, in order: a run to its end, a stop at each stage, both rejections,
// and every kind of error. The lists are in tests/golden/run_*.txt.
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>

#include "engine/repair_file.h"
#include "tests/support/avi_builder.h"
#include "tests/support/engine_bench.h"
#include "tests/support/event_text.h"
#include "tests/support/golden.h"

namespace zelvo::tests {
namespace {

/// Notes when a worker is started and when its body runs.
class NotingWorkers final : public platform::Workers {
 public:
  NotingWorkers(platform::headless::HeadlessWorkers& workers, platform::headless::Events& events)
      : workers_(workers), events_(events) {}
  std::shared_ptr<platform::Worker> start(std::shared_ptr<platform::CancelMark> mark,
                                          std::function<void()> body) override {
    events_.add("animation worker started");
    return workers_.start(std::move(mark), [this, work = std::move(body)] {
      events_.add("animation worker runs");
      work();
      events_.add("animation worker ends");
    });
  }
  std::shared_ptr<platform::Worker> startHelper(std::function<void()> body) override {
    return workers_.startHelper(std::move(body));
  }
  void joinAll() override { workers_.joinAll(); }
  [[nodiscard]] unsigned processors() const override { return workers_.processors(); }

 private:
  platform::headless::HeadlessWorkers& workers_;
  platform::headless::Events& events_;
};

class RunEvents : public testing::Test {
 protected:
  RunEvents() {
    bench.relay.writesEvents = true;
    bench.files.onTouch = [this](const std::string& what) { bench.events.add(what); };
    bench.job = std::make_unique<engine::RepairFile>(
        engine::RepairServices{bench.files, bench.files, bench.movies, workers, bench.queue, bench.sheets, bench.log},
        bench.screen.job);
    bench.job->controll = &bench.relay;
    AviBuilder avi;
    avi.interleaved(60, 10000, 1001);
    input = &bench.choose(avi.build());
    current = engine::RepairFile::newRun();
  }

  /// Runs, and compares the events and what is left of the output.
  void expectRun(const std::string& golden) {
    bench.job->retrieveAudioVideoSamples(current);
    EXPECT_TRUE(matchesGolden("run_" + golden, foldedEvents(bench.events.lines()) + outputText()));
  }

  std::string outputText() {
    if (!bench.files.has("/out.avi")) return "no output\n";
    const std::uint64_t size = bench.output().size();
    const std::uint64_t whole = 8 + bench.job->layout.RIFFLISTsize;
    // How many chunks an abandoned copy still takes is left open.
    if (current->cancel->abandoned() && size < whole) return "output: cut short\n";
    return "output: " + std::to_string(size) + " bytes of " + std::to_string(whole) + "\n";
  }

  void stop() {
    bench.events.add("-- stop --");
    engine::stopflag = true;
  }
  void abandon() {
    bench.events.add("-- abandon --");
    current->cancel->abandon();
  }
  /// Calls `action` at the first read of the video copy. Reads come from two threads.
  void whenVideoIsCopied(const std::function<void()>& action) {
    input->onRead = [this, action](std::uint64_t, std::size_t) {
      if (bench.files.has("/out.avi") && !acted.exchange(true)) action();
    };
  }
  /// Calls `action` at the first read of the audio copy: only its reads start in an audio chunk.
  void whenAudioIsCopied(const std::function<void()>& action) {
    input->onRead = [this, action](std::uint64_t at, std::size_t) {
      if (!bench.files.has("/out.avi") || (at - kFirstVideo) % (kVideoChunk + kAudioChunk) < kVideoChunk) return;
      if (!acted.exchange(true)) action();
    };
  }

  static constexpr std::uint64_t kFirstVideo = 338;
  static constexpr std::uint64_t kVideoChunk = 8 + 10000;
  static constexpr std::uint64_t kAudioChunk = 8 + 1001 + 1;
  std::atomic<bool> acted = false;
  EngineBench bench;
  NotingWorkers workers{bench.workers, bench.events};
  MemoryFile* input = nullptr;
  std::shared_ptr<engine::Run> current;
};

TEST_F(RunEvents, WholeRun) { expectRun("whole"); }

TEST_F(RunEvents, WholeRunOnOneProcessorIsTheSame) {
  bench.workers.setProcessors(1);
  expectRun("whole");
}

TEST_F(RunEvents, StopBeforeTheRun) {
  stop();
  expectRun("stop_before");
}

TEST_F(RunEvents, StopDuringTheValidityCheck) {
  bench.relay.onValue = [this](double value) {
    if (value == 100.0) stop();  // the check's own value
  };
  expectRun("stop_in_validity_check");
}

TEST_F(RunEvents, StopDuringTheHarvestBeforeTheHeadersAreFound) {
  platform::Bytes late(20000, std::byte{0x20});
  overwrite(late, 0, "AVI ");
  late.insert(late.end(), input->bytes.begin(), input->bytes.end());
  input = &bench.choose(std::move(late));
  current = engine::RepairFile::newRun();
  bench.relay.onValue = [this](double value) {
    if (value == 10.0 && !engine::stopflag) stop();  // block 5
  };
  expectRun("stop_in_harvest_before_headers");
}

TEST_F(RunEvents, StopDuringTheHarvestAfterTheHeadersAreFound) {
  bench.relay.onValue = [this](double value) {
    if (value == 2.0 && bench.job->audiostrfcodecfound && !engine::stopflag) stop();
  };
  expectRun("stop_in_harvest_after_headers");
}

TEST_F(RunEvents, StopDuringTheScan) {
  bench.relay.onValue = [this](double) {
    if (bench.job->videosamplecount == 30 && !engine::stopflag) stop();
  };
  expectRun("stop_in_scan");
}

TEST_F(RunEvents, StopBeforeTheVideoCopy) {
  bench.files.onTouch = [this](const std::string& what) {
    bench.events.add(what);
    if (what.starts_with("openForWriting")) stop();
  };
  expectRun("stop_before_video_copy");
}

TEST_F(RunEvents, StopDuringTheVideoCopy) {
  whenVideoIsCopied([this] { stop(); });
  expectRun("stop_in_video_copy");
}

TEST_F(RunEvents, StopDuringTheAudioCopy) {
  whenAudioIsCopied([this] { stop(); });
  expectRun("stop_in_audio_copy");
}

TEST_F(RunEvents, StopAfterTheCopy) {
  bench.relay.onMovie = [this](const std::string&) { stop(); };
  expectRun("stop_after_copy");
}

TEST_F(RunEvents, InvalidFile) {
  input = &bench.choose(platform::Bytes(3000, std::byte{0x20}));
  current = engine::RepairFile::newRun();
  expectRun("invalid");
}

TEST_F(RunEvents, MissingFile) {
  bench.choose({});
  static_cast<void>(bench.files.remove("/in.avi"));
  bench.chooseClaiming(700000);
  current = engine::RepairFile::newRun();
  expectRun("missing");
}

TEST_F(RunEvents, NotSupportedFile) {
  AviBuilder avi;
  avi.withAudioStream = false;
  bench.choose(avi.atLeast(600000).build());
  current = engine::RepairFile::newRun();
  expectRun("not_supported");
}

TEST_F(RunEvents, AbandonedDuringTheScan) {
  bench.relay.onValue = [this](double) {
    if (bench.job->videosamplecount == 30 && !current->cancel->abandoned()) abandon();
  };
  expectRun("abandoned_in_scan");
}

TEST_F(RunEvents, AbandonedDuringTheVideoCopy) {
  whenVideoIsCopied([this] { abandon(); });
  expectRun("abandoned_in_video_copy");
}

TEST_F(RunEvents, Refused) {
  current->mayWrite = [this](std::uint64_t bytes) {
    bench.events.add("mayWrite(" + std::to_string(bytes) + ") no");
    return false;
  };
  expectRun("refused");
}

TEST_F(RunEvents, Allowed) {
  current->mayWrite = [this](std::uint64_t bytes) {
    bench.events.add("mayWrite(" + std::to_string(bytes) + ") yes");
    return true;
  };
  expectRun("allowed");
}

TEST_F(RunEvents, OutputThatCannotBeCreated) {
  bench.files.refuse("/out.avi", std::make_error_code(std::errc::permission_denied));
  expectRun("create_fails");
}

TEST_F(RunEvents, OutputThatCannotBeOpened) {
  bench.files.onTouch = [this](const std::string& what) {
    bench.events.add(what);
    if (what.starts_with("openForWriting")) {
      bench.files.refuse("/out.avi", std::make_error_code(std::errc::permission_denied));
    }
  };
  expectRun("open_fails");
}

TEST_F(RunEvents, DiskThatIsFullInTheMiddle) {
  MemoryFile& output = bench.files.put("/out.avi", {});
  output.badWriteFrom = 300000;
  output.writeError = std::make_error_code(std::errc::no_space_on_device);
  expectRun("disk_full");
}

TEST_F(RunEvents, CloseThatFails) {
  bench.files.put("/out.avi", {}).closeError = std::make_error_code(std::errc::io_error);
  expectRun("close_fails");
}

TEST_F(RunEvents, ReadErrors) {
  input->badReadStart = 200000;
  input->badReadEnd = 200001;
  input->readError = std::make_error_code(std::errc::io_error);
  expectRun("read_errors");
}

/// An animation that ends before the writer begins: with threads it may come so.
class HastyWorkers final : public platform::Workers {
 public:
  explicit HastyWorkers(platform::headless::HeadlessWorkers& workers) : workers_(workers) {}
  std::shared_ptr<platform::Worker> start(std::shared_ptr<platform::CancelMark> mark,
                                          std::function<void()> body) override {
    auto worker = workers_.start(std::move(mark), std::move(body));
    worker->join();
    return worker;
  }
  std::shared_ptr<platform::Worker> startHelper(std::function<void()> body) override {
    return workers_.startHelper(std::move(body));
  }
  void joinAll() override { workers_.joinAll(); }
  [[nodiscard]] unsigned processors() const override { return workers_.processors(); }

 private:
  platform::headless::HeadlessWorkers& workers_;
};

TEST_F(RunEvents, AnimationThatEndsBeforeTheWriterBegins) {
  HastyWorkers hasty(bench.workers);
  bench.job = std::make_unique<engine::RepairFile>(
      engine::RepairServices{bench.files, bench.files, bench.movies, hasty, bench.queue, bench.sheets, bench.log},
      bench.screen.job);
  bench.job->controll = &bench.relay;
  expectRun("animation_first");
}

TEST_F(RunEvents, CompletedSheetThatAFailedWriteOvertakes) {
  // The animation is over and its sheet waits; then the write fails, and the sheet is dropped when it would open.
  HastyWorkers hasty(bench.workers);
  bench.job = std::make_unique<engine::RepairFile>(
      engine::RepairServices{bench.files, bench.files, bench.movies, hasty, bench.queue, bench.sheets, bench.log},
      bench.screen.job);
  bench.job->controll = &bench.relay;
  bench.files.refuse("/out.avi", std::make_error_code(std::errc::permission_denied));
  std::thread([this] { bench.job->retrieveAudioVideoSamples(current); }).join();

  bench.queue.pump();

  EXPECT_TRUE(bench.sheets.shown().empty());
  EXPECT_EQ(bench.events.lines().back(), "beginSheet(repaircompletedwindow) dropped");
}

}  // namespace
}  // namespace zelvo::tests
