/// Work of the main thread that a worker waits for, and how all such waits end at once: a part of main queues.
#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>

namespace zelvo::platform {

/// Lifetime: outlives what it had posted.
class AwaitedWork {
 public:
  /// Hands `work` to `post` and waits until it has run; or, once the waits are ended, returns without its having run
  /// and sees to it that it never does. Thread: any but the main one, which would wait for itself.
  template <class Post>
  void performAndWait(const Post& post, const std::function<void()>& work) {
    const auto stage = std::make_shared<Stage>(Stage::waiting);
    post([this, stage, &work] {
      if (!begin(*stage)) return;
      work();  // its owner waits, and `work` is there
      end(*stage);
    });
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return *stage == Stage::over || (isEnded_ && *stage == Stage::waiting); });
    *stage = Stage::over;
  }

  /// Ends every wait, those to come included. Work that runs already is waited for. Thread: any.
  void endWaits() {
    const std::lock_guard lock(mutex_);
    isEnded_ = true;
    changed_.notify_all();
  }

 private:
  enum class Stage { waiting, running, over };

  bool begin(Stage& stage) {
    const std::lock_guard lock(mutex_);
    if (stage == Stage::over) return false;
    stage = Stage::running;
    return true;
  }
  void end(Stage& stage) {
    const std::lock_guard lock(mutex_);
    stage = Stage::over;
    changed_.notify_all();
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  bool isEnded_ = false;
};

}  // namespace zelvo::platform
