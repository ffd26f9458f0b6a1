/// A main queue that is pumped by hand, for flows whose order a test decides.
#pragma once

#include <deque>
#include <functional>
#include <mutex>
#include <thread>

#include "platform/awaited_work.h"
#include "platform/main_queue.h"

namespace zelvo::platform::headless {

/// The thread that makes it is the main thread. Requests of coalesced operations are all taken, one run each, so that
/// a test sees every one.
class HeadlessMainQueue final : public MainQueue {
 public:
  [[nodiscard]] bool isMainThread() const override { return std::this_thread::get_id() == mainThread_; }
  void perform(std::function<void()> work) override;
  /// From a worker: waits until the main thread pumps.
  void performAndWait(std::function<void()> work) override;
  void endWaits() override { awaited_.endWaits(); }

  /// With false, requests run at once, on the thread that asks: for tests that watch values and need no main thread.
  void holdRequests(bool held);

  /// The next `perform` finds no memory.
  void refuseNext();

  /// Runs everything that waits, and what that posts. Thread: main.
  void pump();
  /// How many pieces of work wait.
  [[nodiscard]] std::size_t waiting() const;
  /// How many pieces of work somebody waited for, on the main thread too.
  [[nodiscard]] std::size_t awaited() const;

 private:
  void take(CoalescedOperation& operation) override;

  const std::thread::id mainThread_ = std::this_thread::get_id();
  AwaitedWork awaited_;
  mutable std::mutex mutex_;
  std::deque<std::function<void()>> work_;
  bool holdsRequests_ = true;
  bool refusesNext_ = false;
  std::size_t awaitedCount_ = 0;
};

}  // namespace zelvo::platform::headless
