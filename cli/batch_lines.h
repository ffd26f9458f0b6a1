/// How far a batch is, as lines for a terminal.
#pragma once

#include <string>
#include <vector>

#include "salvage/batch_run.h"

namespace zelvo::cli {

/// One for each film that is being worked on, and one for all of them with the time that is left.
[[nodiscard]] std::vector<std::string> batchProgressLines(const salvage::BatchProgress& progress);

}  // namespace zelvo::cli
