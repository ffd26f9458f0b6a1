#include "cli/batch.h"

namespace zelvo::cli {

void Batch::report(const Outcome& outcome) {
  verdicts_.push_back(outcome.verdict);
  worst_ = worse(worst_, exitOf(outcome));
  if (!outcome.reason.empty()) environment_.console.error(outcome.reason);
  if (json_) {
    environment_.console.result(inJson(outcome));
  } else if (!environment_.console.isQuiet()) {
    environment_.console.result(inWords(outcome));
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

}  // namespace zelvo::cli
