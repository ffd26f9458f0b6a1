/// A collection's summary as text, JSON and a table for a spreadsheet.
#pragma once

#include <cstddef>
#include <string>

#include "salvage/batch_summary.h"

namespace zelvo::cli {

/// How many films are named as the worst.
inline constexpr std::size_t kWorstFilms = 20;

[[nodiscard]] std::string summaryInWords(const salvage::CollectionSummary& summary, std::size_t journals);
/// One line, its end included; docs/cli-summary.schema.json describes it.
[[nodiscard]] std::string summaryInJson(const salvage::CollectionSummary& summary, std::size_t journals);
/// A row for each film under a row of names, ended by CR LF; every text is quoted. A text that a spreadsheet would take
/// for a formula has an apostrophe before it.
[[nodiscard]] std::string summaryInCsv(const salvage::CollectionSummary& summary);

/// "2 h 5 min", "3 min 5 s", "12 s", "1.2 s".
[[nodiscard]] std::string shownLength(double seconds);
/// "3.9 %".
[[nodiscard]] std::string shownLostShare(double share);

}  // namespace zelvo::cli
