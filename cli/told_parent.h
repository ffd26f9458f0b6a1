/// What a program that works on one film of a batch tells the one that runs the batch. Without such a one all of this
/// does nothing.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "cli/environment.h"
#include "cli/outcome.h"
#include "salvage/batch_queue.h"

namespace zelvo::cli {

/// Called when the output is whole under its hidden name, and `outcome` tells of it what will be so when it has its
/// own. Waits until the batch has written that down; adds the checksums to the outcome where they are wanted.
/// \return a sentence when the output may not get its name
[[nodiscard]] std::optional<std::string> askForName(Environment& environment, Outcome& outcome,
                                                    const std::string& hiddenPath);

/// Tells how far it is.
void tellProgress(platform::FilmParent& parent, std::string_view line, const salvage::FilmStep& step);

/// Tells the end of the film.
void tellEnd(Environment& environment, Outcome outcome);

/// SHA-256 of a file, hexadecimal; empty when it cannot be read to its end, or a stop is asked for.
[[nodiscard]] std::string checksumOf(Environment& environment, const std::string& path);

}  // namespace zelvo::cli
