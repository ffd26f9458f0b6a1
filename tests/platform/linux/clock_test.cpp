#include "platform/linux/clock.h"

#include <gtest/gtest.h>

#include <thread>

namespace zelvo::tests {
namespace {

TEST(LinuxClock, ASleepUnderWayEndsWhenTheProgramEnds) {
  platform::linux_::LinuxClock clock;
  std::thread sleeper([&] { clock.sleepFor(std::chrono::hours(1)); });

  clock.endSleeps();

  sleeper.join();
}

TEST(LinuxClock, ALaterSleepIsOverAtOnce) {
  platform::linux_::LinuxClock clock;
  clock.endSleeps();
  clock.sleepFor(std::chrono::hours(1));
}

TEST(LinuxClock, NothingAtAllIsNoSleep) {
  platform::linux_::LinuxClock clock;
  clock.sleepFor(std::chrono::milliseconds(0));
}

}  // namespace
}  // namespace zelvo::tests
