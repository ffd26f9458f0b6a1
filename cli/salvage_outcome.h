/// What became of one input of a deep repair, in words and as JSON. Sizes are in bytes.
#pragma once

#include <optional>
#include <string>

#include "cli/outcome.h"
#include "salvage/playing/film_check.h"
#include "salvage/salvage_report.h"

namespace zelvo::cli {

struct SalvageOutcome {
  Outcome outcome;                                ///< `streams` stays empty
  std::optional<salvage::SalvageReport> report;   ///< none when the input was not looked at
  std::optional<salvage::FilmCheck> played = {};  ///< what playing the film that was written showed; none unless wanted
  std::uint64_t keysDropped = 0;                  ///< pictures that its index called keys until then
};

/// Several lines for a person; with `spans` a line for each stretch of damage too.
[[nodiscard]] std::string inWords(const SalvageOutcome& outcome, bool spans);
/// The same with every stretch of damage, also of an input that nothing could be brought back from.
[[nodiscard]] std::string reportInWords(const SalvageOutcome& outcome);
/// One line, its end included; docs/cli-salvage.schema.json describes it.
[[nodiscard]] std::string inJson(const SalvageOutcome& outcome);

/// Why nothing was written; a sentence about the input called `name`, which is printable already.
[[nodiscard]] std::string whyNothing(const salvage::SalvageReport& report, const std::string& name);

}  // namespace zelvo::cli
