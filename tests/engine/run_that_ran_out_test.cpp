// Runs for which the system has no thread or no memory: each ends, and says why.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <mutex>
#include <new>
#include <thread>

#include "platform/linux/workers.h"
#include "tests/support/avi_builder.h"
#include "tests/support/engine_bench.h"
#include "tests/support/refusing_workers.h"

namespace zelvo::tests {
namespace {

using engine::RunEnd;
using testing::Contains;

class RunThatRanOut : public testing::Test {
 protected:
  RunThatRanOut() {
    AviBuilder avi;
    avi.interleaved(900, 10000, 1001);
    input = &bench.choose(avi.build());
  }

  /// A whole run with real threads, of which one start is refused; 0 for none.
  void run(unsigned refused) {
    platform::linux_::LinuxWorkers threads;
    RefusingWorkers workers(threads, refused);
    bench.job = std::make_unique<engine::RepairFile>(
        engine::RepairServices{bench.files, bench.files, bench.movies, workers, bench.queue, bench.sheets, bench.log},
        bench.screen.job);
    bench.job->controll = &bench.relay;
    current = engine::RepairFile::newRun();
    std::thread([&] { bench.job->retrieveAudioVideoSamples(current); }).join();
    starts = workers.starts();
    bench.queue.pump();
  }

  void expectFailure(std::errc cause) {
    ASSERT_TRUE(bench.job->writeFailure.get().has_value());
    EXPECT_EQ(bench.job->writeFailure.get()->cause, cause);
    EXPECT_TRUE(current->cancel->cancelled());
    EXPECT_TRUE(bench.sheets.shown().empty()) << "no sheet may tell of a completed repair";
  }

  EngineBench bench;
  MemoryFile* input = nullptr;
  std::shared_ptr<engine::Run> current;
  unsigned starts = 0;
};

TEST_F(RunThatRanOut, WithAllItsThreadsItCompletes) {
  run(0);
  EXPECT_EQ(bench.job->runEnd, RunEnd::rebuilt);
  EXPECT_FALSE(bench.job->writeFailure.get().has_value());
  EXPECT_EQ(starts, 4U) << "scan, animation, video, audio";
}

TEST_F(RunThatRanOut, AnyThreadThatIsRefusedIsAWriteFailure) {
  for (unsigned refused = 1; refused <= 4; ++refused) {
    SCOPED_TRACE(refused);
    run(refused);
    expectFailure(std::errc::resource_unavailable_try_again);
  }
}

TEST_F(RunThatRanOut, WithoutAnAnimationNoFileIsMade) {
  run(2);
  EXPECT_FALSE(bench.files.has("/out.avi"));
  EXPECT_EQ(bench.job->runEnd, RunEnd::rebuilt);
  EXPECT_THAT(bench.events.lines(), Contains("log: Repair file completed"));
}

TEST_F(RunThatRanOut, NextRunIsNotTouchedByIt) {
  run(1);
  run(0);
  EXPECT_EQ(bench.job->runEnd, RunEnd::rebuilt);
  EXPECT_FALSE(bench.job->writeFailure.get().has_value());
}

/// Memory is lacking at the first read at or after an offset, whoever does it.
TEST_F(RunThatRanOut, MemoryThatLacksInAnyStageIsAWriteFailure) {
  for (const std::uint64_t offset : {0U, 2048U, 60000U, 3000000U, 9000000U}) {
    SCOPED_TRACE(offset);
    input->onRead = [offset](std::uint64_t at, std::size_t size) {
      if (at + size > offset) throw std::bad_alloc();
    };
    run(0);
    expectFailure(std::errc::not_enough_memory);
  }
}

TEST_F(RunThatRanOut, MemoryThatLacksWhileWritingIsAWriteFailure) {
  bench.files.put("/out.avi", {});
  bench.files.at("/out.avi").onWrite = [](std::uint64_t at, std::size_t) {
    if (at > 1000000) throw std::bad_alloc();
  };
  run(0);
  expectFailure(std::errc::not_enough_memory);
  EXPECT_THAT(bench.events.lines(), Contains("log: Write failed at 0: Cannot allocate memory"));
}

/// Only one of the two threads lacks memory; the other waits for what that one took and must be told.
TEST_F(RunThatRanOut, MemoryThatOnlyAHelperLacksEndsTheRun) {
  for (const bool whileCopying : {false, true}) {
    SCOPED_TRACE(whileCopying ? "copy" : "scan");
    std::atomic<bool> copies = false;
    std::promise<void> throwing;
    const std::shared_future<void> thrown = throwing.get_future().share();
    std::once_flag told;
    std::atomic<std::thread::id> reader;
    bench.files.onTouch = [&copies](const std::string&) { copies = true; };
    input->onRead = [&](std::uint64_t at, std::size_t) {
      if (!copies) {
        if (at == 0) reader = std::this_thread::get_id();  // the first block is read by the run's own thread
      }
      if (copies != whileCopying || at < 300000) return;
      if (std::this_thread::get_id() == reader) {
        // Until the helper has tried, the caller goes no further: both orders end the same, this one is certain.
        EXPECT_EQ(thrown.wait_for(std::chrono::seconds(60)), std::future_status::ready) << "the helper never read";
        return;
      }
      std::call_once(told, [&throwing] { throwing.set_value(); });
      throw std::bad_alloc();
    };
    run(0);
    expectFailure(std::errc::not_enough_memory);
  }
}

TEST_F(RunThatRanOut, AnimationThatIsCutShortIsAWriteFailure) {
  bench.relay.onValue = [&](double) {
    if (bench.files.has("/out.avi")) throw std::bad_alloc();
  };
  run(0);
  expectFailure(std::errc::not_enough_memory);
}

}  // namespace
}  // namespace zelvo::tests
