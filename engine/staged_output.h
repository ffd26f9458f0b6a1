/// The one forward pass over the rebuilt file: what is appended gathers in large buffers that a helper thread writes at
/// aligned positions, so that reading goes on meanwhile. Sizes and positions are in bytes.
#pragma once

#include <algorithm>
#include <array>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <span>

#include "engine/byte_order.h"
#include "engine/fourcc.h"
#include "engine/write_failure.h"
#include "platform/bytes.h"
#include "platform/files.h"
#include "platform/relaxed.h"
#include "platform/workers.h"

namespace zelvo::engine {

/// Thread: one, besides the helper of its own.
class StagedOutput {
 public:
  static constexpr std::size_t kBufferSize = 262144;

  StagedOutput(platform::WritableFile& file, platform::Workers& workers);
  /// Ends as `finish` does.
  ~StagedOutput();
  StagedOutput(const StagedOutput&) = delete;
  StagedOutput& operator=(const StagedOutput&) = delete;

  /// Room for at least one byte at the current position; what is put there counts once it is committed.
  [[nodiscard]] std::span<std::byte> room() { return std::span(*current_).subspan(used_); }
  void commit(std::size_t count) {
    used_ += count;
    if (used_ == kBufferSize) handOver();
  }

  void append(std::span<const std::byte> bytes);

  // Fields of the format, in file order.
  void code(FourCC code) { append(code.bytes()); }
  /// A 4-byte field: the low 32 bits of `value`.
  void number(std::uint64_t value) {
    std::array<std::byte, 4> bytes{};
    storeLittleEndian32(bytes, low32(value));
    append(bytes);
  }
  /// An 8-byte field.
  /// Deliberate: the low 32 bits of `value`, then four zero bytes.
  void wideNumber(std::uint64_t value) {
    number(value);
    number(0);
  }
  void zeros(std::size_t count);

  /// Position of the next byte.
  [[nodiscard]] std::uint64_t position() const { return handedOver_ + used_; }

  /// True once a write has failed; what is appended from then on is dropped.
  [[nodiscard]] bool failed() const { return failed_; }

  /// Writes what is left, waits for the helper and answers the first failure.
  std::optional<WriteFailure> finish();

 private:
  static constexpr std::size_t kBuffers = 4;
  struct FullBuffer {
    std::unique_ptr<platform::Bytes> bytes;
    std::uint64_t position = 0;
    std::size_t size = 0;
  };

  void handOver();
  void writeBuffers();

  platform::WritableFile& file_;
  std::unique_ptr<platform::Bytes> current_;
  std::size_t used_ = 0;
  std::uint64_t handedOver_ = 0;
  platform::Relaxed<bool> failed_;

  std::mutex mutex_;
  std::condition_variable changed_;
  std::array<FullBuffer, kBuffers> full_;  ///< a ring: `fullCount_` buffers from `firstFull_` on wait to be written
  std::size_t firstFull_ = 0;
  std::size_t fullCount_ = 0;
  std::array<std::unique_ptr<platform::Bytes>, kBuffers> free_;
  std::size_t freeCount_ = 0;
  bool ending_ = false;
  std::optional<WriteFailure> failure_;
  std::shared_ptr<platform::Worker> helper_;
};

}  // namespace zelvo::engine
