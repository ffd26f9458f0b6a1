// One repair:
// 1. Look at the input and the output; refuse what cannot go well before the long work.
// 2. On the worker: the engine's run. Before it creates its file it asks; then the free space is looked at, and the
//    hidden file is created. Afterwards the padded copy, when one is wanted, and the wait for the disk.
// 3. On the main thread: judge the run, and give the file its final name.
#include "cli/commands.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <utility>

#include "cli/batch.h"
#include "cli/command_inputs.h"
#include "cli/engine_job.h"
#include "cli/output_place.h"
#include "cli/shown_text.h"
#include "engine/padded_copy.h"
#include "engine/repair.h"
#include "platform/paths.h"
#include "platform/same_file.h"

namespace zelvo::cli {

namespace {

std::string writeFailed(const OutputChoice& output, std::uint64_t offset, std::error_code cause) {
  return "writing " + printable(output.path) + " failed after " + shownSize(offset) + ": " + cause.message() +
         ". Nothing of it was left behind.";
}

/// One input's repair. Makes the engine's output: a hidden file beside the final name.
class OneRepair final : public engine::OutputMaker {
 public:
  OneRepair(Environment& environment, EngineJob& job, const CommandInputs& inputs, OutputChoice output, bool padded)
      : environment_(environment),
        job_(job),
        inputs_(inputs),
        output_(std::move(output)),
        folder_(platform::folderOf(output_.path)),
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
  void failWriting(std::uint64_t offset, std::error_code cause) { obstacle_ = writeFailed(output_, offset, cause); }
  [[nodiscard]] Made refused(std::string sentence) {
    obstacle_ = std::move(sentence);
    return {.file = nullptr, .error = {}, .refused = true};
  }

  /// Has the new name, and that of a folder made for it, outlive a power cut.
  void keepNames(Outcome& outcome);
  void judge(Outcome& outcome, const ChosenInput& input, const engine::RepairReport& report,
             const platform::CancelMark& cancel);

