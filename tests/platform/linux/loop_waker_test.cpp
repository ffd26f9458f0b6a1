#include "platform/linux/loop_waker.h"

#include <gtest/gtest.h>
#include <poll.h>

namespace zelvo::tests {
namespace {

[[nodiscard]] bool isReadable(const platform::Waker& waker) {
  pollfd wait{.fd = waker.descriptor(), .events = POLLIN, .revents = 0};
  return ::poll(&wait, 1, 0) == 1;
}

TEST(LoopWaker, IsReadableFromACallUntilItIsSettled) {
  const platform::linux_::LoopWaker waker;
  EXPECT_FALSE(isReadable(waker));
  waker.wake();
  waker.wake();
  EXPECT_TRUE(isReadable(waker));
  waker.settle();
  EXPECT_FALSE(isReadable(waker));
  waker.settle();  // waits for nothing
  waker.wake();
  EXPECT_TRUE(isReadable(waker));
}

TEST(LoopWaker, EachIsWokenByItself) {
  const platform::LoopWakers wakers = platform::linux_::loopWakers();
  wakers.signal->wake();
  EXPECT_FALSE(isReadable(*wakers.arrival));
  EXPECT_TRUE(isReadable(*wakers.signal));
}

}  // namespace
}  // namespace zelvo::tests
