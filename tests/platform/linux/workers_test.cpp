#include "platform/linux/workers.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <sched.h>
#include <signal.h>
#include <sys/resource.h>

#include <atomic>
#include <memory>
#include <new>
#include <system_error>
#include <thread>

#include "tests/platform/linux/ordinary_user.h"

namespace zelvo::tests {
namespace {

using platform::CancelMark;
using platform::linux_::LinuxWorkers;

std::shared_ptr<CancelMark> mark() { return std::make_shared<CancelMark>(); }

TEST(LinuxWorkers, RunsTheBodyOnAnotherThread) {
  LinuxWorkers workers;
  std::thread::id id;
  workers.start(mark(), [&] { id = std::this_thread::get_id(); })->join();
  EXPECT_NE(id, std::thread::id());
  EXPECT_NE(id, std::this_thread::get_id());
}

TEST(LinuxWorkers, JoinWaitsForTheBody) {
  LinuxWorkers workers;
  std::atomic<bool> go = false;
  bool ran = false;
  const auto worker = workers.start(mark(), [&] {
    while (!go) std::this_thread::yield();
    ran = true;
  });
  EXPECT_FALSE(worker->finished());
  go = true;
  worker->join();
  EXPECT_TRUE(ran);
  EXPECT_TRUE(worker->finished());
}

TEST(LinuxWorkers, SeveralMayJoinOneWorkerAndJoiningAgainReturns) {
  LinuxWorkers workers;
  std::atomic<bool> go = false;
  const auto worker = workers.start(mark(), [&] {
    while (!go) std::this_thread::yield();
  });
  std::thread other([&] { worker->join(); });
  go = true;
  worker->join();
  worker->join();
  other.join();
  EXPECT_TRUE(worker->finished());
}

TEST(LinuxWorkers, CancelSetsTheMark) {
  LinuxWorkers workers;
  const auto cancel = mark();
  const auto worker = workers.start(cancel, [cancel] {
    while (!cancel->cancelled()) std::this_thread::yield();
  });
  worker->cancel();
  worker->join();
  EXPECT_TRUE(cancel->cancelled());
  EXPECT_FALSE(cancel->abandoned());
}

TEST(LinuxWorkers, LettingGoOfAWorkerLeavesItRunning) {
  std::atomic<bool> ran = false;
  {
    LinuxWorkers workers;
    workers.start(mark(), [&] { ran = true; }).reset();
  }
  EXPECT_TRUE(ran);
}

TEST(LinuxWorkers, JoinAllWaitsForWhatTheBodiesStartToo) {
  LinuxWorkers workers;
  std::atomic<int> ran = 0;
  workers.start(mark(), [&] {
    workers.start(mark(), [&] {
      workers.start(mark(), [&] { ++ran; });
      ++ran;
    });
    ++ran;
  });
  workers.joinAll();
  EXPECT_EQ(ran, 3);
}

TEST(LinuxWorkers, ManyShortBodiesAllRun) {
  LinuxWorkers workers;
  std::atomic<int> ran = 0;
  for (int i = 0; i < 500; ++i) workers.start(mark(), [&] { ++ran; });
  workers.joinAll();
  EXPECT_EQ(ran, 500);
}

TEST(LinuxWorkers, WhatTheBodyHoldsIsLetGoBeforeItCountsAsFinished) {
  LinuxWorkers workers;
  auto held = std::make_shared<int>(5);
  const std::weak_ptr<int> watched = held;
  workers.start(mark(), [own = std::move(held)] {})->join();
  EXPECT_TRUE(watched.expired());
}

TEST(LinuxWorkers, SignalsAreTheMainThreads) {
  LinuxWorkers workers;
  bool blocked = false;
  workers
      .start(mark(),
             [&] {
               sigset_t now;
               pthread_sigmask(SIG_BLOCK, nullptr, &now);
               blocked = sigismember(&now, SIGINT) == 1 && sigismember(&now, SIGTERM) == 1;
             })
      ->join();
  EXPECT_TRUE(blocked);
  sigset_t here;
  pthread_sigmask(SIG_BLOCK, nullptr, &here);
  EXPECT_EQ(sigismember(&here, SIGINT), 0);
}

TEST(LinuxWorkers, CountsTheProcessorsThatThisProcessMayUse) {
  const unsigned processors = LinuxWorkers().processors();
  EXPECT_GE(processors, 1U);
  cpu_set_t one;
  CPU_ZERO(&one);
  cpu_set_t all;
  ASSERT_EQ(sched_getaffinity(0, sizeof all, &all), 0);
  for (std::size_t i = 0; CPU_COUNT(&one) == 0; ++i) {
    if (CPU_ISSET(i, &all)) CPU_SET(i, &one);
  }
  ASSERT_EQ(sched_setaffinity(0, sizeof one, &one), 0);
  EXPECT_EQ(LinuxWorkers().processors(), 1U);
  ASSERT_EQ(sched_setaffinity(0, sizeof all, &all), 0);
  EXPECT_EQ(LinuxWorkers().processors(), processors);
}

TEST(LinuxWorkers, HelperRunsAtOnce) {
  LinuxWorkers workers;
  std::atomic<bool> ran = false;
  workers.startHelper([&] { ran = true; })->join();
  EXPECT_TRUE(ran);
}

TEST(LinuxWorkers, BodyThatRunsOutOfMemoryIsCutShortAndTellsIt) {
  LinuxWorkers workers;
  auto held = std::make_shared<int>(5);
  const std::weak_ptr<int> watched = held;
  const auto worker = workers.start(mark(), [own = std::move(held)] { throw std::bad_alloc(); });
  worker->join();
  EXPECT_TRUE(worker->finished());
  EXPECT_EQ(worker->failure(), std::errc::not_enough_memory);
  EXPECT_TRUE(watched.expired());
}

TEST(LinuxWorkers, HelperThatIsRefusedAThreadOfItsOwnTellsTheCause) {
  LinuxWorkers workers;
  const auto worker = workers.startHelper(
      [] { throw std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again)); });
  worker->join();
  EXPECT_EQ(worker->failure(), std::errc::resource_unavailable_try_again);
}

TEST(LinuxWorkers, BodyThatCameToItsEndHasNoFailure) {
  LinuxWorkers workers;
  const auto worker = workers.start(mark(), [] {});
  worker->join();
  EXPECT_EQ(worker->failure(), std::error_code());
}

TEST(LinuxWorkers, NothingIsAnsweredWhereTheSystemGivesNoThread) {
  EXPECT_TRUE(holdsForAnOrdinaryUser([] {
    const rlimit none{0, 0};
    if (::setrlimit(RLIMIT_NPROC, &none) != 0) return false;
    LinuxWorkers workers;
    auto held = std::make_shared<int>(5);
    const std::weak_ptr<int> watched = held;
    const bool refused = !workers.start(mark(), [own = std::move(held)] {}) && !workers.startHelper([] {});
    workers.joinAll();
    return refused && watched.expired();
  }));
}

}  // namespace
}  // namespace zelvo::tests
