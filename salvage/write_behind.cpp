#include "salvage/write_behind.h"

#include <algorithm>
#include <cstring>

namespace zelvo::salvage {

WriteBehind::WriteBehind(platform::WritableFile& file, platform::Workers& workers) : file_(file) {
  if (workers.processors() > 1) helper_ = workers.startHelper([this] { serve(); });
}

WriteBehind::~WriteBehind() { static_cast<void>(finish()); }

platform::IoResult WriteBehind::writeAt(std::uint64_t offset, std::span<const std::byte> from) {
  if (const auto failed = failure()) return {0, failed->cause};
  const std::size_t size = from.size();
  while (!from.empty()) {
    Buffer& buffer = buffers_[filling_ % buffers_.size()];
    if (buffer.used == 0) buffer.offset = offset;
    const std::size_t part = std::min(from.size(), kBuffer - buffer.used);
    std::memcpy(buffer.bytes.data() + buffer.used, from.data(), part);
    buffer.used += part;
    offset += part;
    from = from.subspan(part);
    if (buffer.used == kBuffer) handOver();
  }
  return {size, {}};
}

std::optional<avi::WriteFailure> WriteBehind::finish() {
  if (buffers_[filling_ % buffers_.size()].used > 0) handOver();
  {
    const std::lock_guard lock(mutex_);
    isEnded_ = true;
    changed_.notify_all();
  }
  if (helper_) helper_->join();
  helper_.reset();
  return failure();
}

/// Waits for the next buffer to be free.
void WriteBehind::handOver() {
  if (!helper_) {
    Buffer& buffer = buffers_[filling_ % buffers_.size()];
    if (!failure()) write(buffer);
    buffer.used = 0;
    return;
  }
  std::unique_lock lock(mutex_);
  handed_ = ++filling_;
  changed_.notify_all();
  changed_.wait(lock, [this] { return handed_ - written_ < buffers_.size(); });
  buffers_[filling_ % buffers_.size()].used = 0;
}

void WriteBehind::serve() {
  std::unique_lock lock(mutex_);
  while (true) {
    changed_.wait(lock, [this] { return handed_ > written_ || isEnded_; });
    if (handed_ == written_) return;
    const Buffer& buffer = buffers_[written_ % buffers_.size()];
    const bool isWanted = !failure_;
    lock.unlock();
    if (isWanted) write(buffer);
    lock.lock();
    ++written_;
    changed_.notify_all();
  }
}

void WriteBehind::write(const Buffer& buffer) {
  const platform::IoResult result = file_.writeAt(buffer.offset, std::span(buffer.bytes).first(buffer.used));
  if (!result.error) return;
  const std::lock_guard lock(mutex_);
  failure_ = avi::WriteFailure{buffer.offset + result.count, result.error};
}

std::optional<avi::WriteFailure> WriteBehind::failure() {
  const std::lock_guard lock(mutex_);
  return failure_;
}

}  // namespace zelvo::salvage
