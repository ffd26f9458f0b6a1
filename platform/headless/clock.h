/// A clock on which every sleep is over at once.
/// Thread: any.
#pragma once

#include <functional>
#include <string>

#include "platform/clock.h"
#include "platform/headless/events.h"

namespace zelvo::platform::headless {

class HeadlessClock final : public Clock {
 public:
  explicit HeadlessClock(Events* events) : events_(events) {}
  void sleepFor(std::chrono::milliseconds duration) override {
    if (events_ != nullptr) events_->add("sleep(" + std::to_string(duration.count()) + " ms)");
    if (onSleep) onSleep();
  }
  void endSleeps() override {
    if (events_ != nullptr) events_->add("endSleeps()");
    if (onEndSleeps) onEndSleeps();
  }

  std::function<void()> onSleep;
  std::function<void()> onEndSleeps;

 private:
  Events* events_;
};

}  // namespace zelvo::platform::headless
