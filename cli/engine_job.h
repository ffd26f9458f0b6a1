/// The repair engine at work for the command line: a run on a worker thread, the main thread keeping the progress line
/// and looking for a stop. One object serves all inputs of a command, one after the other. Sizes are in bytes.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <system_error>

#include "cli/chosen_input.h"
#include "cli/environment.h"
#include "cli/job_progress.h"
#include "cli/outcome.h"
#include "engine/repair.h"
#include "platform/relaxed.h"

namespace zelvo::cli {

/// Thread: main, unless a function says otherwise.
class EngineJob {
 public:
  /// `verbosity` as in ConsoleLog.
  EngineJob(Environment& environment, int verbosity)
      : environment_(environment), log_(environment.console, verbosity), progress_(log_) {}

  /// What comes of one input.
  struct Done {
    engine::RepairReport report;
    /// Why the run could not be begun or was cut short: no memory or no thread. Nothing else of it is to be told then.
    std::error_code shortage;
  };
  /// What is done on the worker with a run of the input.
  using Body = std::function<engine::RepairReport(const engine::RepairRun&)>;

  /// Runs `body` on a worker and returns when it has returned. A stop request abandons `cancel` meanwhile. Warns first
  /// when the input is too large to be seen whole.
  [[nodiscard]] Done perform(const ChosenInput& input, Outcome& outcome,
                             const std::shared_ptr<platform::CancelMark>& cancel, const Body& body);

  /// From now on the progress line counts the bytes written, `all` of them. Thread: any.
  void beginWriting(Stage stage, std::uint64_t all);
  /// Where they are counted.
  [[nodiscard]] platform::Relaxed<std::uint64_t>& written() { return written_; }

  /// Fills in what the search found: streams, and what the user should be warned of.
  void reportFindings(Outcome& outcome, const engine::RepairReport& report);

  /// Adds a warning to the outcome and shows it.
  void warn(Outcome& outcome, const std::string& sentence);

 private:
  void showProgress(ProgressLine& line, std::uint64_t inputSize);

  Environment& environment_;
  ConsoleLog log_;
  RunProgress progress_;
  platform::Relaxed<std::uint64_t> written_;
  platform::Relaxed<std::uint64_t> bytesExpected_;
};

/// The verdict and reason of a run that ended before anything could be written, because of `input` or a stop.
/// \return false when nothing of that kind happened, and the outcome is left alone
[[nodiscard]] bool judgeInput(Outcome& outcome, const ChosenInput& input, const engine::RepairReport& report,
                              const platform::CancelMark& cancel);

}  // namespace zelvo::cli
