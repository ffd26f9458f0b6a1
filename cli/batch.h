/// Several inputs, one after the other: each outcome is told as it comes, a summary at the end.
#pragma once

#include <cstddef>
#include <vector>

#include "cli/environment.h"
#include "cli/outcome.h"

namespace zelvo::cli {

/// Thread: main.
class Batch {
 public:
  Batch(Environment& environment, std::size_t inputs, bool json)
      : environment_(environment), inputs_(inputs), json_(json) {}

  /// False once the user asked for a stop.
  [[nodiscard]] bool shouldContinue() const { return !environment_.stopRequested; }
  void report(const Outcome& outcome);
  /// Tells the summary and answers the worst exit.
  [[nodiscard]] Exit finish();

 private:
  Environment& environment_;
  const std::size_t inputs_;
  const bool json_;
  Exit worst_ = Exit::done;
  std::vector<Verdict> verdicts_;
};

}  // namespace zelvo::cli
