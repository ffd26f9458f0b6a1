/// A file in memory for reading, parts of which may be unreadable.
/// Thread: any, several at once, as for every file that is read.
#pragma once

#include <algorithm>
#include <cstring>
#include <mutex>
#include <string>
#include <utility>

#include "platform/files.h"

namespace zelvo::tests {

class MemoryReadable final : public platform::ReadableFile {
 public:
  explicit MemoryReadable(std::string bytes) : bytes_(std::move(bytes)) {}

  /// Reads that touch [start, end) fail from now on, at its start.
  void makeUnreadable(std::uint64_t start, std::uint64_t end) {
    const std::lock_guard lock(mutex_);
    badStart_ = start, badEnd_ = end;
  }
  /// The file ends here from now on.
  void cutTo(std::size_t size) {
    const std::lock_guard lock(mutex_);
    bytes_.resize(size);
  }
  /// Highest number of bytes asked for at a time.
  [[nodiscard]] std::size_t largestRead() const {
    const std::lock_guard lock(mutex_);
    return largestRead_;
  }

  platform::IoResult readAt(std::uint64_t offset, std::span<std::byte> into) override {
    const std::lock_guard lock(mutex_);
    largestRead_ = std::max(largestRead_, into.size());
    if (offset >= bytes_.size()) return {};
    std::uint64_t end = std::min<std::uint64_t>(bytes_.size(), offset + into.size());
    const bool fails = offset < badEnd_ && end > badStart_;
    if (fails) end = std::max(offset, badStart_);
    const auto count = static_cast<std::size_t>(end - offset);
    if (count > 0) std::memcpy(into.data(), bytes_.data() + offset, count);
    return {count, fails ? std::make_error_code(std::errc::io_error) : std::error_code{}};
  }
  std::uint64_t size() override {
    const std::lock_guard lock(mutex_);
    return bytes_.size();
  }

 private:
  mutable std::mutex mutex_;
  std::string bytes_;
  std::uint64_t badStart_ = 0;
  std::uint64_t badEnd_ = 0;
  std::size_t largestRead_ = 0;
};

}  // namespace zelvo::tests
