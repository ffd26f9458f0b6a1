/// A whole repair of one damaged AVI file: checks it, gathers what its header lists still say, walks the whole file for
/// video and audio chunks, and writes a new file with an OpenDML index. Sizes are in bytes.
#pragma once

#include <cstdint>

#include "engine/output_maker.h"
#include "engine/repair_observer.h"
#include "engine/repair_report.h"
#include "platform/files.h"
#include "platform/workers.h"

namespace zelvo::engine {

/// One run. Several may run at once, each with values of its own.
struct RepairRun {
  platform::ReadableFile& input;
  std::uint64_t inputSize = 0;  ///< as found when the input was chosen
  RepairObserver& observer;
  platform::CancelMark& cancel;  ///< cancelled by a failed write too
  platform::Workers& workers;
};

/// Repairs. A lack of memory or threads ends it as a failed write does, whatever the stage; see `writeFailure`.
/// Thread: any; it takes as long as the file is large.
[[nodiscard]] RepairReport repair(const RepairRun& run, OutputMaker& output);

/// The same up to its search: what a repair would keep and write. Its log lacks the lines of the end.
[[nodiscard]] RepairReport check(const RepairRun& run);

}  // namespace zelvo::engine
