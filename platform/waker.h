/// Wakes an event loop that waits for a descriptor.
#pragma once

#include <memory>

namespace zelvo::platform {

class Waker {
 public:
  virtual ~Waker() = default;
  /// Readable from a call of `wake` until the next of `settle`. It stays the same, and is this object's.
  [[nodiscard]] virtual int descriptor() const = 0;
  /// Thread: any; a signal handler too.
  virtual void wake() const noexcept = 0;
  /// Takes all calls of `wake` so far together. Thread: the one that waits.
  virtual void settle() const = 0;
};

/// What an event loop is woken by.
struct LoopWakers {
  std::unique_ptr<Waker> arrival;  ///< work has come
  std::unique_ptr<Waker> signal;   ///< the system asks the program to end
};

}  // namespace zelvo::platform
