/// Copies chunks from the input to the rebuilt file, whole and back to back. The output is cut into aligned segments
/// that two threads assemble and write side by side. Sizes and offsets are in bytes.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

#include "engine/input_file.h"
#include "engine/staged_output.h"
#include "engine/write_failure.h"
#include "platform/files.h"
#include "platform/workers.h"

namespace zelvo::engine {

/// What to copy: one-based tables, entries 1 to `count`.
struct ChunkRun {
  std::span<const std::uint64_t> offsets;  ///< position of each chunk's 8-byte header in the input
  std::span<const std::uint64_t> sizes;    ///< payload sizes
  std::uint64_t count = 0;
};

/// How much of `size` bytes at `offset` a file of `fileSize` bytes holds.
[[nodiscard]] std::uint64_t heldBy(std::uint64_t fileSize, std::uint64_t offset, std::uint64_t size);
/// How much of all chunks together a file of `fileSize` bytes holds, their headers included.
[[nodiscard]] std::uint64_t heldBy(std::uint64_t fileSize, const ChunkRun& chunks);

/// Where a copy ended.
struct CopyEnd {
  std::uint64_t position = 0;  ///< in the output, behind the last byte copied
  std::optional<WriteFailure> failure;
};

/// What the threads of a copy assemble segments in. One copy after the other can use the same, which spares the
/// system clearing fresh memory for each.
class CopyBuffers {
 public:
  static constexpr std::size_t kThreads = 2;

  /// The buffer of thread `number` (0 or 1), made when it is first asked for; its content is unspecified.
  /// Thread: any, one per number.
  [[nodiscard]] std::span<std::byte> of(std::size_t number);

 private:
  std::array<std::unique_ptr<std::byte[]>, kThreads> bytes_;
};

/// Copies each chunk, header and payload, without padding, to `out` from `position` on. Of a chunk that the input does
/// not hold whole, what there is is copied, and what follows moves up. Ends early once a write has failed or `cancel`
/// is abandoned.
/// Thread: one, besides a helper of its own.
[[nodiscard]] CopyEnd copyChunks(InputFile& input, platform::WritableFile& out, std::uint64_t position,
                                 const ChunkRun& chunks, CopyBuffers& buffers, platform::Workers& workers,
                                 const platform::CancelMark& cancel);

/// Appends up to `size` bytes from `offset` on; fewer when the input ends or a read fails.
void copyRange(InputFile& input, StagedOutput& out, std::uint64_t offset, std::uint64_t size);

}  // namespace zelvo::engine
