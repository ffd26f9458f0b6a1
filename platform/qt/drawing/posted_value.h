/// A value that is shown on the main thread and set from any. A worker may set the same value millions of times over:
/// what changes nothing is not handed over. Everything else is shown, in the order in which it was set.
#pragma once

#include <functional>
#include <mutex>
#include <utility>

#include "platform/main_queue.h"

namespace zelvo::platform::qt {

template <class Value>
class PostedValue {
 public:
  /// `show` runs on the main thread. Lifetime: until the queue no longer runs what was set.
  PostedValue(MainQueue& queue, Value initial, std::function<void(const Value& value)> show)
      : queue_(queue), show_(std::move(show)), shown_(std::move(initial)) {}
  PostedValue(const PostedValue&) = delete;
  PostedValue& operator=(const PostedValue&) = delete;

  /// Shown at once when called on the main thread. Thread: any.
  void set(Value value) {
    if (queue_.isMainThread()) {
      show(value);
      return;
    }
    // Held until the value is in the queue, so that values stand there in the order in which they were compared.
    const std::lock_guard lock(mutex_);
    if (value == (pending_ > 0 ? lastPosted_ : shown_)) return;
    lastPosted_ = value;
    ++pending_;
    queue_.perform([this, posted = std::move(value)] {
      show(posted);
      const std::lock_guard ended(mutex_);
      --pending_;
    });
  }

 private:
  void show(const Value& value) {
    {
      const std::lock_guard lock(mutex_);
      shown_ = value;
    }
    show_(value);
  }

  MainQueue& queue_;
  std::function<void(const Value& value)> show_;
  std::mutex mutex_;
  Value shown_;
  Value lastPosted_{};
  int pending_ = 0;  ///< values in the queue, which will be shown after `shown_`
};

}  // namespace zelvo::platform::qt
