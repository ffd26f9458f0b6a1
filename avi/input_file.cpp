#include "avi/input_file.h"

#include <algorithm>

namespace zelvo::avi {

platform::IoResult InputFile::tryRead(std::uint64_t offset, std::span<std::byte> into) {
  return file_ != nullptr ? file_->readAt(offset, into) : platform::IoResult{};
}

platform::IoResult InputFile::tryReadScattered(std::uint64_t offset, std::span<const std::span<std::byte>> pieces) {
  return file_ != nullptr ? file_->readScattered(offset, pieces) : platform::IoResult{};
}

std::size_t InputFile::read(std::uint64_t offset, std::span<std::byte> into) {
  const platform::IoResult result = tryRead(offset, into);
  if (result.error) {
    const std::lock_guard lock(mutex_);
    keep({1, offset + result.count, result.error});
  }
  return result.count;
}

void InputFile::remember(const ReadFailures& failures) {
  const std::lock_guard lock(mutex_);
  keep(failures);
}

void InputFile::keep(const ReadFailures& failures) {
  failures_.add(failures);
  if (failures.count == 0) return;
  const std::uint64_t blockEnd = (failures.firstOffset / kBlockSize + 1) * kBlockSize;
  unreadable_.add(failures.firstOffset, std::min(blockEnd, size()));
  failures_.bytes = unreadable_.bytes();
}

ReadFailures InputFile::failures() const {
  const std::lock_guard lock(mutex_);
  return failures_;
}

platform::Bytes InputFile::readBytes(std::uint64_t offset, std::size_t size) {
  platform::Bytes bytes(size);
  bytes.resize(read(offset, bytes));
  return bytes;
}

}  // namespace zelvo::avi
