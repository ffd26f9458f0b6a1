/// Several inputs, one after the other: each outcome is told as it comes, a summary at the end.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "cli/command_inputs.h"
#include "cli/environment.h"
#include "cli/outcome.h"
#include "cli/output_place.h"

namespace zelvo::cli {

/// Thread: main.
class Batch {
 public:
  Batch(Environment& environment, std::size_t inputs, bool json)
      : environment_(environment), inputs_(inputs), json_(json) {}

  /// False once the user asked for a stop.
  [[nodiscard]] bool shouldContinue() const { return !environment_.stopRequested; }
  void report(const Outcome& outcome);
  /// The same of an outcome that is shown otherwise: `words` as text, `json` as one line.
  void report(const Outcome& outcome, const std::string& words, const std::string& json);
  /// Tells the summary and answers the worst exit.
  [[nodiscard]] Exit finish();

 private:
  Environment& environment_;
  const std::size_t inputs_;
  const bool json_;
  Exit worst_ = Exit::done;
  std::vector<Verdict> verdicts_;
};

/// One input of a command that makes a file of each.
struct Assignment {
  std::string input;
  OutputChoice place;
  /// A sentence when the place is that of another input, or was written for one just now: nothing is to be done then.
  /// Not even `--force` means that one input's result replaces another's.
  std::optional<std::string> refusal;
};

/// Hands out each input until a stop. `work` tells the batch what came of it, and answers the path that it wrote, if
/// any.
/// Thread: main.
void workOnEach(Environment& environment, const Batch& batch, const std::vector<std::string>& inputs,
                const std::function<OutputChoice(const std::string& input)>& placeFor,
                const std::function<std::optional<std::string>(const Assignment&, const CommandInputs&)>& work);

}  // namespace zelvo::cli
