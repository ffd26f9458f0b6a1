#include "salvage/film_output.h"

#include <algorithm>
#include <cstring>

namespace zelvo::salvage {

FilmOutput::FilmOutput(platform::WritableFile& file, platform::Workers& workers) : file_(file) {
  if (workers.processors() > 1) helper_ = workers.startHelper([this] { serve(); });
}

FilmOutput::~FilmOutput() { static_cast<void>(finish()); }

void FilmOutput::append(std::span<const std::byte> bytes) {
  while (!bytes.empty()) {
    Buffer& buffer = filling();
    const std::size_t part = std::min(bytes.size(), kBuffer - buffer.used);
    std::memcpy(buffer.bytes.data() + buffer.used, bytes.data(), part);
    buffer.used += part;
    bytes = bytes.subspan(part);
    if (buffer.used == kBuffer) handOver();
  }
}

void FilmOutput::zeros(std::uint64_t count) {
  while (count > 0) {
    Buffer& buffer = filling();
    const auto part = static_cast<std::size_t>(std::min<std::uint64_t>(count, kBuffer - buffer.used));
    std::memset(buffer.bytes.data() + buffer.used, 0, part);
    buffer.used += part;
    count -= part;
    if (buffer.used == kBuffer) handOver();
  }
}

std::optional<avi::WriteFailure> FilmOutput::finish() {
  if (filling().used > 0) handOver();
  {
    const std::lock_guard lock(mutex_);
    isEnded_ = true;
    changed_.notify_all();
  }
  if (helper_) helper_->join();
  helper_.reset();
  return failure_;
}

/// Answers once another buffer is free.
void FilmOutput::handOver() {
  if (helper_) {
    std::unique_lock lock(mutex_);
    handed_ = ++filled_;
    changed_.notify_all();
    changed_.wait(lock, [this] { return handed_ - written_ < buffers_.size(); });
  } else {
    write(filling(), filled_);
    ++filled_;
  }
  filling().used = 0;
}

void FilmOutput::serve() {
  std::unique_lock lock(mutex_);
  while (true) {
    changed_.wait(lock, [this] { return handed_ > written_ || isEnded_; });
    if (handed_ == written_) return;
    const std::uint64_t number = written_;
    lock.unlock();
    write(buffers_[number % buffers_.size()], number);
    lock.lock();
    ++written_;
    changed_.notify_all();
  }
}

/// All buffers but the last are full, so a buffer's number says where it goes.
void FilmOutput::write(const Buffer& buffer, std::uint64_t number) {
  if (hasFailed_) return;
  const std::uint64_t offset = number * kBuffer;
  const platform::IoResult result = file_.writeAt(offset, std::span(buffer.bytes).first(buffer.used));
  if (!result.error) return;
  failure_ = avi::WriteFailure{offset + result.count, result.error};
  hasFailed_ = true;
}

}  // namespace zelvo::salvage
