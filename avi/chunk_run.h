/// The chunks of one stream that the rebuilt file gets, and how much of them the input really holds. Sizes and offsets
/// are in bytes.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

namespace zelvo::avi {

/// How much of `size` bytes at `offset` a file of `fileSize` bytes holds.
[[nodiscard]] constexpr std::uint64_t heldBy(std::uint64_t fileSize, std::uint64_t offset, std::uint64_t size) {
  return offset >= fileSize ? 0 : std::min(size, fileSize - offset);
}

/// What to copy, in the order in which it comes out: two lists of the same length.
struct ChunkRun {
  std::span<const std::uint64_t> offsets;  ///< position of each chunk's 8-byte header in the input
  std::span<const std::uint64_t> sizes;    ///< payload sizes
  /// Code and size field, copied with each payload. 0 for a run of bare pieces, whose `offsets` are their own.
  std::uint64_t headerSize = 8;

  [[nodiscard]] std::size_t count() const { return offsets.size(); }
  /// Length of a chunk, its header included.
  [[nodiscard]] std::uint64_t wholeSize(std::size_t chunk) const { return sizes[chunk] + headerSize; }
  /// How much of that a file of `fileSize` bytes holds.
  [[nodiscard]] std::uint64_t heldBy(std::uint64_t fileSize, std::size_t chunk) const {
    return avi::heldBy(fileSize, offsets[chunk], wholeSize(chunk));
  }
  /// The same for all chunks together.
  [[nodiscard]] std::uint64_t heldBy(std::uint64_t fileSize) const;
};

}  // namespace zelvo::avi
