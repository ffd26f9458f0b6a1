#include "engine/staged_output.h"

#include <cstring>
#include <utility>

namespace zelvo::engine {

StagedOutput::StagedOutput(platform::WritableFile& file, platform::Workers& workers)
    : file_(file), current_(std::make_unique<platform::Bytes>(kBufferSize)) {
  helper_ = workers.startHelper([this] { writeBuffers(); });
}

StagedOutput::~StagedOutput() { finish(); }

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

void StagedOutput::handOver() {
  if (used_ == 0) return;
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return fullCount_ < kBuffers; });
  full_[(firstFull_ + fullCount_) % kBuffers] = {std::move(current_), handedOver_, used_};
  ++fullCount_;
  if (freeCount_ > 0) current_ = std::move(free_[--freeCount_]);
  lock.unlock();
  changed_.notify_all();
  if (!current_) current_ = std::make_unique<platform::Bytes>(kBufferSize);
  handedOver_ += used_;
  used_ = 0;
}

void StagedOutput::writeBuffers() {
  std::unique_lock lock(mutex_);
  for (;;) {
    changed_.wait(lock, [this] { return fullCount_ > 0 || ending_; });
    if (fullCount_ == 0) return;
    FullBuffer full = std::move(full_[firstFull_]);
    lock.unlock();
    platform::IoResult result;
    if (!failed_) result = file_.writeAt(full.position, std::span(*full.bytes).first(full.size));
    lock.lock();
    if (result.error) {
      failure_ = WriteFailure{full.position + result.count, result.error};
      failed_ = true;
    }
    firstFull_ = (firstFull_ + 1) % kBuffers;
    --fullCount_;
    if (freeCount_ < kBuffers) free_[freeCount_++] = std::move(full.bytes);
    changed_.notify_all();
  }
}

std::optional<WriteFailure> StagedOutput::finish() {
  if (helper_) {
    handOver();
    {
      const std::lock_guard lock(mutex_);
      ending_ = true;
    }
    changed_.notify_all();
    std::exchange(helper_, nullptr)->join();
  }
  return failure_;
}

}  // namespace zelvo::engine
