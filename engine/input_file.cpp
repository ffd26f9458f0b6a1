#include "engine/input_file.h"

namespace zelvo::engine {

platform::IoResult InputFile::tryRead(std::uint64_t offset, std::span<std::byte> into) {
  return file_ ? file_->readAt(offset, into) : platform::IoResult{};
}

std::size_t InputFile::read(std::uint64_t offset, std::span<std::byte> into) {
  const platform::IoResult result = tryRead(offset, into);
  if (result.error) {
    const std::lock_guard lock(mutex_);
    if (failures_.count == 0 || offset + result.count < failures_.firstOffset) {
      failures_.firstOffset = offset + result.count;
      failures_.firstCause = result.error;
    }
    ++failures_.count;
  }
  return result.count;
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

}  // namespace zelvo::engine
