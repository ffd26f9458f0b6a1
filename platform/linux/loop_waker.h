/// Wakes an event loop through an eventfd.
#pragma once

#include "platform/waker.h"

namespace zelvo::platform::linux_ {

class LoopWaker final : public Waker {
 public:
  LoopWaker();
  ~LoopWaker() override;
  LoopWaker(const LoopWaker&) = delete;
  LoopWaker& operator=(const LoopWaker&) = delete;

  [[nodiscard]] int descriptor() const override { return descriptor_; }
  void wake() const noexcept override;
  void settle() const override;

 private:
  int descriptor_;
};

[[nodiscard]] LoopWakers loopWakers();

}  // namespace zelvo::platform::linux_
