#include "avi/staged_output.h"

#include <cstring>

namespace zelvo::avi {

StagedOutput::StagedOutput(platform::WritableFile& file, std::uint64_t start)
    : file_(file), bytes_(kBufferSize), limit_(kBufferSize - start % kBufferSize), written_(start) {}

void StagedOutput::append(std::span<const std::byte> bytes) {
  while (!bytes.empty()) {
    const std::span<std::byte> free = room();
    const std::size_t step = std::min(free.size(), bytes.size());
    std::memcpy(free.data(), bytes.data(), step);
    commit(step);
    bytes = bytes.subspan(step);
  }
}

void StagedOutput::zeros(std::size_t count) {
  constexpr std::array<std::byte, 64> kZeros{};
  for (; count > kZeros.size(); count -= kZeros.size()) append(kZeros);
  append(std::span(kZeros).first(count));
}

void StagedOutput::write() {
  if (used_ > 0 && !failure_) {
    const platform::IoResult result = file_.writeAt(written_, std::span(bytes_).first(used_));
    if (result.error) failure_ = WriteFailure{written_ + result.count, result.error};
  }
  written_ += used_;
  used_ = 0;
  limit_ = kBufferSize - written_ % kBufferSize;
}

std::optional<WriteFailure> StagedOutput::finish() {
  write();
  return failure_;
}

}  // namespace zelvo::avi
