/// The damaged file, open for reading. A read that fails counts as a short read and is remembered; nothing is ever
/// written to it. Offsets and sizes are in bytes. // Decision: writer, Failed reads and writes are remembered
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <system_error>

#include "avi/byte_ranges.h"
#include "avi/read_failures.h"
#include "platform/bytes.h"
#include "platform/files.h"

namespace zelvo::avi {

/// Thread: any, several at once.
class InputFile {
 public:
  /// The search for chunks goes through the file in blocks of this size.
  static constexpr std::size_t kBlockSize = 1024;

  /// Without a file every read answers nothing.
  explicit InputFile(std::unique_ptr<platform::ReadableFile> file) : owned_(std::move(file)), file_(owned_.get()) {}
  /// Of a file that somebody else keeps open.
  explicit InputFile(platform::ReadableFile& file) : file_(&file) {}

  /// Fills the front of `into`; the rest is left as it is. Answers how many bytes were read.
  std::size_t read(std::uint64_t offset, std::span<std::byte> into);

  /// As `read`, but answers a failure instead of remembering it: for reads that are tried again in smaller steps, or
  /// whose failures are remembered later.
  platform::IoResult tryRead(std::uint64_t offset, std::span<std::byte> into);

  /// As `tryRead`, into several places: each of `pieces` is filled before the next.
  platform::IoResult tryReadScattered(std::uint64_t offset, std::span<const std::span<std::byte>> pieces);

  /// Reads up to `size` bytes into a buffer of their own; fewer at the end of the file.
  [[nodiscard]] platform::Bytes readBytes(std::uint64_t offset, std::size_t size);

  /// Size of the file now; 0 without a file.
  [[nodiscard]] std::uint64_t size() const { return file_ != nullptr ? file_->size() : 0; }

  /// Adds failures that came after those remembered so far.
  void remember(const ReadFailures& failures);
  [[nodiscard]] ReadFailures failures() const;

 private:
  /// With the lock held.
  void keep(const ReadFailures& failures);

  std::unique_ptr<platform::ReadableFile> owned_;
  platform::ReadableFile* file_;
  mutable std::mutex mutex_;
  ReadFailures failures_;
  ByteRanges unreadable_;
};

}  // namespace zelvo::avi
