/// What look-ahead finds at every place that a size can reach, kept as bits: an input dense with candidates asks about
/// some 10 MB, here and there, and bits fit the processor's nearer caches where the bytes do not. Offsets are in bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "avi/input_file.h"
#include "engine/code_finder.h"
#include "platform/page_bytes.h"

namespace zelvo::engine {

/// Bytes that are read after a payload; a code may start at the first three, since an odd payload is padded.
inline constexpr std::size_t kLookAheadSize = 6;

/// Which code starts at one of the first three of them. At most one can: none holds the beginning of another.
enum class LookAheadFind : std::uint8_t { nothing, chunk, padding };

/// Thread: one.
class LookAheadMap {
 public:
  explicit LookAheadMap(avi::InputFile& input) : input_(input) {}

  /// Moves on, so that it covers [`start`, `end`) as far as that can be read; `start` is a multiple of 64 and not below
  /// that of the call before, or the map begins again there. At most `kPositions` - `kPiece` can be covered.
  void cover(std::uint64_t start, std::uint64_t end);

  /// What the six bytes at `offset` hold; nullopt when the place is not covered.
  [[nodiscard]] std::optional<LookAheadFind> at(std::uint64_t offset) const {
    if (offset < start_ || offset >= end_) return std::nullopt;
    const std::size_t position = offset % kPositions;
    const std::uint64_t bit = std::uint64_t{1} << (position % 64);
    if ((codes_[position / 64] & bit) == 0) return LookAheadFind::nothing;
    // "JUNK" is rare in a dense input, so its bits are seldom fetched.
    const bool isNear = (nearPadding_[position / 4096] >> (position / 64 % 64) & 1U) != 0;
    return isNear && (padding_[position / 64] & bit) != 0 ? LookAheadFind::padding : LookAheadFind::chunk;
  }

  /// Where at() looks, for fetching it beforehand; null when the place is not covered.
  [[nodiscard]] const void* placeOf(std::uint64_t offset) const {
    return offset >= start_ && offset < end_ ? &codes_[offset % kPositions / 64] : nullptr;
  }

  /// True when the input is known to have ended at or before `offset`.
  [[nodiscard]] bool isBeyondInput(std::uint64_t offset) const { return offset >= inputEnd_; }

  /// Places read in one go.
  static constexpr std::size_t kPiece = 65536;
  /// Place p has bit p modulo this number.
  static constexpr std::size_t kPositions = 164 * kPiece;

 private:
  /// Bytes after a piece that its last places look at, rounded up to what the finder takes at once.
  static constexpr std::size_t kTail = 128;
  /// Bytes of a look-ahead after its first.
  static constexpr std::size_t kRest = 5;

  void mark(std::size_t places);

  avi::InputFile& input_;
  CodeFinder finder_;
  std::optional<platform::PageBytes> bytes_;  ///< empty before the first call
  std::vector<std::uint64_t> codes_;          ///< any code is found
  std::vector<std::uint64_t> padding_;        ///< the code that is found is "JUNK"
  std::vector<std::uint64_t> nearPadding_;    ///< a bit for each word of `padding_`: it has any set
  std::uint64_t start_ = 0;
  std::uint64_t end_ = 0;
  std::uint64_t inputEnd_ = UINT64_MAX;
};

}  // namespace zelvo::engine
