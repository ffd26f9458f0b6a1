/// Time that passes, as a service: tests own theirs.
#pragma once

#include <chrono>

namespace zelvo::platform {

/// Thread: any.
class Clock {
 public:
  virtual ~Clock() = default;
  /// Waits for that long; for nothing at all, gives the other threads a turn.
  virtual void sleepFor(std::chrono::milliseconds duration) = 0;
  /// From now on every sleep ends at once, those under way too: the program is ending.
  virtual void endSleeps() = 0;
};

}  // namespace zelvo::platform