  Environment& environment_;
  EngineJob& job_;
  const CommandInputs& inputs_;
  const OutputChoice output_;
  const std::string folder_;
  const bool isPadded_;
  HiddenFile rebuilt_;
  HiddenFile padded_;
  std::string obstacle_;  ///< why there will be no output; a sentence
};

engine::OutputMaker::Made OneRepair::make(std::uint64_t size) {
  if (output_.makesFolder) {
    if (const std::error_code error = environment_.fileManager.createFolder(folder_)) {
      return refused("the folder " + printable(folder_) + " cannot be created: " + error.message() + ".");
    }
  }
  // Both the rebuilt file and its padded copy are there for a while.
  const std::uint64_t needed = isPadded_ ? size + engine::paddedCopySize(size) : size;
  if (auto sentence = spaceMissing(folder_, needed, environment_.fileManager)) return refused(std::move(*sentence));
  if (const std::error_code error = rebuilt_.create(folder_, output_)) {
    return refused("no file can be created in " + printable(folder_) + ": " + error.message() + ".");
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
  if (const std::error_code error = padded_.create(folder_, output_)) {
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

void OneRepair::keepNames(Outcome& outcome) {
  std::error_code error = environment_.newFiles.flushFolder(folder_);
  if (!error && output_.makesFolder) error = environment_.newFiles.flushFolder(platform::folderOf(folder_));
  if (!error) return;
  job_.warn(outcome, printable(output_.path) +
                         " is written, but a power cut could still take its name from it: " + error.message() + ".");
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
  // A link can have come to lead to an input since the look before the work.
  if (const auto replaced = inputs_.at(output_.path)) {
    outcome.reason = printable(output_.path) + " leads to " + printable(*replaced) +
                     " by now, which is an input of this command; an input is never written to. Name another output.";
    return;
  }
  const auto attributes = environment_.fileManager.attributes(written.path());
  if (const std::error_code error = written.renameTo(output_)) {
    outcome.reason = renameRefused(output_, error);
    return;
  }
  keepNames(outcome);
  outcome.verdict = Verdict::repaired;
  outcome.outputPath = output_.path;
  outcome.outputSize = attributes ? attributes->size : 0;
  if (outcome.readFailures.count > 0) {
    job_.warn(outcome, counted(outcome.readFailures.count, "read") + " of " + printable(input.path) +
                           " failed, the first at byte " + shownNumber(outcome.readFailures.firstOffset) + ": " +
                           outcome.readFailures.firstCause.message() + ". What lies there is missing from the output.");
  }
}

Outcome OneRepair::run(const std::string& inputPath) {
  const auto start = std::chrono::steady_clock::now();
  Outcome outcome = outcomeOf("repair", inputPath);
  auto chosen = chooseInput(inputPath, environment_.files, environment_.fileManager);
  if (auto* sentence = std::get_if<std::string>(&chosen)) {
    outcome.reason = std::move(*sentence);
    return outcome;
  }
  const ChosenInput& input = std::get<ChosenInput>(chosen);
  outcome.inputSize = input.attributes.size;
  if (auto sentence = refusal(output_, input, environment_.fileManager)) {
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
  }
  outcome.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  return outcome;
}

class RepairCommand final : public Command {
 public:
  std::vector<Option> options() override {
    return {
        {"INPUT", "damaged AVI files; they are only read, never changed", &inputs_},
        {"-o,--output", "where to write the repaired file (for one input)", &output_, "OUTPUT"},
        {"--output-dir", "folder for the repaired files, each named NAME-repaired.avi", &outputFolder_, "DIR"},
        {"--into", "write FOLDER/repaired.avi as the window's Save does: created when missing, padded to whole blocks",
         &into_, "FOLDER"},
        {"-f,--force", "replace an existing output", &force_},
        {"--json", "print one JSON object a line instead of text", &json_},
        {"-q,--quiet", "print errors only", &quiet_},
        {"-v,--verbose", "show the log of the repair; given twice, every position of the first check too", &verbose_},
    };
  }

  std::optional<std::string> misuse() const override {
    const int places = (output_ ? 1 : 0) + (outputFolder_ ? 1 : 0) + (into_ ? 1 : 0);
    if (places > 1) return "only one of --output, --output-dir and --into can be given.";
    if (inputs_.size() > 1 && output_) return "--output takes one input; use --output-dir for several.";
    if (inputs_.size() > 1 && into_) return "--into takes one input; use --output-dir for several.";
    return std::nullopt;
  }

  Exit run(Environment& environment) override {
    environment.console.setQuiet(quiet_);
    EngineJob job(environment, verbose_);
    Batch batch(environment, inputs_.size(), json_);
    // Every output is judged against every input while all of them still are what the user named.
    const CommandInputs all(inputs_, environment.fileManager);
    std::vector<std::optional<std::string>> refusals;
    for (const std::string& input : inputs_) refusals.push_back(all.refusal(input, placeFor(input).path));
    for (std::size_t i = 0; i < inputs_.size() && batch.shouldContinue(); ++i) {
      const OutputChoice place = placeFor(inputs_[i]);
      if (!refusals[i]) refusals[i] = alreadyWritten(inputs_[i], place, environment.fileManager);
      if (refusals[i]) {
        Outcome outcome = outcomeOf("repair", inputs_[i]);
        outcome.reason = *refusals[i];
        batch.report(outcome);
        continue;
      }
      const Outcome outcome = OneRepair(environment, job, all, place, into_.has_value()).run(inputs_[i]);
      if (outcome.outputPath) {
        written_.push_back({inputs_[i], environment.fileManager.attributes(*outcome.outputPath)});
      }
      batch.report(outcome);
    }
    return batch.finish();
  }

 private:
  [[nodiscard]] OutputChoice placeFor(const std::string& input) const {
    if (output_) return {*output_, force_, false};
    if (into_) return {platform::pathIn(*into_, "repaired.avi"), force_, true};
    return {repairedPath(input, outputFolder_), force_, false};
  }

  /// A sentence when this very command wrote the file: not even `--force` means that one input's result replaces
  /// another's.
  [[nodiscard]] std::optional<std::string> alreadyWritten(const std::string& input, const OutputChoice& place,
                                                          platform::FileManager& fileManager) const {
    const auto there = fileManager.attributes(place.path);
    const auto writer = std::find_if(written_.begin(), written_.end(),
                                     [&](const Written& one) { return platform::areOneFile(one.file, there); });
    if (writer == written_.end()) return std::nullopt;
    return printable(input) + " is not repaired: " + printable(place.path) +
           " has just been written for another input of the same name, " + printable(writer->input) + ".";
  }

  struct Written {
    std::string input;
    std::optional<platform::FileAttributes> file;
  };
  std::vector<Written> written_;
  std::vector<std::string> inputs_;
  std::optional<std::string> output_;
  std::optional<std::string> outputFolder_;
  std::optional<std::string> into_;
  bool force_ = false;
  bool json_ = false;
  bool quiet_ = false;
  int verbose_ = 0;
};

}  // namespace

std::unique_ptr<Command> makeRepairCommand() { return std::make_unique<RepairCommand>(); }

}  // namespace zelvo::cli
