/// A collection's summary as one self-contained page: totals, and a table of the films with a picture of each one's
/// damage. Nothing of it comes from elsewhere, and it sends nothing anywhere.
#pragma once

#include <cstddef>
#include <string>

#include "salvage/batch_summary.h"

namespace zelvo::cli {

[[nodiscard]] std::string summaryPage(const salvage::CollectionSummary& summary, std::size_t journals);

}  // namespace zelvo::cli
