/// The main queue: the thread that makes it is the main thread. A program without an event loop of its own calls
/// `runUntil`; another serves the queue from its loop (see served_queue.h).
#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "platform/awaited_work.h"
#include "platform/served_queue.h"

namespace zelvo::platform::linux_ {

/// Redraws run at most once per `redrawInterval`; the last one is never lost.
class LinuxMainQueue final : public ServedQueue {
 public:
  /// Whether the process-wide barrier is used where the system has one.
  enum class Barrier { whereThereIsOne, never };

  /// The calling thread becomes the main thread.
  explicit LinuxMainQueue(std::chrono::milliseconds redrawInterval = std::chrono::milliseconds(16),
                          Barrier barrier = Barrier::whereThereIsOne);
  ~LinuxMainQueue() override;

  [[nodiscard]] bool isMainThread() const override;
  void perform(std::function<void()> work) override;
  void performAndWait(std::function<void()> work) override;
  void endWaits() override { awaited_.endWaits(); }

  /// Runs work and due redraws until `done` (asked after each of them and every `redrawInterval`) is true, then what is
  /// still waiting.
  /// Thread: main.
  void runUntil(const std::function<bool()>& done);

  void setWaker(std::function<void()> wake) override;
  [[nodiscard]] std::optional<std::chrono::milliseconds> serve() override;
  void runDueRedraws() override;

  /// False without a process-wide barrier: redraw requests are then taken one by one, under the lock.
  [[nodiscard]] bool coalesces() const { return hasBarrier_; }

 private:
  using Clock = std::chrono::steady_clock;

  void take(CoalescedOperation& operation) override;
  void runRedraws(std::unique_lock<std::mutex>& lock);
  void reportArrival(std::unique_lock<std::mutex>& lock);

  const std::thread::id mainThread_ = std::this_thread::get_id();
  const std::chrono::milliseconds redrawInterval_;
  const bool hasBarrier_;
  AwaitedWork awaited_;
  std::mutex mutex_;
  std::condition_variable arrived_;
  std::function<void()> wake_;
  std::deque<std::function<void()>> work_;
  std::vector<CoalescedOperation*> redraws_;
  Clock::time_point nextRedraw_{};
};

}  // namespace zelvo::platform::linux_
