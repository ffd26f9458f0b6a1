#include "app/write_out.h"

namespace zelvo::app {

namespace {

/// A window that redraws as often looks alive.
constexpr std::chrono::milliseconds kRedrawInterval(16);

}  // namespace

WriteOut::WriteOut(platform::WritableFile& file, platform::Workers& workers)
    : file_(file), helper_(workers.startHelper([this] { work(); })) {}

WriteOut::~WriteOut() {
  {
    const std::lock_guard lock(mutex_);
    abandoned_ = true;
  }
  changed_.notify_all();
  if (helper_) helper_->join();
}

void WriteOut::work() {
  std::unique_lock lock(mutex_);
  while (true) {
    changed_.wait(lock, [this] { return abandoned_ || finishing_ || written_ - sent_ >= kStep; });
    if (abandoned_) return;
    if (finishing_) break;
    const std::uint64_t from = sent_;
    const std::uint64_t to = written_;
    lock.unlock();
    const std::error_code error = file_.writeOut(from, to - from);
    lock.lock();
    sent_ = to;
    if (error && !error_) error_ = error;
    changed_.notify_all();
  }
  lock.unlock();
  const std::error_code error = file_.flush();
  lock.lock();
  if (error && !error_) error_ = error;
  flushed_ = true;
  changed_.notify_all();
}

template <class Condition>
bool WriteOut::waitFor(Condition condition) {
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, kRedrawInterval, condition);
}

void WriteOut::wroteUpTo(std::uint64_t end) {
  {
    const std::lock_guard lock(mutex_);
    written_ = end;
  }
  changed_.notify_all();
}

bool WriteOut::mayGoOn() {
  return helper_ == nullptr || waitFor([this] { return written_ - sent_ < kMaxAhead; });
}

void WriteOut::finish() {
  {
    const std::lock_guard lock(mutex_);
    finishing_ = true;
  }
  if (helper_ == nullptr) {
    work();
    return;
  }
  changed_.notify_all();
}

bool WriteOut::isFlushed() {
  return waitFor([this] { return flushed_; });
}

std::error_code WriteOut::error() const {
  const std::lock_guard lock(mutex_);
  return error_;
}

}  // namespace zelvo::app
