/// The ground of the literal transcription: reading and writing one piece at a time, and numbers by plain loops. The
/// transcription does every step of a repair in the plainest way there is; the engine has to agree with it byte for
/// byte. It shares no code with the engine. Offsets and sizes are in bytes.
/// Decision: tests, A literal transcription judges the engine
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "platform/bytes.h"
#include "platform/files.h"

namespace zelvo::tests::literal {

/// The damaged file, with a position that a seek sets.
class Input {
 public:
  /// `file` may be null: then every read answers nothing.
  explicit Input(platform::ReadableFile* file) : file_(file) {}

  void seekToFileOffset(std::uint64_t offset) { position_ = offset; }
  /// Reads into the front of `into`, which is otherwise left alone; answers how many bytes there were.
  std::size_t getBytes(std::span<std::byte> into);
  /// The same into a buffer of its own, which a large `length` makes no larger than what the file still holds.
  [[nodiscard]] platform::Bytes readDataOfLength(std::uint64_t length);

  /// Reads that failed, the end of the file not counted, and the first byte that could not be read.
  [[nodiscard]] std::uint64_t failures() const { return failures_; }
  [[nodiscard]] std::uint64_t firstFailure() const { return firstFailure_; }

 private:
  platform::ReadableFile* file_;
  std::uint64_t position_ = 0;
  std::uint64_t failures_ = 0;
  std::uint64_t firstFailure_ = 0;
};

/// The rebuilt file, written by one call per field.
class Output {
 public:
  explicit Output(platform::WritableFile& file) : file_(file) {}
  void writeData(std::span<const std::byte> bytes);
  void writeText(std::string_view text);
  /// The low 32 bits, least significant byte first.
  void writeInt(std::uint64_t value);
  /// The low 32 bits, then four zero bytes.
  void writeIntTo8byte(std::uint64_t value);
  void writeZeros(std::size_t count);
  [[nodiscard]] std::uint64_t position() const { return position_; }

 private:
  platform::WritableFile& file_;
  std::uint64_t position_ = 0;
};

/// The little-endian number in the first four of `bytes`; missing bytes count as zero.
[[nodiscard]] std::uint64_t numberIn(std::span<const std::byte> bytes);

/// True when the four bytes from `position` on are those of `code`.
[[nodiscard]] inline bool isCode(std::span<const std::byte> bytes, std::size_t position, const char* code) {
  for (std::size_t k = 0; k < 4; ++k) {
    if (bytes[position + k] != static_cast<std::byte>(code[k])) return false;
  }
  return true;
}

}  // namespace zelvo::tests::literal
