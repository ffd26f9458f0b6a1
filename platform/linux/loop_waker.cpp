#include "platform/linux/loop_waker.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cstdint>

namespace zelvo::platform::linux_ {

LoopWaker::LoopWaker() : descriptor_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

LoopWaker::~LoopWaker() { ::close(descriptor_); }

void LoopWaker::wake() const noexcept {
  constexpr std::uint64_t kOnce = 1;
  // Full means that the loop is about to wake anyway.
  [[maybe_unused]] const auto written = ::write(descriptor_, &kOnce, sizeof kOnce);
}

void LoopWaker::settle() const {
  std::uint64_t calls = 0;
  static_cast<void>(::read(descriptor_, &calls, sizeof calls));
}

LoopWakers loopWakers() { return {.arrival = std::make_unique<LoopWaker>(), .signal = std::make_unique<LoopWaker>()}; }

}  // namespace zelvo::platform::linux_
