/// Part of the forward pass over the rebuilt file: what is appended gathers in a large buffer that is written at
/// aligned positions, so that millions of small fields cost few writes. Sizes and positions are in bytes.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "avi/byte_order.h"
#include "avi/fourcc.h"
#include "avi/write_failure.h"
#include "platform/bytes.h"
#include "platform/files.h"

namespace zelvo::avi {

/// Thread: one.
class StagedOutput {
 public:
  static constexpr std::size_t kBufferSize = 65536;

  /// The first byte appended goes to `start`.
  explicit StagedOutput(platform::WritableFile& file, std::uint64_t start = 0);
  StagedOutput(const StagedOutput&) = delete;
  StagedOutput& operator=(const StagedOutput&) = delete;

  /// Room for at least one byte at the current position; what is put there counts once it is committed.
  [[nodiscard]] std::span<std::byte> room() { return std::span(bytes_).first(limit_).subspan(used_); }
  void commit(std::size_t count) {
    used_ += count;
    if (used_ == limit_) write();
  }

  void append(std::span<const std::byte> bytes);

  // Fields of the format, in file order.
  void code(FourCC code) { append(code.bytes()); }
  /// A 4-byte field.
  void number32(std::uint32_t value) {
    std::array<std::byte, 4> bytes{};
    storeLittleEndian32(bytes, value);
    append(bytes);
  }
  /// An 8-byte field.
  void number64(std::uint64_t value) {
    std::array<std::byte, 8> bytes{};
    storeLittleEndian64(bytes, value);
    append(bytes);
  }
  void zeros(std::size_t count);

  /// Position of the next byte.
  [[nodiscard]] std::uint64_t position() const { return written_ + used_; }

  /// True once a write has failed; what is appended from then on is dropped.
  [[nodiscard]] bool failed() const { return failure_.has_value(); }

  /// Writes what is left and answers the first failure.
  std::optional<WriteFailure> finish();

 private:
  void write();

  platform::WritableFile& file_;
  platform::Bytes bytes_;
  std::size_t used_ = 0;
  std::size_t limit_;  ///< the buffer is full here: the next aligned position
  std::uint64_t written_;
  std::optional<WriteFailure> failure_;
};

}  // namespace zelvo::avi
