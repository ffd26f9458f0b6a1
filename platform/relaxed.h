/// A number or flag that two threads see and that orders nothing: an atomic whose plain reads and writes are relaxed.
/// It stands where a field is written by one worker and looked at by others, and a late look does no harm.
/// Decision: runs, Shared values are relaxed or guarded
#pragma once

#include <atomic>

namespace zelvo::platform {

template <class Value>
class Relaxed {
 public:
  constexpr Relaxed() noexcept = default;
  constexpr Relaxed(Value value) noexcept : value_(value) {}  // NOLINT: stands for a plain Value
  Relaxed(const Relaxed&) = delete;
  Relaxed& operator=(const Relaxed&) = delete;

  operator Value() const noexcept { return value_.load(std::memory_order_relaxed); }  // NOLINT: as above
  Value operator=(Value value) noexcept {  // NOLINT: answers the value, as a plain assignment would
    value_.store(value, std::memory_order_relaxed);
    return value;
  }
  /// Adds to a number that several threads add to.
  void add(Value value) noexcept { value_.fetch_add(value, std::memory_order_relaxed); }

 private:
  std::atomic<Value> value_{};
};

}  // namespace zelvo::platform
