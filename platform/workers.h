/// Worker threads and the mark by which they are asked to end.
#pragma once

#include <functional>
#include <memory>
#include <system_error>

#include "platform/relaxed.h"

namespace zelvo::platform {

/// A request to end, shared by who asks and who works. Once set it stays set.
/// Thread: any.
class CancelMark {
 public:
  /// Asks the work to end at its next stage boundary.
  void cancel() noexcept { cancelled_ = true; }
  /// Asks it to end as soon as it can, since nobody will see its result. Implies `cancel`.
  void abandon() noexcept {
    abandoned_ = true;
    cancelled_ = true;
  }
  [[nodiscard]] bool cancelled() const noexcept { return cancelled_; }
  [[nodiscard]] bool abandoned() const noexcept { return abandoned_; }

 private:
  Relaxed<bool> cancelled_;
  Relaxed<bool> abandoned_;
};

/// One started body of work. Letting go of it leaves the work running.
class Worker {
 public:
  virtual ~Worker() = default;
  /// Sets the work's cancel mark.
  virtual void cancel() = 0;
  /// True once the body has returned, or was cut short.
  [[nodiscard]] virtual bool finished() const = 0;
  /// Waits for the body to return. Never to be called by the body itself.
  virtual void join() = 0;
  /// Why the body was cut short: it ran out of memory or could not have another thread (see ranOut). Empty while it has
  /// not finished, and when it came to its end.
  [[nodiscard]] virtual std::error_code failure() const = 0;
};

/// Starts worker threads and keeps track of them. Where the system has no thread or no memory for one, nothing is
/// answered and the body never runs; it is let go before the call returns.
/// Thread: any.
class Workers {
 public:
  virtual ~Workers() = default;
  /// Starts `body` on a thread of its own. The body looks at `mark` by itself; `Worker::cancel` sets it.
  virtual std::shared_ptr<Worker> start(std::shared_ptr<CancelMark> mark, std::function<void()> body) = 0;
  /// Starts a helper of the calling thread at once, also where a test decides when workers run. The caller joins it.
  virtual std::shared_ptr<Worker> startHelper(std::function<void()> body) = 0;
  /// Starts a body that nobody waits for, not even these workers when they go: it may hang in the system for good, and
  /// holds all that it touches itself. False where there is no thread, or no way to leave one behind.
  [[nodiscard]] virtual bool startApart(std::function<void()> /*body*/) { return false; }
  /// How many threads can really run side by side, this one included.
  [[nodiscard]] virtual unsigned processors() const = 0;
  /// Waits for every body started so far, and for those that they start.
  virtual void joinAll() = 0;
};

}  // namespace zelvo::platform
