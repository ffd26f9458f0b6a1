/// The report of a deep repair as JSON, written and read. docs/cli-salvage.schema.json describes it.
#pragma once

#include <optional>
#include <string_view>

#include "platform/json_reader.h"
#include "platform/json_writer.h"
#include "salvage/salvage_report.h"

namespace zelvo::salvage {

/// Writes the report as members of the object that is open.
void writeReport(platform::JsonWriter& json, const SalvageReport& report);

/// The member "report" of what the command line writes: all that is told of the film, its damage and its streams, times
/// in microseconds. How the run ended, its output, rescue and failures of reading are not in it and stay as they
/// are in a fresh report. Nothing when the text is none of the command line's, or has no report.
/// Thread: any.
[[nodiscard]] std::optional<SalvageReport> readReport(std::string_view json);

}  // namespace zelvo::salvage
