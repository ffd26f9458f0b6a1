/// What the headers of a JPEG picture say of its scan, and the walk over that scan's codes. No picture comes of it.
/// Offsets and sizes are in bytes.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace zelvo::salvage {

/// A table of Huffman codes as a header lists it.
struct JpegCodes {
  static constexpr std::size_t kLongest = 16;
  std::array<std::uint32_t, kLongest + 1> counts{};  ///< by length in bits; none of 0
  std::vector<std::uint8_t> symbols;                 ///< as many as the counts come to
};

/// Of a baseline picture with one scan.
struct JpegScan {
  static constexpr std::size_t kMaxComponents = 3;
  struct Block {
    std::uint8_t component = 0;
    std::uint8_t dcCodes = 0;
    std::uint8_t acCodes = 0;
  };
  std::size_t begin = 0;           ///< of the scan's codes, from the picture's first byte
  std::uint32_t unitsPerRow = 0;   ///< units of blocks (MCU) side by side
  std::uint64_t units = 0;         ///< in all of the scan
  std::uint32_t restartUnits = 0;  ///< a marker after so many; 0 when there are none
  std::vector<Block> blocks;       ///< of one unit, ten at most
  std::array<JpegCodes, 4> dcCodes;
  std::array<JpegCodes, 4> acCodes;
};

/// Nothing where a header is broken, tables are missing, or the picture is of another kind.
/// Thread: any.
[[nodiscard]] std::optional<JpegScan> jpegScan(std::span<const std::byte> picture);

/// The bytes of a payload as they would be with the foreign ones in it left out.
struct CutBytes {
  std::span<const std::byte> bytes;
  std::size_t cut = 0;    ///< bytes in front of those left out
  std::size_t added = 0;  ///< left out

  [[nodiscard]] std::size_t size() const { return bytes.size() - added; }
  [[nodiscard]] unsigned at(std::size_t place) const {
    return static_cast<unsigned>(bytes[place < cut ? place : place + added]);
  }
};

/// Where a walk stands between two units.
struct JpegPlace {
  std::size_t next = 0;                                         ///< the first byte of which nothing was read
  std::uint32_t byte = 0;                                       ///< the last one that was read
  std::uint32_t left = 0;                                       ///< its bits that were not read yet
  std::uint64_t unit = 0;                                       ///< units that were read
  std::array<std::int32_t, JpegScan::kMaxComponents> levels{};  ///< of each component, where its next block begins

  /// Whether the bytes end here, or another marker comes than that of a restart.
  [[nodiscard]] bool isBeforeEnd(const CutBytes& bytes) const;
};

/// Reads the unit at `place`, and the marker in front of it where one is due. False where no unit can be so: `place` is
/// then where it broke.
/// Thread: any.
[[nodiscard]] bool readUnit(const JpegScan& scan, const CutBytes& bytes, JpegPlace& place);

}  // namespace zelvo::salvage
