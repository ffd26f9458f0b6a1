/// A file in memory for reading, parts of which may be unreadable.
/// Thread: any, several at once, as for every file that is read.
#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "tests/support/byte_text.h"
#include "tests/support/memory_files.h"

namespace zelvo::tests {

class MemoryReadable final : public platform::ReadableFile {
 public:
  explicit MemoryReadable(const std::string& bytes)
      : content_(files_.put("/in", bytesOf(bytes))), file_(files_.openForReading("/in").file) {}

  /// Reads that touch [start, end) fail from now on, at its start.
  void makeUnreadable(std::uint64_t start, std::uint64_t end) {
    const std::lock_guard lock(content_.mutex);
    content_.badReadStart = start;
    content_.badReadEnd = end;
    content_.readError = std::make_error_code(std::errc::io_error);
  }
  /// The file ends here from now on.
  void cutTo(std::size_t size) {
    const std::lock_guard lock(content_.mutex);
    content_.bytes.resize(size);
    content_.size = size;
  }
  /// Highest number of bytes asked for at a time.
  [[nodiscard]] std::size_t largestRead() const {
    const std::lock_guard lock(content_.mutex);
    return content_.largestRead;
  }

  platform::IoResult readAt(std::uint64_t offset, std::span<std::byte> into) override {
    return file_->readAt(offset, into);
  }
  std::uint64_t size() override { return file_->size(); }

 private:
  MemoryFiles files_;
  MemoryFile& content_;
  std::unique_ptr<platform::ReadableFile> file_;
};

}  // namespace zelvo::tests
