/// Map files of GNU ddrescue: which bytes of a disk or file were rescued from it, and which were not. Positions and
/// sizes are in bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <system_error>
#include <variant>
#include <vector>

#include "platform/files.h"
#include "salvage/scan/byte_span.h"

namespace zelvo::salvage {

/// What a map tells, in its own positions: those of the disk or file that was rescued.
struct RescueMap {
  std::uint64_t begin = 0;     ///< of the first block
  std::uint64_t end = 0;       ///< of the last block; `begin` of a map without blocks
  std::vector<ByteSpan> lost;  ///< from `begin` to `end` what was not rescued, whatever the reason: rising, apart
};

enum class RescueMapProblem : std::uint8_t {
  unreadable,     ///< the file cannot be read
  noStatus,       ///< there is no line "position status", or it is not the first
  notABlock,      ///< a line is not "position size status" with a size above zero
  unknownStatus,  ///< a status is none that a map has
  tooFar,         ///< a block ends beyond all positions, 2^63
  gap,            ///< a block does not begin where the one before it ends, but after it
  overlap,        ///< the same, but before it
  tooLong,        ///< more stretches were not rescued than are kept
};

struct RescueMapFault {
  RescueMapProblem problem = RescueMapProblem::unreadable;
  std::uint64_t line = 0;  ///< from 1; 0 when the file cannot be read
  std::error_code cause;   ///< of `unreadable`
};

/// Stretches that were not rescued; a map with more is not taken. Neighbouring blocks make one.
inline constexpr std::size_t kMaxLostStretches = 1'000'000;

/// Reads a map in its present or its older form, which was called "logfile". Numbers are written as in C; lines may end
/// in CR and LF; what stands after the last field of a line is not looked at.
/// Thread: any.
[[nodiscard]] std::variant<RescueMap, RescueMapFault> readRescueMap(platform::ReadableFile& file);

/// A number as a map has it: decimal, hexadecimal after "0x", octal after "0"; below 2^63.
[[nodiscard]] std::optional<std::uint64_t> rescueNumber(std::string_view text);

/// What a map tells of one film.
struct FilmRescue {
  /// Not rescued, in offsets of the film: rising, apart. They may reach beyond the end of the file when the map is the
  /// file's own: such a copy ends with the last byte that was rescued.
  std::vector<ByteSpan> lost;
  std::uint64_t offset = 0;  ///< position of the film's first byte in the map

  [[nodiscard]] std::uint64_t lostBytes() const;
};

/// `offset`: where the film begins in the map of a whole disk; nothing when the map is that of the film itself. What
/// the map does not tell of was not rescued. Nothing when it tells of no byte of the film.
[[nodiscard]] std::optional<FilmRescue> rescueOf(const RescueMap& map, std::optional<std::uint64_t> offset,
                                                 std::uint64_t filmSize);

/// A map that has ddrescue read just the bytes of `wanted`, which rise and are apart, of the first `end`.
[[nodiscard]] std::string domainMap(const std::vector<ByteSpan>& wanted, std::uint64_t end);

}  // namespace zelvo::salvage
