#include "cli/batch.h"

#include <algorithm>

#include "cli/shown_text.h"
#include "cli/told_parent.h"
#include "platform/same_file.h"

namespace zelvo::cli {

void Batch::report(const Outcome& outcome) {
  report(outcome, inWords(outcome), json_ ? inJson(outcome) : std::string());
}

void Batch::report(const Outcome& outcome, const std::string& words, const std::string& json) {
  verdicts_.push_back(outcome.verdict);
  worst_ = worse(worst_, exitOf(outcome));
  tellEnd(environment_, outcome);
  if (!outcome.reason.empty()) environment_.console.error(outcome.reason);
  if (!outcome.hint.empty()) environment_.console.note("zelvo-avi: " + outcome.hint);
  if (json_) {
    environment_.console.result(json);
  } else if (!environment_.console.isQuiet()) {
    environment_.console.result(words);
  }
  // Each result is there for whoever reads along before the next input is begun.
  environment_.console.flushResult();
}

Exit Batch::finish() {
  const std::size_t notStarted = inputs_ - verdicts_.size();
  if (notStarted > 0) worst_ = worse(worst_, Exit::stopped);
  if (inputs_ < 2) return worst_;
  const std::string text = summary(verdicts_, notStarted);
  if (json_) {
    environment_.console.note(text.substr(0, text.size() - 1));
  } else if (!environment_.console.isQuiet()) {
    environment_.console.result(text);
  }
  return worst_;
}

void workOnEach(Environment& environment, const Batch& batch, const std::vector<std::string>& inputs,
                const std::function<OutputChoice(const std::string& input)>& placeFor,
                const std::function<std::optional<std::string>(const Assignment&, const CommandInputs&)>& work) {
  struct Written {
    std::string input;
    std::optional<platform::FileAttributes> file;
  };
  std::vector<Written> written;
  // Every output is judged against every input while all of them still are what the user named.
  const CommandInputs all(inputs, environment.fileManager);
  std::vector<Assignment> assignments;
  for (const std::string& input : inputs) {
    const OutputChoice place = placeFor(input);
    assignments.push_back({input, place, all.refusal(input, place.path)});
  }
  for (Assignment& assignment : assignments) {
    if (!batch.shouldContinue()) return;
    const std::string& path = assignment.place.path;
    const auto there = environment.fileManager.attributes(path);
    const auto writer =
        std::ranges::find_if(written, [&](const Written& one) { return platform::areOneFile(one.file, there); });
    if (!assignment.refusal && writer != written.end()) {
      assignment.refusal = printable(assignment.input) + " is not repaired: " + printable(path) +
                           " has just been written for another input of the same name, " + printable(writer->input) +
                           ".";
    }
    if (const auto made = work(assignment, all)) {
      written.push_back({assignment.input, environment.fileManager.attributes(*made)});
    }
  }
}

}  // namespace zelvo::cli
