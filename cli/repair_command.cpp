// One repair:
// 1. Look at the input and the output; refuse what cannot go well before the long work.
// 2. On the worker: the engine's run. Before it creates its file it asks; then the free space is looked at, and the
//    hidden file is created. Afterwards the padded copy, when one is wanted, and the wait for the disk.
// 3. On the main thread: judge the run, and give the file its final name.
#include "cli/commands.h"

#include <chrono>
#include <memory>
#include <utility>

#include "cli/batch.h"
#include "cli/batch_command.h"
#include "cli/checked_film.h"
#include "cli/engine_job.h"
#include "cli/new_output.h"
#include "cli/output_place.h"
#include "cli/salvage_hint.h"
#include "cli/shown_text.h"
#include "cli/told_parent.h"
#include "cli/worker_run.h"
#include "engine/padded_copy.h"
#include "engine/repair.h"
#include "platform/paths.h"

namespace zelvo::cli {

namespace {

/// One input's repair. Makes the engine's output: a hidden file beside the final name.
class OneRepair final : public engine::OutputMaker {
 public:
  OneRepair(Environment& environment, EngineJob& job, const CommandInputs& inputs, OutputChoice output, bool padded)
      : environment_(environment),
        job_(job),
        output_(environment, inputs, std::move(output)),
        isPadded_(padded),
        rebuilt_(environment.fileManager, environment.newFiles, job.written()),
        padded_(environment.fileManager, environment.newFiles, job.written()) {}

  [[nodiscard]] Outcome run(const std::string& inputPath);

  /// Looks at the free space before it creates anything.
  [[nodiscard]] Made make(std::uint64_t size) override;
  /// It stays open: the disk is still to be waited for.
  [[nodiscard]] std::error_code close() override { return {}; }

 private:
  /// Thread: the worker, as all that it calls.
  [[nodiscard]] engine::RepairReport work(const engine::RepairRun& run);
  void copyPadded(const platform::CancelMark& cancel);
  void failWriting(std::uint64_t offset, std::error_code cause) { obstacle_ = output_.writeFailed(offset, cause); }
  void judge(Outcome& outcome, const ChosenInput& input, const engine::RepairReport& report,
             const platform::CancelMark& cancel);

  Environment& environment_;
  const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  EngineJob& job_;
  NewOutput output_;
  const bool isPadded_;
  HiddenFile rebuilt_;
  HiddenFile padded_;
  std::string obstacle_;  ///< why there will be no output; a sentence
};

engine::OutputMaker::Made OneRepair::make(std::uint64_t size) {
  // Both the rebuilt file and its padded copy are there for a while.
  const std::uint64_t needed = isPadded_ ? size + engine::paddedCopySize(size) : size;
  if (auto sentence = output_.create(rebuilt_, needed)) {
    obstacle_ = std::move(*sentence);
    return {.file = nullptr, .error = {}, .refused = true};
  }
  job_.beginWriting(Stage::writing, size);
  return {.file = rebuilt_.file(), .error = {}};
}

engine::RepairReport OneRepair::work(const engine::RepairRun& run) {
  engine::RepairReport report = engine::repair(run, *this);
  if (run.cancel.abandoned() || report.end != engine::RunEnd::rebuilt) return report;
  if (report.writeFailure) {
    failWriting(report.writeFailure->offset, report.writeFailure->cause);
    return report;
  }
  if (isPadded_) copyPadded(run.cancel);
  if (!obstacle_.empty() || run.cancel.abandoned()) return report;
  job_.beginWriting(Stage::flushing, 0);
  if (const std::error_code error = (isPadded_ ? padded_ : rebuilt_).flushAndClose()) {
    failWriting(isPadded_ ? engine::paddedCopySize(report.bytes) : report.bytes, error);
  }
  return report;
}

void OneRepair::copyPadded(const platform::CancelMark& cancel) {
  if (const std::error_code error = output_.createAnother(padded_)) {
    failWriting(0, error);
    return;
  }
  const auto from = environment_.files.openForReading(rebuilt_.path());
  if (!from.file) {
    failWriting(0, from.error);
    return;
  }
  const std::uint64_t size = from.file->size();
  job_.beginWriting(Stage::copying, engine::paddedCopySize(size));
  const engine::PaddedCopyEnd end =
      engine::paddedCopy(from.file.get(), *padded_.file(), size, [&](std::uint64_t) { return !cancel.abandoned(); });
  if (end.writeFailure) {
    failWriting(end.writeFailure->offset, end.writeFailure->cause);
  } else if (end.missing > 0) {
    obstacle_ = "the rebuilt file could not be read back: " + counted(end.missing, "byte") + " missing" +
                (end.readFailures.count > 0 ? ", " + end.readFailures.firstCause.message() : "") + ".";
  }
  rebuilt_.remove();
}

void OneRepair::judge(Outcome& outcome, const ChosenInput& input, const engine::RepairReport& report,
                      const platform::CancelMark& cancel) {
  if (judgeInput(outcome, input, report, cancel)) return;
  job_.reportFindings(outcome, report);
  outcome.outputSize.reset();
  outcome.verdict = Verdict::failed;
  if (!obstacle_.empty()) {
    outcome.reason = obstacle_;
    return;
  }
  HiddenFile& written = isPadded_ ? padded_ : rebuilt_;
  const auto attributes = environment_.fileManager.attributes(written.path());
  Outcome named = outcome;
  named.verdict = Verdict::repaired;
  named.outputPath = output_.path();
  named.outputSize = attributes ? attributes->size : 0;
  named.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
  auto refused = askForName(environment_, named, written.path());
  if (!refused) refused = output_.publish(written);
  if (refused) {
    outcome.reason = std::move(*refused);
    return;
  }
  outcome = std::move(named);
  if (const auto warning = output_.keepName()) job_.warn(outcome, *warning);
  if (const auto warning =
          readsFailed(input.path, outcome.readFailures, " What lies there is missing from the output.")) {
    job_.warn(outcome, *warning);
  }
}

Outcome OneRepair::run(const std::string& inputPath) {
  Outcome outcome = outcomeOf("repair", inputPath);
  auto chosen = chooseInput(inputPath, environment_.files, environment_.fileManager);
  if (auto* sentence = std::get_if<std::string>(&chosen)) {
    outcome.reason = std::move(*sentence);
    return outcome;
  }
  const ChosenInput& input = std::get<ChosenInput>(chosen);
  outcome.inputSize = input.attributes.size;
  if (auto sentence = refusal(output_.place(), input, environment_.fileManager)) {
    outcome.reason = std::move(*sentence);
    return outcome;
  }
  const auto cancel = std::make_shared<platform::CancelMark>();
  const EngineJob::Done done =
      job_.perform(input, outcome, cancel, [this](const engine::RepairRun& run) { return work(run); });
  // A stop between the end of the work and here still counts: nothing bears the final name yet.
  if (environment_.stopRequested) cancel->abandon();
  if (done.shortage && !environment_.stopRequested) {
    outcome.reason = shortageSentence(inputPath, done.shortage);
  } else {
    judge(outcome, input, done.report, *cancel);
    outcome.hint = salvageHint(input, outcome).value_or("");
  }
  outcome.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
  return outcome;
}

class RepairCommand final : public Command {
 public:
  std::vector<Option> options() override {
    std::vector<Option> options = {
        BatchOptions::damagedFilms(inputs_),
        {"-o,--output", "where to write the repaired file (for one input)", &output_, "OUTPUT"},
        {"--output-dir", "folder for the repaired files, each named NAME-repaired.avi", &outputFolder_, "DIR"},
        {"--into", "write FOLDER/repaired.avi as the window's Save does: created when missing, padded to whole blocks",
         &into_, "FOLDER"},
        {"--dry-run", "write nothing, and tell what a repair would keep", &isDry_},
        {"-f,--force", "replace an existing output", &force_},
        {"--json", "print one JSON object a line instead of text", &json_},
        {"-q,--quiet", "print errors only", &quiet_},
        {"-v,--verbose", "show the log of the repair; given twice, every position of the first check too", &verbose_},
    };
    batch_.addTo(options);
    return options;
  }

