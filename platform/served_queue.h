/// A main queue that an event loop serves: the loop is woken when something arrives, and then runs what waits.
#pragma once

#include <chrono>
#include <functional>
#include <optional>

#include "platform/main_queue.h"

namespace zelvo::platform {

class ServedQueue : public MainQueue {
 public:
  /// From now on `wake` runs whenever something arrives. It must neither block nor call the queue. Nothing takes it
  /// away.
  /// Thread: main; `wake` runs on any.
  virtual void setWaker(std::function<void()> wake) = 0;

  /// Runs the work that waits and the redraws that are due. What arrives meanwhile is left for the next call, so that a
  /// busy worker cannot keep the loop from its other events.
  /// \return after how long there is something to do again; nothing when nothing waits.
  /// Thread: main; may be called again from within the work that it runs.
  [[nodiscard]] virtual std::optional<std::chrono::milliseconds> serve() = 0;

  /// Runs the redraws that are due, and no other work: for long work on the main thread.
  /// Thread: main.
  virtual void runDueRedraws() = 0;
};

}  // namespace zelvo::platform
