#include "platform/headless/main_queue.h"

#include <new>
#include <utility>

namespace zelvo::platform::headless {

void HeadlessMainQueue::perform(std::function<void()> work) {
  {
    const std::lock_guard lock(mutex_);
    if (std::exchange(refusesNext_, false)) throw std::bad_alloc();
  }
  if (isMainThread()) {
    work();
    return;
  }
  const std::lock_guard lock(mutex_);
  work_.push_back(std::move(work));
}

void HeadlessMainQueue::performAndWait(std::function<void()> work) {
  {
    const std::lock_guard lock(mutex_);
    ++awaitedCount_;
  }
  if (isMainThread()) {
    work();
    return;
  }
  awaited_.performAndWait([this](std::function<void()> posted) { perform(std::move(posted)); }, work);
}

void HeadlessMainQueue::refuseNext() {
  const std::lock_guard lock(mutex_);
  refusesNext_ = true;
}

void HeadlessMainQueue::holdRequests(bool held) {
  const std::lock_guard lock(mutex_);
  holdsRequests_ = held;
}

void HeadlessMainQueue::take(CoalescedOperation& operation) {
  {
    const std::lock_guard lock(mutex_);
    if (holdsRequests_) {
      work_.emplace_back([&operation] { operation.run(); });
      return;
    }
  }
  operation.run();
}

void HeadlessMainQueue::pump() {
  for (;;) {
    std::function<void()> next;
    {
      const std::lock_guard lock(mutex_);
      if (work_.empty()) return;
      next = std::move(work_.front());
      work_.pop_front();
    }
    next();
  }
}

std::size_t HeadlessMainQueue::waiting() const {
  const std::lock_guard lock(mutex_);
  return work_.size();
}

std::size_t HeadlessMainQueue::awaited() const {
  const std::lock_guard lock(mutex_);
  return awaitedCount_;
}

}  // namespace zelvo::platform::headless
