#include "engine/stretch_queue.h"

#include <algorithm>

#include "platform/ran_out.h"

namespace zelvo::engine {

namespace {

/// Below this many stretches a second thread costs more than it brings.
constexpr std::uint32_t kWorthHelping = 4;

}  // namespace

StretchQueue::StretchQueue(avi::InputFile& input, std::uint32_t last, std::uint32_t mod, platform::Workers& workers)
    : input_(input),
      last_(last),
      mod_(mod),
      stretches_(last / Stretch::kBlocks + (last % Stretch::kBlocks != 0 ? 1 : 0)),
      reader_(input, last, mod) {
  if (stretches_ >= kWorthHelping && workers.processors() > 1) {
    helper_ = workers.startHelper([this] { help(); });
    if (!helper_) throw std::system_error(platform::noThread());
  }
}

StretchQueue::~StretchQueue() {
  if (!helper_) return;
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
  }
  changed_.notify_all();
  helper_->join();
}

Stretch StretchQueue::stretch(std::uint32_t number) const {
  const std::uint32_t before = number * Stretch::kBlocks;
  return {before + 1, std::min(Stretch::kBlocks, last_ - before)};
}

bool StretchQueue::readOne(CandidateReader& reader, std::unique_lock<std::mutex>& lock) {
  const std::uint32_t oldest = delivering_ ? nextToDeliver_ - 1 : nextToDeliver_;
  if (ending_ || nextToTake_ == stretches_ || nextToTake_ - oldest >= kSlots) return false;
  const std::uint32_t number = nextToTake_++;
  Slot& slot = slots_[number % kSlots];
  lock.unlock();
  reader.read(stretch(number), slot.content);
  lock.lock();
  slot.ready = true;
  changed_.notify_all();
  return true;
}

void StretchQueue::help() {
  const std::error_code shortage = platform::ranOut([this] { readAlong(); });
  if (!shortage) return;
  {
    const std::lock_guard lock(mutex_);
    shortage_ = shortage;  // the stretch that it took will never be ready
  }
  changed_.notify_all();
}

void StretchQueue::readAlong() {
  CandidateReader reader(input_, last_, mod_);
  std::unique_lock lock(mutex_);
  while (!ending_ && nextToTake_ < stretches_) {
    if (!readOne(reader, lock)) changed_.wait(lock);
  }
}

const StretchContent& StretchQueue::next() {
  std::unique_lock lock(mutex_);
  if (delivering_) {
    slots_[(nextToDeliver_ - 1) % kSlots].ready = false;
    delivering_ = false;
    changed_.notify_all();
  }
  Slot& slot = slots_[nextToDeliver_ % kSlots];
  while (!slot.ready) {
    if (shortage_) throw std::system_error(shortage_);
    // The helper is at work on this one, or nobody is: read what is left to take rather than wait.
    if (!readOne(reader_, lock)) changed_.wait(lock);
  }
  ++nextToDeliver_;
  delivering_ = true;
  return slot.content;
}

}  // namespace zelvo::engine
