/// When a repair, or a check for one, names the deep repair: it would bring back more.
#pragma once

#include <optional>
#include <string>

#include "cli/chosen_input.h"
#include "cli/outcome.h"

namespace zelvo::cli {

/// A line when the film was refused, when its header lists name streams that a repair leaves out, or when the chunks
/// kept come to less than 90 % of its media. Looks at the header lists, and at nothing else of the file.
[[nodiscard]] std::optional<std::string> salvageHint(const ChosenInput& input, const Outcome& outcome);

}  // namespace zelvo::cli
