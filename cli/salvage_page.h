/// The report of a deep repair as one HTML page that needs nothing else: no script, no file from elsewhere. It follows
/// the reader's light or dark setting.
#pragma once

#include <string>

#include "cli/salvage_outcome.h"

namespace zelvo::cli {

/// The whole page, also of an input that nothing could be brought back from. `namesOutput`: false where the film will
/// lie somewhere else.
[[nodiscard]] std::string salvagePage(const SalvageOutcome& outcome, bool namesOutput = true);

}  // namespace zelvo::cli
