#include "platform/linux/main_queue.h"

#include <linux/membarrier.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

namespace zelvo::platform::linux_ {

namespace {

bool registerForBarrier() { return ::syscall(SYS_membarrier, MEMBARRIER_CMD_REGISTER_PRIVATE_EXPEDITED, 0, 0) == 0; }

/// Every running thread of this process passes a full memory barrier before this returns.
void barrierInEveryThread() { ::syscall(SYS_membarrier, MEMBARRIER_CMD_PRIVATE_EXPEDITED, 0, 0); }

}  // namespace

LinuxMainQueue::LinuxMainQueue(std::chrono::milliseconds redrawInterval, Barrier barrier)
    : redrawInterval_(redrawInterval), hasBarrier_(barrier == Barrier::whereThereIsOne && registerForBarrier()) {}

LinuxMainQueue::~LinuxMainQueue() = default;

bool LinuxMainQueue::isMainThread() const { return std::this_thread::get_id() == mainThread_; }

void LinuxMainQueue::perform(std::function<void()> work) {
  if (isMainThread()) {
    work();
    return;
  }
  std::unique_lock lock(mutex_);
  work_.push_back(std::move(work));
  reportArrival(lock);
}

void LinuxMainQueue::performAndWait(std::function<void()> work) {
  if (isMainThread()) {
    work();
    return;
  }
  awaited_.performAndWait([this](std::function<void()> posted) { perform(std::move(posted)); }, work);
}

void LinuxMainQueue::take(CoalescedOperation& operation) {
  if (hasBarrier_ && !operation.markPending()) return;
  std::unique_lock lock(mutex_);
  if (std::find(redraws_.begin(), redraws_.end(), &operation) == redraws_.end()) redraws_.push_back(&operation);
  reportArrival(lock);
}

void LinuxMainQueue::reportArrival(std::unique_lock<std::mutex>& lock) {
  if (wake_) wake_();  // under the lock, so that it is not taken away meanwhile
  lock.unlock();
  arrived_.notify_one();
}

void LinuxMainQueue::setWaker(std::function<void()> wake) {
  const std::lock_guard lock(mutex_);
  wake_ = std::move(wake);
}

std::optional<std::chrono::milliseconds> LinuxMainQueue::serve() {
  std::unique_lock lock(mutex_);
  for (std::size_t left = work_.size(); left > 0 && !work_.empty(); --left) {
    const std::function<void()> next = std::move(work_.front());
    work_.pop_front();
    lock.unlock();
    next();
    lock.lock();
  }
  if (!redraws_.empty() && Clock::now() >= nextRedraw_) runRedraws(lock);
  if (!work_.empty()) return std::chrono::milliseconds(0);
  if (redraws_.empty()) return std::nullopt;
  return std::chrono::ceil<std::chrono::milliseconds>(std::max(nextRedraw_ - Clock::now(), Clock::duration::zero()));
}

void LinuxMainQueue::runRedraws(std::unique_lock<std::mutex>& lock) {
  const std::vector<CoalescedOperation*> due = std::exchange(redraws_, {});
  nextRedraw_ = Clock::now() + redrawInterval_;
  lock.unlock();
  if (hasBarrier_) {
    for (CoalescedOperation* operation : due) operation->clearPending();
    barrierInEveryThread();
  }
  for (CoalescedOperation* operation : due) operation->run();
  lock.lock();
}

void LinuxMainQueue::runDueRedraws() {
  std::unique_lock lock(mutex_);
  if (!redraws_.empty() && Clock::now() >= nextRedraw_) runRedraws(lock);
}

void LinuxMainQueue::runUntil(const std::function<bool()>& done) {
  std::unique_lock lock(mutex_);
  for (;;) {
    // Asked before looking for work: what the workers posted before they were done is then seen below.
    lock.unlock();
    const bool ending = done();
    lock.lock();
    if (!work_.empty()) {
      const std::function<void()> next = std::move(work_.front());
      work_.pop_front();
      lock.unlock();
      next();
      lock.lock();
      continue;
    }
    if (!redraws_.empty() && (ending || Clock::now() >= nextRedraw_)) {
      runRedraws(lock);
      continue;
    }
    if (ending) return;
    arrived_.wait_for(lock, redrawInterval_);
  }
}

}  // namespace zelvo::platform::linux_
