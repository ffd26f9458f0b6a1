#include "salvage/writing/film_output.h"

#include <algorithm>
#include <cstring>

namespace zelvo::salvage {

FilmOutput::FilmOutput(platform::WritableFile& file, platform::Workers& workers) : file_(file) {
  if (workers.processors() > 1) helper_ = workers.startHelper([this] { serve(); });
  if (helper_) sender_ = workers.startHelper([this] { send(); });
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
  if (sender_) sender_->join();
  sender_.reset();
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
  if (result.error) noteFailure(offset + result.count, result.error);
}

void FilmOutput::noteFailure(std::uint64_t offset, std::error_code cause) {
  const std::lock_guard lock(mutex_);
  if (!failure_) failure_ = avi::WriteFailure{offset, cause};
  hasFailed_ = true;
}

void FilmOutput::send() {
  std::uint64_t sent = 0;
  std::unique_lock lock(mutex_);
  while (true) {
    changed_.wait(lock, [&] { return written_ - sent >= kSentTogether || isEnded_; });
    // The rest is left to the flush.
    if (isEnded_ || hasFailed_) return;
    const std::uint64_t end = written_;
    lock.unlock();
    const std::error_code error = file_.beginWriteOut(sent * kBuffer, (end - sent) * kBuffer);
    if (error) noteFailure(sent * kBuffer, error);
    sent = end;
    lock.lock();
  }
}

}  // namespace zelvo::salvage
