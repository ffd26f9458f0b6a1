/// Work for the main thread. Ordinary work is run once per request, in order. Redraws are asked for far more often than
/// a person can see (ten times per KiB of input), so they are asked for through a `CoalescedOperation`.
#pragma once

#include <atomic>
#include <functional>
#include <utility>

namespace zelvo::platform {

class CoalescedOperation;

/// Thread: any, unless a function says otherwise.
class MainQueue {
 public:
  virtual ~MainQueue() = default;

  [[nodiscard]] virtual bool isMainThread() const = 0;

  /// Runs `work` on the main thread, after everything posted before it; at once when called there.
  virtual void perform(std::function<void()> work) = 0;

  /// As `perform`, and waits until it has run. Once the waits are ended, a worker's call returns without that.
  virtual void performAndWait(std::function<void()> work) = 0;

  /// For the end of the program, before the main thread waits for the workers: nobody waits for the main thread from
  /// now on. A worker whose work was not begun yet goes on, and that work never runs; work that runs already is waited
  /// for, so nothing that somebody waits for may call this and then wait for workers. What `perform` was given still
  /// runs.
  /// Decision: runs, Quitting ends every wait
  virtual void endWaits() = 0;

 private:
  friend class CoalescedOperation;
  /// Takes one request that no pending one stands for. The queue runs the operation soon, in its own time.
  virtual void take(CoalescedOperation& operation) = 0;
};

/// An operation of the main thread that shows a value kept elsewhere, and may be asked for millions of times a second.
/// Store the value (relaxed), then `request()`: the operation runs at least once after the last request, and then sees
/// the last value; requests in between may share one run.
///
/// How no last value is lost: the queue clears the mark, then makes every thread of the process pass a memory barrier,
/// then runs the operation. A request that still saw the mark set happened before that barrier, and so did the store
/// before it. A queue without such a barrier never sets the mark and takes every request.
/// Decision: runs, Redraws coalesce, the last value stays
///
/// Lifetime: the owner keeps it until the queue no longer runs it (workers joined, queue drained).
class CoalescedOperation {
 public:
  CoalescedOperation(MainQueue& queue, std::function<void()> operation)
      : queue_(queue), operation_(std::move(operation)) {}
  CoalescedOperation(const CoalescedOperation&) = delete;
  CoalescedOperation& operator=(const CoalescedOperation&) = delete;

  /// Asks for a run. Thread: any; costs a load when a request is pending already.
  void request() {
    std::atomic_signal_fence(std::memory_order_seq_cst);  // the caller's store stays before the look at the mark
    if (!pending_.load(std::memory_order_relaxed)) queue_.take(*this);
  }

  /// For queues: sets the mark; false when it was set already.
  [[nodiscard]] bool markPending() noexcept { return !pending_.exchange(true, std::memory_order_acq_rel); }
  /// For queues: clears the mark. A process-wide barrier must follow before `run`.
  void clearPending() noexcept { pending_.store(false, std::memory_order_seq_cst); }
  /// For queues: runs the operation. Thread: main.
  void run() { operation_(); }

 private:
  MainQueue& queue_;
  std::function<void()> operation_;
  std::atomic<bool> pending_{false};
};

}  // namespace zelvo::platform
