/// What became of one input of a deep repair, in words and as JSON. Sizes are in bytes.
#pragma once

#include <optional>
#include <string>

#include "cli/outcome.h"
#include "salvage/salvage_report.h"

namespace zelvo::cli {

struct SalvageOutcome {
  Outcome outcome;                               ///< `streams` stays empty
  std::optional<salvage::SalvageReport> report;  ///< none when the input was not looked at
};

/// Several lines for a person; with `spans` a line for each stretch of damage too.
[[nodiscard]] std::string inWords(const SalvageOutcome& outcome, bool spans);
/// One line, its end included; docs/cli-salvage.schema.json describes it.
[[nodiscard]] std::string inJson(const SalvageOutcome& outcome);

}  // namespace zelvo::cli