  std::optional<std::string> misuse() const override {
    const int places = (output_ ? 1 : 0) + (outputFolder_ ? 1 : 0) + (into_ ? 1 : 0);
    if (places > 1) return "only one of --output, --output-dir and --into can be given.";
    if (inputs_.size() > 1 && output_) return "--output takes one input; use --output-dir for several.";
    if (inputs_.size() > 1 && into_) return "--into takes one input; use --output-dir for several.";
    if (batch_.namesMore() && output_) return "--output takes one input, and no folder or list.";
    if (batch_.isGiven() && into_) return "--into is for one film, and goes with none of the options for many.";
    return batch_.misuse(inputs_);
  }

  Exit run(Environment& environment) override {
    environment.console.setQuiet(quiet_);
    if (batch_.isGiven() && isBatch(environment, batch_, inputs_)) {
      return runBatch(environment, batch_,
                      {.name = "repair",
                       .options = options(),
                       .inputs = inputs_,
                       .output = output_,
                       .outputFolder = outputFolder_,
                       .outputPath = repairedPath,
                       .isDry = isDry_,
                       .isJson = json_,
                       .jobs = 1,
                       .json = inJson});
    }
    EngineJob job(environment, verbose_);
    Batch batch(environment, inputs_.size(), json_);
    if (isDry_) {
      for (const std::string& input : inputs_) {
        if (!batch.shouldContinue()) break;
        Outcome outcome = checked(environment, job, input);
        outcome.command = "repair";
        batch.report(outcome);
      }
      return batch.finish();
    }
    workOnEach(
        environment, batch, inputs_, [this](const std::string& input) { return placeFor(input); },
        [&](const Assignment& assignment, const CommandInputs& all) {
          Outcome outcome = outcomeOf("repair", assignment.input);
          if (assignment.refusal) {
            outcome.reason = *assignment.refusal;
          } else {
            outcome = OneRepair(environment, job, all, assignment.place, into_.has_value()).run(assignment.input);
          }
          batch.report(outcome);
          return outcome.outputPath;
        });
    return batch.finish();
  }

 private:
  [[nodiscard]] OutputChoice placeFor(const std::string& input) const {
    if (output_) return {*output_, force_, false};
    if (into_) return {platform::pathIn(*into_, "repaired.avi"), force_, true};
    return {repairedPath(input, outputFolder_), force_, false};
  }

  BatchOptions batch_;
  std::vector<std::string> inputs_;
  std::optional<std::string> output_;
  std::optional<std::string> outputFolder_;
  std::optional<std::string> into_;
  bool isDry_ = false;
  bool force_ = false;
  bool json_ = false;
  bool quiet_ = false;
  int verbose_ = 0;
};

}  // namespace

std::unique_ptr<Command> makeRepairCommand() { return std::make_unique<RepairCommand>(); }

}  // namespace zelvo::cli
