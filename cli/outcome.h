/// What became of one input, and how it is told: in words and as JSON. Sizes are in bytes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "avi/input_file.h"
#include "cli/exit.h"
#include "engine/repair_report.h"
#include "salvage/batch_line.h"

namespace zelvo::cli {

class JsonWriter;

enum class Verdict {
  repaired,      ///< the output is in place
  repairable,    ///< a repair would write one
  notSupported,  ///< an AVI that cannot be repaired
  invalid,       ///< not an AVI file
  plays,         ///< throughout, as decoding shows
  faults,        ///< it does not
  stopped,
  failed,  ///< reading or writing failed or was refused
};

/// What a journal and a summary say of a film besides its outcome.
struct FilmFacts {
  std::string verdict;  ///< the command's own judgement of the film, in a word; empty where it has none
  std::vector<salvage::BatchFigure> figures;
  std::vector<salvage::BatchPicture> picture;
  std::string inputSha256;
  std::string outputSha256;
};

struct Outcome {
  std::string command;
  std::string inputPath;
  std::optional<std::uint64_t> inputSize;
  Verdict verdict = Verdict::failed;
  std::string reason;  ///< a sentence; empty when all went well
  std::string hint;    ///< what else may help, for a person alone; mostly empty
  std::optional<std::string> outputPath;
  std::optional<std::uint64_t> outputSize;  ///< of the file written, or that a repair would write
  /// Those whose chunks were found; none where the search for them was not reached.
  std::vector<engine::StreamReport> streams;
  avi::ReadFailures readFailures;
  std::vector<std::string> warnings;
  double seconds = 0;
  FilmFacts facts;
};

/// An outcome about `path`, of which nothing is known yet.
[[nodiscard]] Outcome outcomeOf(std::string command, const std::string& path);

[[nodiscard]] Exit exitOf(const Outcome& outcome);
[[nodiscard]] std::string_view nameOf(Verdict verdict);
/// The verdict of that name; `failed` when there is none.
[[nodiscard]] Verdict verdictOf(std::string_view name);

/// Several lines for a person.
[[nodiscard]] std::string inWords(const Outcome& outcome);
/// One line, its end included; docs/cli-result.schema.json describes it.
[[nodiscard]] std::string inJson(const Outcome& outcome);
/// Members that the JSON of every command with outcomes has: before what is its own, and after it.
void beginJson(JsonWriter& json, const Outcome& outcome);
void endJson(JsonWriter& json, const Outcome& outcome);
/// One line about several inputs, of which `notStarted` were left out by a stop.
[[nodiscard]] std::string summary(const std::vector<Verdict>& verdicts, std::size_t notStarted);

}  // namespace zelvo::cli
