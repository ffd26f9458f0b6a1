/// What a quick look at a film found, in words and as JSON.
#pragma once

#include <optional>
#include <string>

#include "cli/outcome.h"
#include "salvage/triage/triage.h"

namespace zelvo::cli {

struct TriageOutcome {
  Outcome outcome;                              ///< without an output
  std::optional<salvage::TriageReport> report;  ///< none when the input was not looked at
};

/// Whether a deep repair would keep anything.
[[nodiscard]] bool isAnythingLeft(const salvage::TriageReport& report);
/// One sentence that a layman understands, ended.
[[nodiscard]] std::string triageSentence(const salvage::TriageReport& report);
/// Several lines for a person.
[[nodiscard]] std::string inWords(const TriageOutcome& told);
/// One line, its end included; docs/cli-triage.schema.json describes it.
[[nodiscard]] std::string inJson(const TriageOutcome& told);

}  // namespace zelvo::cli
