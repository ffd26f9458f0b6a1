// A repair as functions on values, beside the window's job that stands on the same stages.
#include "engine/repair.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "platform/headless/screen.h"
#include "platform/headless/workers.h"
#include "tests/support/avi_builder.h"
#include "tests/support/damage.h"
#include "tests/support/engine_bench.h"
#include "tests/support/memory_files.h"

namespace zelvo::tests {
namespace {

using engine::RepairReport;
using engine::RunEnd;

/// Notes everything that it hears.
class NotingObserver final : public engine::RepairObserver {
 public:
  explicit NotingObserver(platform::headless::Events& events) : events_(events) {}

  [[nodiscard]] platform::Log& log() override { return log_; }
  void stage(engine::RepairStage stage) override {
    static constexpr std::array kNames{"recognising", "reading headers", "searching", "writing"};
    events_.add(std::string("stage ") + kNames.at(static_cast<std::size_t>(stage)));
    if (onStage) onStage(stage);
  }
  void progress(std::uint64_t done, std::uint64_t all) override {
    events_.add("progress");
    last = {done, all};
  }
  void recognised() override { events_.add("recognised"); }
  void videoCodec(const std::string& text) override { events_.add("video codec " + text); }
  void headersFound() override { events_.add("headers found"); }
  void audioCodec(const std::string& text) override { events_.add("audio codec " + text); }
  void written() override { events_.add("written"); }
  [[nodiscard]] bool stopIsAsked() const override { return stopped; }

  std::pair<std::uint64_t, std::uint64_t> last;
  std::function<void(engine::RepairStage)> onStage;
  std::atomic<bool> stopped = false;

 private:
  platform::headless::Events& events_;
  platform::headless::HeadlessLog log_{&events_};
};

/// Makes "/out.avi" among the files in memory.
class MemoryOutput final : public engine::OutputMaker {
 public:
  MemoryOutput(MemoryFiles& files, platform::headless::Events& events) : files_(files), events_(events) {}
  [[nodiscard]] Made make(std::uint64_t size) override {
    events_.add("make " + std::to_string(size));
    if (refuses) return {.file = nullptr, .error = {}, .refused = true};
    if (failure) return {.file = nullptr, .error = failure};
    static_cast<void>(files_.createFile("/out.avi"));
    file_ = files_.openForWriting("/out.avi").file;
    return {.file = file_.get(), .error = {}};
  }
  [[nodiscard]] std::error_code close() override {
    events_.add("close");
    return file_->close();
  }
  bool refuses = false;
  std::error_code failure;

 private:
  MemoryFiles& files_;
  platform::headless::Events& events_;
  std::unique_ptr<platform::WritableFile> file_;
};

class Repair : public testing::Test {
 protected:
  RepairReport repair(const platform::Bytes& bytes) {
    place(bytes);
    return engine::repair(run(), output);
  }
  RepairReport check(const platform::Bytes& bytes) {
    place(bytes);
    return engine::check(run());
  }
  void place(const platform::Bytes& bytes) {
    files.put("/in.avi", bytes);
    input = files.openForReading("/in.avi").file;
  }
  engine::RepairRun run() { return {*input, input->size(), observer, cancel, workers}; }

  [[nodiscard]] std::vector<std::string> logLines() const {
    std::vector<std::string> lines = events.lines();
    std::erase_if(lines, [](const std::string& line) { return !line.starts_with("log: "); });
    return lines;
  }
  [[nodiscard]] std::size_t indexOf(const std::string& event) const {
    const auto lines = events.lines();
    return static_cast<std::size_t>(std::find(lines.begin(), lines.end(), event) - lines.begin());
  }
  [[nodiscard]] bool happened(const std::string& event) const { return indexOf(event) < events.lines().size(); }

