/// Copies chunks from the input to the rebuilt file, whole and back to back. Sizes and offsets are in bytes.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>

#include "avi/chunk_run.h"
#include "avi/input_file.h"
#include "avi/staged_output.h"
#include "avi/write_failure.h"
#include "platform/files.h"
#include "platform/workers.h"

namespace zelvo::avi {

/// Where a copy ended.
struct CopyEnd {
  std::uint64_t position = 0;  ///< in the output, after the last byte copied
  std::optional<WriteFailure> failure;
};

/// A copy request: what is copied where, and until when.
struct ChunkCopy {
  InputFile& input;
  platform::WritableFile& out;
  std::uint64_t position = 0;  ///< of the first chunk in the output
  /// One for each stream; each goes after the one before it. Any number.
  std::span<const ChunkRun> runs;
  /// True when `out` has its full length already. Then the runs are copied in one pass over the input (of more than
  /// `ChunkPass::kMaxRuns` so many in each pass); where it has not, writing far after its end might have the file
  /// system fill what lies between.
  /// Decision: writer, Both kinds are copied in one pass
  bool outHasItsLength = false;
  /// Asked until all runs but the last are copied. Once it says yes, the first run that is not copied yet is finished,
  /// and those after it are left out.
  /// Thread: any.
  std::function<bool()> stopped;
  platform::Workers& workers;
  const platform::CancelMark& cancel;
};

/// Copies each chunk, header and payload, without padding. Of a chunk that the input does not hold whole, what there is
/// is copied, and what follows moves up. Ends early once a write has failed or `cancel` is abandoned. What lies in the
/// output after the end that is answered is of no use.
/// Thread: one, besides a helper of its own.
[[nodiscard]] CopyEnd copyChunks(const ChunkCopy& copy);

/// Appends up to `size` bytes from `offset` on; fewer when the input ends or a read fails.
void copyRange(InputFile& input, StagedOutput& out, std::uint64_t offset, std::uint64_t size);

}  // namespace zelvo::avi
