#include "platform/linux/main_queue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "platform/relaxed.h"

namespace zelvo::tests {
namespace {

using namespace std::chrono_literals;
using platform::CoalescedOperation;
using Queue = platform::linux_::LinuxMainQueue;
using Barrier = Queue::Barrier;

TEST(LinuxMainQueue, MainThreadIsTheOneThatMadeIt) {
  Queue queue;
  bool there = true;
  std::thread([&] { there = queue.isMainThread(); }).join();
  EXPECT_TRUE(queue.isMainThread());
  EXPECT_FALSE(there);
}

TEST(LinuxMainQueue, WorkOfTheMainThreadRunsAtOnce) {
  Queue queue;
  bool ran = false;
  queue.perform([&] { ran = true; });
  EXPECT_TRUE(ran);
  ran = false;
  queue.performAndWait([&] { ran = true; });
  EXPECT_TRUE(ran);
}

TEST(LinuxMainQueue, WorkOfAWorkerRunsOnTheMainThreadInOrder) {
  Queue queue;
  std::vector<int> order;
  bool done = false;
  std::thread worker([&] {
    for (int i = 0; i < 100; ++i) {
      queue.perform([&, i] {
        if (queue.isMainThread()) order.push_back(i);
      });
    }
    queue.perform([&] { done = true; });
  });
  queue.runUntil([&] { return done; });
  worker.join();
  ASSERT_EQ(order.size(), 100U);
  EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
}

TEST(LinuxMainQueue, PerformAndWaitWaitsUntilTheWorkHasRun) {
  Queue queue;
  int runs = 0;
  int seenByWorker = 0;
  bool done = false;
  std::thread worker([&] {
    queue.perform([&] { ++runs; });
    queue.performAndWait([&] { ++runs; });
    seenByWorker = runs;
    queue.perform([&] { done = true; });
  });
  queue.runUntil([&] { return done; });
  worker.join();
  EXPECT_EQ(seenByWorker, 2);
}

TEST(LinuxMainQueue, ManyWaitersAreAllServed) {
  Queue queue;
  std::atomic<int> left = 4;
  int runs = 0;
  std::vector<std::thread> workers;
  for (int w = 0; w < 4; ++w) {
    workers.emplace_back([&] {
      for (int i = 0; i < 200; ++i) queue.performAndWait([&] { ++runs; });
      --left;
    });
  }
  queue.runUntil([&] { return left == 0; });
  for (std::thread& worker : workers) worker.join();
  EXPECT_EQ(runs, 800);
}

TEST(LinuxMainQueue, EndOfTheWaitsLetsAWaiterGoWithoutItsWork) {
  Queue queue;
  bool ran = false;
  std::atomic<bool> waits = false;
  queue.setWaker([&] { waits = true; });
  std::thread worker([&] { queue.performAndWait([&] { ran = true; }); });
  while (!waits) std::this_thread::yield();
  queue.endWaits();
  worker.join();
  queue.runUntil([] { return true; });
  EXPECT_FALSE(ran);
}

TEST(LinuxMainQueue, NobodyWaitsAfterTheEndOfTheWaits) {
  Queue queue;
  bool ran = false;
  queue.endWaits();
  std::thread([&] { queue.performAndWait([&] { ran = true; }); }).join();
  queue.runUntil([] { return true; });
  EXPECT_FALSE(ran);
}

TEST(LinuxMainQueue, WorkWithoutAWaiterRunsAfterTheEndOfTheWaits) {
  Queue queue;
  int runs = 0;
  queue.endWaits();
  std::thread([&] { queue.perform([&] { ++runs; }); }).join();
  queue.performAndWait([&] { ++runs; });  // on the main thread, at once
  queue.runUntil([] { return true; });
  EXPECT_EQ(runs, 2);
}

TEST(LinuxMainQueue, WorkThatRunsAtTheEndOfTheWaitsIsWaitedFor) {
  Queue queue;
  std::atomic<bool> isBack = false;
  bool wasBackInTime = true;
  std::thread worker([&] {
    queue.performAndWait([&] {
      queue.endWaits();
      // Long enough for a waiter that goes by itself, without a clock.
      for (int look = 0; look < 1000 && !isBack; ++look) std::this_thread::yield();
      wasBackInTime = !isBack;
    });
    isBack = true;
  });
  queue.runUntil([&] { return isBack.load(); });
  worker.join();
  EXPECT_TRUE(wasBackInTime);
}

// Waiters without end, and an end of the waits at any moment of theirs: each either ran its work or never does.
TEST(LinuxMainQueue, EndOfTheWaitsAmongManyWaitersLeavesNoneBehind) {
  for (int end = 0; end < 200; ++end) {
    Queue queue;
    std::atomic<int> left = 4;
    std::atomic<int> runs = 0;
    std::vector<std::thread> workers;
    for (int w = 0; w < 4; ++w) {
      workers.emplace_back([&] {
        for (int i = 0; i < 20; ++i) {
          int own = 0;
          queue.performAndWait([&] { ++own; });
          runs += own;
        }
        --left;
      });
    }
    queue.runUntil([&] { return left == 0 || runs >= end % 80; });
    queue.endWaits();
    for (std::thread& worker : workers) worker.join();
    const int before = runs;
    queue.runUntil([] { return true; });
    EXPECT_EQ(runs, before);
  }
}

TEST(LinuxMainQueue, WhatWasPostedBeforeTheEndStillRuns) {
  Queue queue;
  int runs = 0;
  std::thread([&] {
    for (int i = 0; i < 10; ++i) queue.perform([&] { ++runs; });
  }).join();
  queue.runUntil([] { return true; });
  EXPECT_EQ(runs, 10);
}

class LinuxMainQueueRedraws : public testing::TestWithParam<Barrier> {};

TEST_P(LinuxMainQueueRedraws, RequestIsAnsweredOnTheMainThread) {
  Queue queue(0ms, GetParam());
  bool onMain = false;
  CoalescedOperation redraw(queue, [&] { onMain = queue.isMainThread(); });
  std::thread([&] { redraw.request(); }).join();
  queue.runUntil([] { return true; });
  EXPECT_TRUE(onMain);
}

TEST_P(LinuxMainQueueRedraws, FloodOfRequestsSharesRuns) {
  // The interval is longer than the test: the first request is answered at once, the rest when the loop ends.
  Queue queue(1h, GetParam());
  platform::Relaxed<int> value;
  int shown = 0;
  int runs = 0;
  bool done = false;
  CoalescedOperation redraw(queue, [&] {
    shown = value;
    ++runs;
  });
  std::thread worker([&] {
    for (int i = 1; i <= 100000; ++i) {
      value = i;
      redraw.request();
    }
    queue.perform([&] { done = true; });
  });
  queue.runUntil([&] { return done; });
  worker.join();
  EXPECT_LE(runs, 2);
  EXPECT_EQ(shown, 100000);
}

TEST_P(LinuxMainQueueRedraws, TwoOperationsDoNotStandForEachOther) {
  Queue queue(0ms, GetParam());
  int first = 0;
  int second = 0;
  CoalescedOperation a(queue, [&] { ++first; });
  CoalescedOperation b(queue, [&] { ++second; });
  std::thread([&] {
    a.request();
    b.request();
    a.request();
  }).join();
  queue.runUntil([] { return true; });
  EXPECT_EQ(first, 1);
  EXPECT_EQ(second, 1);
}

TEST_P(LinuxMainQueueRedraws, RequestMadeWhileItRunsIsAnsweredByAnotherRun) {
  Queue queue(0ms, GetParam());
  int runs = 0;
  std::vector<std::thread> askers;
  CoalescedOperation* self = nullptr;
  CoalescedOperation redraw(queue, [&] {
    if (++runs == 1) std::thread([&] { self->request(); }).join();
  });
  self = &redraw;
  std::thread([&] { redraw.request(); }).join();
  queue.runUntil([] { return true; });
  EXPECT_EQ(runs, 2);
}

// A producer stores values and asks for redraws as fast as it can while the main thread redraws as fast as it can, in
// many short runs. At the end of each the last value must be on show: a request that was dropped because an older one
// seemed to be pending would leave the value before it. Without the barrier where requests coalesce, about one run in
// two thousand loses its last value here.
TEST_P(LinuxMainQueueRedraws, LastValueOfEachOfManyShortRunsIsShown) {
  // Without the barrier every request takes the lock, and nothing can be lost between two of them.
  const int runs = GetParam() == Barrier::never ? 300 : 3000;
  Queue queue(0ms, GetParam());
  platform::Relaxed<int> value;
  int shown = 0;
  CoalescedOperation redraw(queue, [&] { shown = value; });
  std::atomic<int> started = 0;
  std::atomic<int> ended = 0;
  std::vector<int> lastValues(static_cast<std::size_t>(runs) + 1);
  std::thread producer([&] {
    std::mt19937 random(11);
    int next = 0;
    for (int run = 1; run <= runs; ++run) {
      for (int looks = 0; started.load(std::memory_order_acquire) < run; ++looks) {
        if (looks > 1000) std::this_thread::yield();
      }
      const auto steps = static_cast<int>(1 + random() % 400);
      for (int step = 0; step < steps; ++step) {
        value = ++next;
        redraw.request();
      }
      lastValues[static_cast<std::size_t>(run)] = next;
      ended.store(run, std::memory_order_release);
    }
  });
  int lost = 0;
  for (int run = 1; run <= runs; ++run) {
    started.store(run, std::memory_order_release);
    queue.runUntil([&] { return ended.load(std::memory_order_acquire) == run; });
    if (shown != lastValues[static_cast<std::size_t>(run)]) ++lost;
  }
  producer.join();
  EXPECT_EQ(lost, 0);
}

TEST_P(LinuxMainQueueRedraws, LastValuesOfTwoProducersAreShown) {
  constexpr int kRuns = 300;
  Queue queue(0ms, GetParam());
  for (int run = 0; run < kRuns; ++run) {
    std::array<platform::Relaxed<int>, 2> values;
    std::array<int, 2> shown{};
    CoalescedOperation redraw(queue, [&] { shown = {values[0], values[1]}; });
    std::atomic<int> left = 2;
    std::vector<std::thread> producers;
    for (std::size_t p = 0; p < 2; ++p) {
      producers.emplace_back([&, p] {
        for (int i = 1; i <= 200; ++i) {
          values[p] = i;
          redraw.request();
        }
        --left;
      });
    }
    queue.runUntil([&] { return left == 0; });
    for (std::thread& producer : producers) producer.join();
    ASSERT_EQ(shown, (std::array{200, 200})) << "run " << run;
  }
}

INSTANTIATE_TEST_SUITE_P(Barriers, LinuxMainQueueRedraws, testing::Values(Barrier::whereThereIsOne, Barrier::never),
                         [](const auto& named) {
                           return std::string(named.param == Barrier::never ? "WithoutBarrier" : "WithBarrier");
                         });

TEST(LinuxMainQueue, WithoutABarrierItSaysThatItDoesNotCoalesce) {
  EXPECT_FALSE(Queue(0ms, Barrier::never).coalesces());
}

// ---- Served by an event loop of somebody else ----

TEST(ServedQueue, WakerRunsForEveryArrivalOfAWorker) {
  Queue queue;
  std::atomic<int> wakes = 0;
  queue.setWaker([&] { ++wakes; });
  std::thread([&] {
    queue.perform([] {});
    queue.perform([] {});
  }).join();
  EXPECT_EQ(wakes, 2);
}

TEST(ServedQueue, WakerRunsForAnAskedRedraw) {
  Queue queue;
  std::atomic<int> wakes = 0;
  queue.setWaker([&] { ++wakes; });
  CoalescedOperation redraw(queue, [] {});
  std::thread([&] { redraw.request(); }).join();
  EXPECT_EQ(wakes, 1);
}

TEST(ServedQueue, WorkThatRunsAtOnceWakesNobody) {
  Queue queue;
  int wakes = 0;
  queue.setWaker([&] { ++wakes; });
  queue.perform([] {});
  EXPECT_EQ(wakes, 0);
}

TEST(ServedQueue, WakerThatWasTakenAwayIsNotCalled) {
  Queue queue;
  std::atomic<int> wakes = 0;
  queue.setWaker([&] { ++wakes; });
  queue.setWaker({});
  std::thread([&] { queue.perform([] {}); }).join();
  EXPECT_EQ(wakes, 0);
  EXPECT_EQ(queue.serve(), std::nullopt);
}

TEST(ServedQueue, ServingRunsWhatWaitsInOrderAndThenNothingIsLeft) {
  Queue queue;
  std::vector<int> order;
  std::thread([&] {
    for (int i = 0; i < 5; ++i) queue.perform([&order, i] { order.push_back(i); });
  }).join();
  EXPECT_EQ(queue.serve(), std::nullopt);
  EXPECT_EQ(order, (std::vector{0, 1, 2, 3, 4}));
}

TEST(ServedQueue, WhatArrivesDuringTheServingIsLeftForTheNext) {
  Queue queue;
  std::vector<std::string> ran;
  std::thread([&] {
    queue.perform([&] {
      ran.emplace_back("first");
      std::thread([&] { queue.perform([&] { ran.emplace_back("later"); }); }).join();
    });
  }).join();
  EXPECT_EQ(queue.serve(), 0ms);
  EXPECT_EQ(ran, (std::vector<std::string>{"first"}));
  EXPECT_EQ(queue.serve(), std::nullopt);
  EXPECT_EQ(ran, (std::vector<std::string>{"first", "later"}));
}

TEST(ServedQueue, ServingWithinAServingRunsTheRestAndNothingTwice) {
  Queue queue;
  std::vector<int> order;
  std::thread([&] {
    queue.perform([&] {
      order.push_back(1);
      EXPECT_EQ(queue.serve(), std::nullopt);
      order.push_back(4);
    });
    queue.perform([&] { order.push_back(2); });
    queue.perform([&] { order.push_back(3); });
  }).join();
  EXPECT_EQ(queue.serve(), std::nullopt);
  EXPECT_EQ(order, (std::vector{1, 2, 3, 4}));
}

TEST(ServedQueue, ServingSaysWhenTheNextRedrawIsDue) {
  Queue queue(1h);
  int runs = 0;
  CoalescedOperation redraw(queue, [&] { ++runs; });
  redraw.request();
  EXPECT_EQ(queue.serve(), std::nullopt) << "the first one is due at once";
  redraw.request();
  const auto again = queue.serve();
  ASSERT_TRUE(again);
  EXPECT_GT(*again, 0ms);
  EXPECT_LE(*again, 1h);
  EXPECT_EQ(runs, 1);
}

TEST(ServedQueue, DueRedrawsRunWithoutTheOtherWork) {
  Queue queue(0ms);
  int redraws = 0;
  int others = 0;
  CoalescedOperation redraw(queue, [&] { ++redraws; });
  std::thread([&] {
    queue.perform([&] { ++others; });
    redraw.request();
  }).join();

  queue.runDueRedraws();

  EXPECT_EQ(redraws, 1);
  EXPECT_EQ(others, 0);
  EXPECT_EQ(queue.serve(), std::nullopt);
  EXPECT_EQ(redraws, 1);
  EXPECT_EQ(others, 1);
}

TEST(ServedQueue, RedrawsThatAreNotDueWait) {
  Queue queue(1h);
  int redraws = 0;
  CoalescedOperation redraw(queue, [&] { ++redraws; });
  redraw.request();
  queue.runDueRedraws();
  redraw.request();
  queue.runDueRedraws();
  EXPECT_EQ(redraws, 1);
}

TEST(ServedQueue, EveryPostIsServedWhileManyWorkersWakeTheLoop) {
  constexpr int kWorkers = 4;
  constexpr int kPosts = 500;
  Queue queue(0ms);
  std::atomic<int> wakes = 0;
  queue.setWaker([&] { ++wakes; });
  int ran = 0;
  std::vector<std::thread> workers;
  for (int w = 0; w < kWorkers; ++w) {
    workers.emplace_back([&] {
      for (int i = 0; i < kPosts; ++i) queue.perform([&] { ++ran; });
    });
  }
  int served = 0;
  while (ran < kWorkers * kPosts) {
    if (const int seen = wakes; seen != served) {
      served = seen;
      static_cast<void>(queue.serve());
    } else {
      std::this_thread::yield();
    }
  }
  for (std::thread& worker : workers) worker.join();
  EXPECT_EQ(queue.serve(), std::nullopt);
  EXPECT_EQ(wakes, kWorkers * kPosts);
}

}  // namespace
}  // namespace zelvo::tests
