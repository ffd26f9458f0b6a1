/// The repair engine at work for the command line: the engine on a worker thread, the main thread keeping the progress
/// line and looking for a stop. One object serves all inputs of a command, one after the other.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <system_error>

#include "cli/chosen_input.h"
#include "cli/job_files.h"
#include "cli/job_progress.h"
#include "cli/outcome.h"
#include "cli/surroundings.h"
#include "engine/repair_file.h"

namespace zelvo::cli {

/// Thread: main, unless a function says otherwise.
class EngineJob {
 public:
  /// `verbosity` as in ConsoleLog.
  EngineJob(Surroundings& around, int verbosity);

  /// Makes `input` the file of the next run; warns when it is too large to be seen whole.
  [[nodiscard]] std::shared_ptr<engine::Run> begin(const ChosenInput& input, Outcome& outcome);

  /// Runs `body` on a worker and returns when it has returned. A stop request abandons `run` meanwhile.
  /// \return why the run could not be begun or was cut short: no memory or no thread. Nothing else of it is to be told
  [[nodiscard]] std::error_code perform(const std::shared_ptr<engine::Run>& run, const std::string& inputPath,
                                        std::function<void()> body);

  [[nodiscard]] engine::RepairFile& engine() { return *engine_; }
  /// The files as this run sees them.
  [[nodiscard]] JobFiles& files() { return files_; }

  /// From now on the progress line counts the bytes written, `all` of them. Thread: any.
  void beginWriting(Stage stage, std::uint64_t all);

  /// Fills in what the scan found: streams, and what the user should be warned of. `bytes`: what a repair writes.
  void reportFindings(Outcome& outcome, std::uint64_t bytes);

  /// Adds a warning to the outcome and shows it.
  void warn(Outcome& outcome, const std::string& sentence);

  /// The sentence about an input that was found to be no AVI file (`invalid`) or not to be repairable.
  [[nodiscard]] std::string whyRejected(const ChosenInput& input, bool invalid) const;

 private:
  void showProgress(ProgressLine& line, std::uint64_t inputSize);

  Surroundings& around_;
  ConsoleLog log_;
  JobFiles files_;
  StageField stage_;
  NoButton stopButton_;
  LastPercent percent_;
  platform::Relaxed<std::uint64_t> bytesExpected_;
  std::unique_ptr<engine::RepairFile> engine_;
};

/// The verdict and reason of a run that ended before anything could be written, because of `input` or a stop.
/// \return false when nothing of that kind happened, and the outcome is left alone
[[nodiscard]] bool judgeInput(Outcome& outcome, const ChosenInput& input, EngineJob& job, const engine::Run& run);

/// The sentence about an input for which memory or a thread was lacking.
[[nodiscard]] std::string shortageSentence(const std::string& inputPath, std::error_code shortage);

/// An outcome about `path`, of which nothing is known yet.
[[nodiscard]] Outcome outcomeOf(std::string command, const std::string& path);

}  // namespace zelvo::cli
