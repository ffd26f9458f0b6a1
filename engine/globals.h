/// What the repair engine shares with the controller, process-wide. Sizes are in bytes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/guarded.h"
#include "platform/relaxed.h"

namespace zelvo::engine {

/// Full path of the input; nothing while no file is chosen. Written by the controller and the job's sheet handlers.
extern platform::Guarded<std::optional<std::string>> path;
/// Size of the input as its chooser found it. Written by the controller.
/// Decision: scan, The size is what the chooser says
extern platform::Relaxed<std::uint64_t> inputfilesize;
/// Scratch path of the rebuilt file. Written by the controller.
extern platform::Guarded<std::string> internalpath;
/// Asks the run to stop. Set by the stop and not-supported sheets, cleared when a file is chosen. Besides it each run
/// has a cancel mark of its own, so that clearing this one for the next file never wakes an old run.
extern platform::Relaxed<bool> stopflag;
/// Copy of the last validity result.
extern platform::Relaxed<bool> validitycheck1;
/// When true the validity check tests no code at all. Nothing sets it.
extern platform::Relaxed<bool> flag;
/// Where the controller's retrieval progress starts. Nothing writes it, so it stays 0.
extern platform::Relaxed<std::uint64_t> globalsectorforsample;

/// Everything as it is when the program starts.
void resetGlobals();

}  // namespace zelvo::engine
