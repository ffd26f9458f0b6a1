// The first stages of a repair, without its last: validity check, header harvest, sample scan.
#include "cli/commands.h"

#include <chrono>
#include <utility>

#include "cli/batch.h"
#include "cli/checked_film.h"
#include "cli/engine_job.h"
#include "cli/new_output.h"
#include "cli/salvage_hint.h"
#include "cli/shown_text.h"
#include "cli/worker_run.h"

namespace zelvo::cli {

Outcome checked(Environment& environment, EngineJob& job, const std::string& inputPath) {
  const auto start = std::chrono::steady_clock::now();
  Outcome outcome = outcomeOf("check", inputPath);
  auto chosen = chooseInput(inputPath, environment.files, environment.fileManager);
  if (auto* sentence = std::get_if<std::string>(&chosen)) {
    outcome.reason = std::move(*sentence);
    return outcome;
  }
  const ChosenInput& input = std::get<ChosenInput>(chosen);
  outcome.inputSize = input.attributes.size;
  const auto cancel = std::make_shared<platform::CancelMark>();
  const EngineJob::Done done = job.perform(input, outcome, cancel, engine::check);
  if (done.shortage && !environment.stopRequested) {
    outcome.reason = shortageSentence(inputPath, done.shortage);
  } else {
    if (!judgeInput(outcome, input, done.report, *cancel)) {
      outcome.verdict = Verdict::repairable;
      job.reportFindings(outcome, done.report);
      if (const auto warning = readsFailed(input.path, outcome.readFailures, "")) job.warn(outcome, *warning);
    }
    outcome.hint = salvageHint(input, outcome).value_or("");
  }
  outcome.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  return outcome;
}

namespace {

class CheckCommand final : public Command {
 public:
  std::vector<Option> options() override {
    return {
        {"INPUT", "AVI files to look at", &inputs_},
        {"--json", "print one JSON object a line instead of text", &json_},
        {"-q,--quiet", "print errors only; the exit code tells the result", &quiet_},
        {"-v,--verbose", "show the log of the check; given twice, every position of its first stage too", &verbose_},
    };
  }

  Exit run(Environment& environment) override {
    environment.console.setQuiet(quiet_);
    EngineJob job(environment, verbose_);
    Batch batch(environment, inputs_.size(), json_);
    for (const std::string& input : inputs_) {
      if (!batch.shouldContinue()) break;
      batch.report(checked(environment, job, input));
    }
    return batch.finish();
  }

 private:
  std::vector<std::string> inputs_;
  bool json_ = false;
  bool quiet_ = false;
  int verbose_ = 0;
};

}  // namespace

std::unique_ptr<Command> makeCheckCommand() { return std::make_unique<CheckCommand>(); }

}  // namespace zelvo::cli
