#include "platform/linux/clock.h"

#include <thread>

namespace zelvo::platform::linux_ {

void LinuxClock::sleepFor(std::chrono::milliseconds duration) {
  if (duration <= std::chrono::milliseconds::zero()) {
    std::this_thread::yield();
    return;
  }
  std::unique_lock lock(mutex_);
  ended_.wait_for(lock, duration, [this] { return ending_; });
}

void LinuxClock::endSleeps() {
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
  }
  ended_.notify_all();
}

}  // namespace zelvo::platform::linux_
