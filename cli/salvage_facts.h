/// What a journal keeps of a deep repair's report: figures, and a small picture of the damage.
#pragma once

#include "cli/outcome.h"
#include "salvage/salvage_report.h"

namespace zelvo::cli {

[[nodiscard]] FilmFacts factsOf(const salvage::SalvageReport& report);

}  // namespace zelvo::cli