  platform::headless::Events events;
  MemoryFiles files;
  platform::headless::HeadlessWorkers workers;
  platform::CancelMark cancel;
  NotingObserver observer{events};
  MemoryOutput output{files, events};
  std::unique_ptr<platform::ReadableFile> input;
};

platform::Bytes film() { return AviBuilder().interleaved(200, 3000, 101).build(); }

TEST_F(Repair, TellsItsStagesInOrder) {
  const RepairReport report = repair(film());

  EXPECT_EQ(report.end, RunEnd::rebuilt);
  std::vector<std::string> told = events.lines();
  std::erase_if(told, [](const std::string& line) { return line.starts_with("log: ") || line == "progress"; });
  told.erase(std::unique(told.begin(), told.end()), told.end());
  EXPECT_EQ(told,
            (std::vector<std::string>{"stage recognising", "recognised", "stage reading headers", "video codec XVID",
                                      "headers found", "stage searching", "stage writing",
                                      "make " + std::to_string(report.bytes), "audio codec U", "close", "written"}));
  EXPECT_EQ(observer.last.first, observer.last.second) << "the search told its last block";
  EXPECT_EQ(observer.last.second, (film().size() + 1023) / 1024);
}

TEST_F(Repair, SaysWhatItFound) {
  const RepairReport report = repair(film());

  ASSERT_EQ(report.streams.size(), 2U);
  EXPECT_EQ(report.streams[0].kind, engine::StreamKind::video);
  EXPECT_EQ(report.streams[0].codec, "XVID");
  EXPECT_EQ(report.streams[0].chunks, 200U);
  EXPECT_EQ(report.streams[0].bytes, 200U * 3000);
  EXPECT_EQ(report.streams[1].kind, engine::StreamKind::audio);
  EXPECT_EQ(report.streams[1].codec, "U");
  EXPECT_EQ(report.streams[1].chunks, 199U);
  EXPECT_EQ(report.streams[1].bytes, 199U * 101);
  EXPECT_EQ(report.bytes, files.content("/out.avi").size());
  EXPECT_EQ(report.film.pictures, 200U);
  EXPECT_EQ(report.samplesLeftOut, 0U);
  EXPECT_EQ(report.repeatedChunks, 0U);
  EXPECT_FALSE(report.writeFailure);
  const engine::HeadersFound& found = report.headers;
  EXPECT_TRUE(found.main && found.videoHeader && found.videoFormat && found.audioHeader && found.audioFormat);
}

TEST_F(Repair, CheckFindsTheSameAndMakesNothing) {
  const RepairReport checked = check(film());
  EXPECT_FALSE(files.has("/out.avi"));
  EXPECT_FALSE(happened("stage writing"));
  const RepairReport repaired = repair(film());

  EXPECT_EQ(checked.end, RunEnd::searched);
  EXPECT_EQ(checked.bytes, repaired.bytes);
  EXPECT_EQ(checked.film, repaired.film);
  ASSERT_EQ(checked.streams.size(), repaired.streams.size());
  EXPECT_EQ(checked.streams[1].bytes, repaired.streams[1].bytes);
}

TEST_F(Repair, RefusedOutputEndsTheRunAndCancelsIt) {
  output.refuses = true;

  const RepairReport report = repair(film());

  EXPECT_EQ(report.end, RunEnd::refused);
  EXPECT_FALSE(report.writeFailure);
  EXPECT_TRUE(cancel.cancelled());
  EXPECT_FALSE(happened("written"));
  EXPECT_GT(report.bytes, 0U);
}

TEST_F(Repair, OutputThatCannotBeMadeIsAFailureAtItsFirstByte) {
  output.failure = std::make_error_code(std::errc::permission_denied);

  const RepairReport report = repair(film());

  EXPECT_EQ(report.end, RunEnd::rebuilt);
  ASSERT_TRUE(report.writeFailure);
  EXPECT_EQ(report.writeFailure->offset, 0U);
  EXPECT_EQ(report.writeFailure->cause, std::errc::permission_denied);
  EXPECT_TRUE(cancel.cancelled());
  EXPECT_LT(indexOf("audio codec U"), indexOf("log: Write failed at 0: Permission denied"));
  EXPECT_LT(indexOf("log: Write failed at 0: Permission denied"), indexOf("written"));
}

TEST_F(Repair, InvalidInputSaysSoAndIsNotSearched) {
  const RepairReport report = repair(platform::Bytes(600000, std::byte{0x20}));

  EXPECT_EQ(report.end, RunEnd::invalid);
  EXPECT_TRUE(report.streams.empty());
  EXPECT_EQ(logLines().back(), "log: Val==No");
  EXPECT_FALSE(happened("stage reading headers"));
}

TEST_F(Repair, CheckOfAnInvalidInputDoesNotLogTheEndOfARepair) {
  const RepairReport report = check(platform::Bytes(600000, std::byte{0x20}));

  EXPECT_EQ(report.end, RunEnd::invalid);
  EXPECT_EQ(logLines().back(), "log: Sector=10");
}

TEST_F(Repair, FilmThatIsTooSmallIsNotSupported) {
  const RepairReport report = repair(AviBuilder().interleaved(5, 3000, 101).build());

  EXPECT_EQ(report.end, RunEnd::notSupported);
  EXPECT_EQ(report.rejection, platform::Rejection::tooSmall);
  EXPECT_TRUE(report.headers.audioFormat);
  EXPECT_FALSE(files.has("/out.avi"));
}

TEST_F(Repair, UnreadableBytesAreReportedAndLogged) {
  place(film());
  MemoryFile& file = files.at("/in.avi");
  file.badReadStart = 300000;
  file.badReadEnd = 300001;
  file.readError = std::make_error_code(std::errc::io_error);

  const RepairReport report = engine::repair(run(), output);

  EXPECT_GT(report.readFailures.count, 0U);
  EXPECT_EQ(report.readFailures.firstOffset, 300000U);
  EXPECT_EQ(report.film.failedReads, report.readFailures.count) << "judged again once the copy is done";
  EXPECT_TRUE(logLines().back().starts_with("log: Reads failed=" + std::to_string(report.readFailures.count) + ","));
}

TEST_F(Repair, StopThatIsTakenBackLeavesOutWhatCameMeanwhile) {
  place(film());
  std::uint32_t searched = 0;
  observer.onStage = [&](engine::RepairStage stage) {
    if (stage == engine::RepairStage::searching && ++searched == 10) observer.stopped = true;
  };

  const RepairReport report = engine::repair(run(), output);

  EXPECT_EQ(searched, 10U) << "skipped blocks say nothing";
  EXPECT_EQ(report.end, RunEnd::rebuilt);
  EXPECT_GT(report.streams.at(0).chunks, 0U);
  EXPECT_LT(report.streams.at(0).chunks, 10U);
}

TEST_F(Repair, AbandonedRunEndsBeforeItMakesAnything) {
  place(film());
  observer.onStage = [&](engine::RepairStage stage) {
    if (stage == engine::RepairStage::searching) cancel.abandon();
  };

  EXPECT_EQ(engine::repair(run(), output).end, RunEnd::abandoned);
  EXPECT_FALSE(files.has("/out.avi"));
}

TEST_F(Repair, SeveralRunsAtOnceDoNotMeet) {
  const platform::Bytes bytes = film();
  static_cast<void>(repair(bytes));
  const platform::Bytes expected = files.content("/out.avi");
  struct One {
    platform::headless::Events events;
    MemoryFiles files;
    platform::headless::HeadlessWorkers workers;
    platform::CancelMark cancel;
    NotingObserver observer{events};
    MemoryOutput output{files, events};
  };
  std::array<One, 4> all;
  std::vector<std::thread> threads;
  for (One& one : all) {
    one.files.put("/in.avi", bytes);
    threads.emplace_back([&one] {
      const auto in = one.files.openForReading("/in.avi").file;
      static_cast<void>(engine::repair({*in, in->size(), one.observer, one.cancel, one.workers}, one.output));
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (const One& one : all) EXPECT_EQ(one.files.content("/out.avi"), expected);
}

void asDamaged(MemoryFile& file, const DamagedInput& damaged) {
  file.size = damaged.size;
  file.badReadStart = damaged.badReadStart;
  file.badReadEnd = damaged.badReadEnd;
  file.readError = std::make_error_code(std::errc::io_error);
}

/// The window's job and the values give the same file and the same log.
TEST_F(Repair, AgreesWithTheWindowsJobOnDamagedFilms) {
  std::size_t rebuilt = 0;
  for (int seed = 1; seed <= 60; ++seed) {
    const DamagedInput damaged = DamageGenerator(static_cast<std::uint64_t>(seed)).wholeFile(1 + seed % 30);
    EngineBench bench;
    asDamaged(bench.choose(damaged.bytes), damaged);
    bench.chooseClaiming(damaged.claimedSize);
    bench.run();
    std::vector<std::string> expected = bench.events.lines();
    std::erase_if(expected, [](const std::string& line) { return !line.starts_with("log: "); });
    events.clear();
    if (files.has("/out.avi")) static_cast<void>(files.remove("/out.avi"));

    place(damaged.bytes);
    asDamaged(files.at("/in.avi"), damaged);
    const RepairReport report = engine::repair({*input, damaged.claimedSize, observer, cancel, workers}, output);

    SCOPED_TRACE(damaged.name);
    rebuilt += report.end == RunEnd::rebuilt ? 1U : 0U;
    EXPECT_EQ(report.end, bench.job->runEnd);
    EXPECT_EQ(logLines(), expected);
    ASSERT_EQ(files.has("/out.avi"), bench.files.has("/out.avi"));
    if (files.has("/out.avi")) {
      EXPECT_EQ(files.content("/out.avi"), bench.output());
    }
  }
  EXPECT_GT(rebuilt, 20U) << "many of the films can be repaired";
}

}  // namespace
}  // namespace zelvo::tests
