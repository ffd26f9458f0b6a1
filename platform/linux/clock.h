/// The system's clock.
#pragma once

#include <condition_variable>
#include <mutex>

#include "platform/clock.h"

namespace zelvo::platform::linux_ {

class LinuxClock final : public Clock {
 public:
  void sleepFor(std::chrono::milliseconds duration) override;
  void endSleeps() override;

 private:
  std::mutex mutex_;
  std::condition_variable ended_;
  bool ending_ = false;
};

}  // namespace zelvo::platform::linux_
