/// The chunks of one kind that the rebuilt file gets, and how much of them the input really holds. Sizes and offsets are
/// in bytes.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>

namespace zelvo::avi {

/// How much of `size` bytes at `offset` a file of `fileSize` bytes holds.
[[nodiscard]] constexpr std::uint64_t heldBy(std::uint64_t fileSize, std::uint64_t offset, std::uint64_t size) {
  return offset >= fileSize ? 0 : std::min(size, fileSize - offset);
}

/// What to copy: one-based tables, entries 1 to `count`.
struct ChunkRun {
  static constexpr std::uint64_t kHeaderSize = 8;  ///< code and size field

  std::span<const std::uint64_t> offsets;  ///< position of each chunk's 8-byte header in the input
  std::span<const std::uint64_t> sizes;    ///< payload sizes
  std::uint64_t count = 0;

  /// How much of a chunk, its header included, a file of `fileSize` bytes holds.
  [[nodiscard]] std::uint64_t heldBy(std::uint64_t fileSize, std::uint64_t chunk) const {
    return avi::heldBy(fileSize, offsets[chunk], sizes[chunk] + kHeaderSize);
  }
  /// The same for all chunks together.
  [[nodiscard]] std::uint64_t heldBy(std::uint64_t fileSize) const;
};

}  // namespace zelvo::avi
