/// Copies chunks from the input to the rebuilt file, whole and back to back. Sizes and offsets are in bytes.
#pragma once

#include <cstdint>
#include <span>

#include "engine/input_file.h"
#include "engine/staged_output.h"
#include "platform/workers.h"

namespace zelvo::engine {

/// What to copy: one-based tables, entries 1 to `count`.
struct ChunkRun {
  std::span<const std::uint64_t> offsets;  ///< position of each chunk's 8-byte header in the input
  std::span<const std::uint64_t> sizes;    ///< payload sizes
  std::uint64_t count = 0;
};

/// Copies each chunk, header and payload, without padding. Of a chunk that the input does not hold whole, what there is
/// is copied. Ends early once a write has failed or `cancel` is abandoned, between two chunks.
void copyChunks(InputFile& input, StagedOutput& out, const ChunkRun& chunks, const platform::CancelMark& cancel);

/// Copies up to `size` bytes from `offset` on; fewer when the input ends or a read fails.
void copyRange(InputFile& input, StagedOutput& out, std::uint64_t offset, std::uint64_t size);

}  // namespace zelvo::engine
