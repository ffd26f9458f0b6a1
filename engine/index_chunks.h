/// The OpenDML index of the rebuilt file: one super index chunk ("indx") in each stream list, whose single entry points
/// at one standard index chunk ("ix00", "ix01") at the head of the "movi" list. Sizes and positions are in bytes.
#pragma once

#include <cstdint>
#include <span>

#include "avi/fourcc.h"
#include "avi/staged_output.h"

namespace zelvo::engine {

/// A super index with one entry (AVISUPERINDEX).
struct SuperIndex {
  std::uint64_t chunkSize = 0;  ///< cb of the "indx" chunk, 44
  avi::FourCC chunkId;          ///< dwChunkId
  std::uint64_t offset = 0;     ///< qwOffset: header of the standard index chunk
  std::uint64_t size = 0;       ///< dwSize
  std::uint64_t duration = 0;   ///< dwDuration: chunks of the stream
};

/// Appends the 52 bytes of an "indx" chunk.
/// Deliberate: dwDuration is 8 bytes wide, so four zero bytes follow the entry and the payload is 44 bytes, not 40.
void writeSuperIndex(avi::StagedOutput& out, const SuperIndex& index);

/// A standard index (AVISTDINDEX).
struct StandardIndex {
  avi::FourCC code;                      ///< "ix00" or "ix01"
  std::uint64_t chunkSize = 0;           ///< cb
  avi::FourCC chunkId;                   ///< dwChunkId
  std::uint64_t baseOffset = 0;          ///< qwBaseOffset: header of the stream's first chunk
  std::span<const std::uint64_t> sizes;  ///< payload sizes, one-based
  std::uint64_t count = 0;               ///< nEntriesInUse
};

/// Appends 8 + `chunkSize` bytes: the header and one entry (dwOffset, dwSize) for each chunk. Entries count on chunks
/// lying back to back; none is marked as other than a key frame.
void writeStandardIndex(avi::StagedOutput& out, const StandardIndex& index);

}  // namespace zelvo::engine
