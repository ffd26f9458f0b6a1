/// What a repair would keep of a film: its first stages, without the last.
#pragma once

#include <string>

#include "cli/engine_job.h"
#include "cli/environment.h"
#include "cli/outcome.h"

namespace zelvo::cli {

/// Thread: main.
[[nodiscard]] Outcome checked(Environment& environment, EngineJob& job, const std::string& inputPath);

}  // namespace zelvo::cli
