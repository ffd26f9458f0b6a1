/// Finds the codes of data chunks ("00db", "00dc", "01wb") in a run of bytes, as fast as the processor allows.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "avi/input_file.h"

namespace zelvo::engine {

/// How the bytes are compared; `best` is what this processor does fastest.
enum class CodeFinderKind { portable, sse2, avx2, best };

/// Positions at which a code starts, in ascending order.
class FoundCodes {
 public:
  /// Two codes cannot overlap, so 1024 positions hold at most this many.
  static constexpr std::size_t kCapacity = 256;
  void clear() { count_ = 0; }
  void add(std::size_t position) { positions_[count_++] = static_cast<std::uint16_t>(position); }
  [[nodiscard]] std::span<const std::uint16_t> positions() const { return std::span(positions_).first(count_); }

 private:
  std::array<std::uint16_t, kCapacity> positions_;
  std::size_t count_ = 0;
};

/// The places among 64 at which a code starts: bit 0 stands for the first.
struct CodeBits {
  std::uint64_t data = 0;     ///< a data chunk's
  std::uint64_t padding = 0;  ///< "JUNK"
};

/// Thread: any; one finder may serve several.
class CodeFinder {
 public:
  /// Bytes that must lie in `bytes` after the last position tested.
  static constexpr std::size_t kMargin = 192;
  static constexpr std::size_t kMaxPositions = avi::InputFile::kBlockSize;

  /// A kind that this processor lacks falls back to `portable`.
  explicit CodeFinder(CodeFinderKind kind = CodeFinderKind::best);

  /// Fills `found` with the positions below `positions` (at most `kMaxPositions`) at which a code starts. Whatever lies
  /// in the margin is read but only matters as the tail of a code.
  /// \pre `bytes` holds at least `positions` + `kMargin` bytes
  void find(std::span<const std::byte> bytes, std::size_t positions, FoundCodes& found) const {
    find_(bytes.data(), positions, found);
  }

  /// The codes that start at the 64 places from `bytes` on, of which 64 + 3 bytes are looked at and up to `kMargin`
  /// bytes more are read.
  [[nodiscard]] CodeBits bits(const std::byte* bytes) const { return bits_(bytes); }

 private:
  using Find = void (*)(const std::byte* bytes, std::size_t positions, FoundCodes& found);
  using Bits = CodeBits (*)(const std::byte* bytes);
  Find find_;
  Bits bits_;
};

}  // namespace zelvo::engine
