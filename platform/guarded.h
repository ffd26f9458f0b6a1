/// A value too large for an atomic (a string, say) that two threads see: every look takes a copy under a private mutex.
/// Decision: runs, Shared values are relaxed or guarded
#pragma once

#include <mutex>
#include <utility>

namespace zelvo::platform {

/// Thread: every function may be called from any thread.
template <class Value>
class Guarded {
 public:
  Guarded() = default;
  explicit Guarded(Value value) : value_(std::move(value)) {}
  Guarded(const Guarded&) = delete;
  Guarded& operator=(const Guarded&) = delete;

  [[nodiscard]] Value get() const {
    const std::lock_guard lock(mutex_);
    return value_;
  }
  void set(Value value) {
    const std::lock_guard lock(mutex_);
    value_ = std::move(value);
  }

 private:
  mutable std::mutex mutex_;
  Value value_{};
};

}  // namespace zelvo::platform
