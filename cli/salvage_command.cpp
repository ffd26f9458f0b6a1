// One deep repair:
// 1. Look at the input and the output; refuse what cannot go well before the long work.
// 2. On the worker: the run. Before it writes it asks for its output; then the free space is looked at, and the hidden
//    file is created. Afterwards the wait for the disk.
// 3. On the main thread: judge the run, and give the file its final name.
#include "cli/commands.h"

#include <charconv>
#include <chrono>
#include <memory>
#include <utility>

#include "cli/batch.h"
#include "cli/job_progress.h"
#include "cli/new_output.h"
#include "cli/salvage_outcome.h"
#include "cli/salvage_page.h"
#include "cli/shown_text.h"
#include "cli/worker_run.h"
#include "platform/ran_out.h"
#include "salvage/deep_repair.h"

namespace zelvo::cli {

namespace {

/// How far a run is. Thread: any.
class SalvageProgress final : public salvage::SalvageObserver {
 public:
  void stage(salvage::SalvageStage stage) override {
    read_ = 0;
    stage_ = stage;
  }
  void read(std::uint64_t bytes) override { read_.add(bytes); }
  void beginFlushing() { isFlushing_ = true; }

  [[nodiscard]] Stage shown() const {
    if (isFlushing_) return Stage::flushing;
    switch (stage_) {
      case salvage::SalvageStage::readingHeaders:
        return Stage::analysing;
      case salvage::SalvageStage::searching:
        return Stage::scanning;
      case salvage::SalvageStage::weighing:
        return Stage::weighing;
      case salvage::SalvageStage::writing:
        break;
    }
    return Stage::writing;
  }
  [[nodiscard]] std::uint64_t bytesRead() const { return read_; }

 private:
  platform::Relaxed<salvage::SalvageStage> stage_;
  platform::Relaxed<std::uint64_t> read_;
  platform::Relaxed<bool> isFlushing_;
};

/// What was chosen for all inputs.
struct Choices {
  salvage::SalvageChoices repair;
  std::shared_ptr<platform::ReadableFile> donor;  ///< null without one
  bool isDry = false;
};

class OneSalvage {
 public:
  OneSalvage(Environment& environment, const CommandInputs& inputs, OutputChoice place, const Choices& choices)
      : environment_(environment),
        output_(environment, inputs, std::move(place)),
        choices_(choices),
        hidden_(environment.fileManager, environment.newFiles, written_) {}

  [[nodiscard]] SalvageOutcome run(const std::string& inputPath) {
    const auto start = std::chrono::steady_clock::now();
    SalvageOutcome told{.outcome = outcomeOf("salvage", inputPath), .report = {}};
    auto chosen = chooseInput(inputPath, environment_.files, environment_.fileManager);
    if (auto* sentence = std::get_if<std::string>(&chosen)) {
      told.outcome.reason = std::move(*sentence);
      return told;
    }
    const ChosenInput& input = std::get<ChosenInput>(chosen);
    told.outcome.inputSize = input.attributes.size;
    auto refused = choices_.isDry ? std::nullopt : refusal(output_.place(), input, environment_.fileManager);
    if (refused) {
      told.outcome.reason = std::move(*refused);
      return told;
    }
    work(input, told);
    told.outcome.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    return told;
  }

 private:
  void work(const ChosenInput& input, SalvageOutcome& told) {
    const auto cancel = std::make_shared<platform::CancelMark>();
    salvage::SalvageReport report;
    ProgressLine line(input.path);
    std::error_code shortage = runOnWorker(
        environment_, cancel, [&] { report = repair(input, *cancel); },
        [&] {
          if (environment_.console.showsProgress()) showProgress(line, input.attributes.size);
        });
    // A stop between the end of the work and here still counts: nothing bears the final name yet.
    if (environment_.stopRequested) cancel->abandon();
    if (!shortage && report.writeFailure && platform::isShortage(report.writeFailure->cause)) {
      shortage = report.writeFailure->cause;
    }
    if (shortage && !environment_.stopRequested) {
      told.outcome.reason = shortageSentence(input.path, shortage);
      return;
    }
    judge(input, std::move(report), cancel->abandoned(), told);
  }

  /// Thread: the worker.
  salvage::SalvageReport repair(const ChosenInput& input, const platform::CancelMark& cancel) {
    salvage::SalvageRun run{.input = *input.file,
                            .inputSize = input.attributes.size,
                            .donor = choices_.donor.get(),
                            .observer = progress_,
                            .cancel = cancel,
                            .workers = environment_.workers,
                            .decoder = &environment_.trialDecoder,
                            .choices = choices_.repair,
                            .makeOutput = {}};
    if (!choices_.isDry) {
      run.makeOutput = [this](std::uint64_t size) -> platform::WritableFile* {
        expected_ = size;
        if (auto sentence = output_.create(hidden_, size)) {
          obstacle_ = std::move(*sentence);
          return nullptr;
        }
        return hidden_.file();
      };
    }
    salvage::SalvageReport report = salvage::salvage(run);
    if (report.end != salvage::SalvageEnd::written || report.writeFailure) return report;
    progress_.beginFlushing();
    if (const std::error_code error = hidden_.flushAndClose()) report.writeFailure = {report.outputSize, error};
    return report;
  }

  void showProgress(ProgressLine& line, std::uint64_t inputSize) {
    const auto now = ProgressLine::Clock::now();
    if (!line.isDue(now)) return;
    const Stage stage = progress_.shown();
    std::uint64_t all = 0;
    std::uint64_t done = 0;
    if (stage == Stage::scanning) {
      all = inputSize;
      done = progress_.bytesRead();
    } else if (stage == Stage::writing) {
      all = expected_;
      done = written_;
    }
    environment_.console.progress(line.text(now, stage, done, all));
  }

  void judge(const ChosenInput& input, salvage::SalvageReport report, bool isStopped, SalvageOutcome& told) {
    Outcome& outcome = told.outcome;
    const std::string name = printable(input.path);
    outcome.readFailures = report.readFailures;
    if (isStopped) {
      outcome.verdict = Verdict::stopped;
      outcome.reason = "stopped before " + name + " was done; nothing was written, and it is unchanged.";
      return;
    }
    if (auto sentence = becameShorter(input)) {
      outcome.reason = std::move(*sentence);
      return;
    }
    using salvage::SalvageEnd;
    told.report = std::move(report);
    const SalvageEnd end = told.report->end;
    if (end == SalvageEnd::noMedia || end == SalvageEnd::noHeader) {
      outcome.reason = whyNothing(*told.report, name) + " It is unchanged.";
      if (outcome.readFailures.count == 0) outcome.verdict = Verdict::notSupported;
    } else if (end == SalvageEnd::tooLarge || end == SalvageEnd::manySounds) {
      outcome.reason = whyNothing(*told.report, name);
    } else if (!obstacle_.empty()) {
      outcome.reason = obstacle_;
    } else if (told.report->writeFailure) {
      outcome.reason = output_.writeFailed(told.report->writeFailure->offset, told.report->writeFailure->cause);
    } else {
      finish(input, told);
    }
  }

  void finish(const ChosenInput& input, SalvageOutcome& told) {
    Outcome& outcome = told.outcome;
    if (choices_.isDry) {
      outcome.verdict = Verdict::repairable;
    } else if (auto sentence = output_.publish(hidden_)) {
      outcome.reason = std::move(*sentence);
      return;
    } else {
      outcome.verdict = Verdict::repaired;
      outcome.outputPath = output_.path();
      if (const auto warning = output_.keepName()) warn(outcome, *warning);
    }
    outcome.outputSize = told.report->outputSize;
    if (told.report->isDonorUseless) {
      warn(outcome, "the donor's headers cannot be those of " + printable(input.path) +
                        "; lost ones were put together from what is left.");
    }
    if (const std::size_t left = told.report->streamsWithoutHeader; left > 0) {
      warn(outcome, counted(left, "stream") + " of " + printable(input.path) + (left == 1 ? " is" : " are") +
                        " left out: the header is lost, and nothing tells what it holds. A --donor may help.");
    }
    if (told.report->lacksDecoder) {
      warn(outcome, "parts of " + printable(input.path) +
                        " could have been found by decoding, but the program zelvo-avi-decoder, which lies beside "
                        "zelvo-avi, is missing or did not last.");
    }
    if (const auto warning = readsFailed(
            input.path, outcome.readFailures,
            told.report->unreadable > 0
                ? " Zeros stand in the output where " + counted(told.report->unreadable, "byte") + " could not be read."
                : "")) {
      warn(outcome, *warning);
    }
  }

  void warn(Outcome& outcome, const std::string& sentence) {
    environment_.console.warning(sentence);
    outcome.warnings.push_back(sentence);
  }

  Environment& environment_;
  NewOutput output_;
  const Choices& choices_;
  platform::Relaxed<std::uint64_t> written_;
  platform::Relaxed<std::uint64_t> expected_;
  SalvageProgress progress_;
  HiddenFile hidden_;
  std::string obstacle_;  ///< why there will be no output; a sentence
};

/// The text as a number from `least` to `most`; nothing when it is none.
std::optional<double> numberIn(const std::string& text, double least, double most) {
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed);
  if (error != std::errc() || end != text.data() + text.size() || !(number >= least && number <= most))
    return std::nullopt;
  return number;
}

using ReportWriter = std::string (*)(const SalvageOutcome&);

/// The kind of report that a file's name asks for; nothing when it is none of them.
std::optional<ReportWriter> reportOf(std::string_view path) {
  if (path.ends_with(".json")) return inJson;
  if (path.ends_with(".html")) return salvagePage;
  if (path.ends_with(".txt")) return [](const SalvageOutcome& told) { return reportInWords(told); };
  return std::nullopt;
}

class SalvageCommand final : public Command {
 public:
  std::vector<Option> options() override {
    return {
        {"INPUT", "damaged AVI files; they are only read, never changed", &inputs_},
        {"-o,--output", "where to write the film (for one input)", &output_, "OUTPUT"},
        {"--output-dir", "folder for the films, each named NAME-salvaged.avi", &outputFolder_, "DIR"},
        {"--donor", "an undamaged film of the same camera, whose headers stand in for lost ones (for one input)",
         &donor_, "FILE"},
        {"--fps", "pictures a second, when you know better than the film's header or what is left of it", &fps_, "N"},
        {"--rate", "samples of sound a second, in the same case (for one sound track)", &rate_, "N"},
        {"--report", "write what was found and done to a file, of the kind that its name ends in (for one input)",
         &report_, "FILE.json|.html|.txt"},
        {"--damaged", "pictures that are damaged: keep them (default), or put empty ones there, which seeks better",
         &damaged_, "keep|empty"},
        {"--gaps", "time that is lost: fill it (default), or close it up", &gaps_, "fill|close"},
        {"--dry-run", "write nothing but the report", &choices_.isDry},
        {"-f,--force", "replace an existing output", &force_},
        {"--allow-growth", "write the film even if it is much larger than its input", &choices_.repair.allowsGrowth},
        {"--json", "print one JSON object a line instead of text", &json_},
        {"-q,--quiet", "print errors only", &quiet_},
        {"-v,--verbose", "tell each stretch of damage", &verbose_},
    };
  }

  std::optional<std::string> misuse() const override {
    if (output_ && outputFolder_) return "only one of --output and --output-dir can be given.";
    if (inputs_.size() > 1 && output_) return "--output takes one input; use --output-dir for several.";
    if (inputs_.size() > 1 && donor_) return "--donor takes one input.";
    if (inputs_.size() > 1 && report_) return "--report takes one input.";
    if (report_ && !reportOf(*report_)) return "--report takes a name that ends in .json, .html or .txt.";
    if (report_ && output_ && *report_ == *output_) return "--report and --output name the same file.";
    if (fps_ && !numberIn(*fps_, 0.01, 1000)) return "--fps takes a number between 0.01 and 1000, such as 29.97.";
    if (rate_ && !numberIn(*rate_, 100, 1e6)) return "--rate takes a whole number of hertz, such as 44100.";
    if (damaged_ && *damaged_ != "keep" && *damaged_ != "empty") return "--damaged is either keep or empty.";
    if (gaps_ && *gaps_ != "fill" && *gaps_ != "close") return "--gaps is either fill or close.";
    return std::nullopt;
  }

  Exit run(Environment& environment) override {
    environment.console.setQuiet(quiet_);
    choices_.repair.emptiesDamaged = damaged_ == "empty";
    choices_.repair.closesGaps = gaps_ == "close";
    if (fps_) choices_.repair.rates.pictures = numberIn(*fps_, 0.01, 1000);
    if (rate_) choices_.repair.rates.samples = static_cast<std::uint32_t>(*numberIn(*rate_, 100, 1e6));
    if (donor_) {
      auto chosen = chooseInput(*donor_, environment.files, environment.fileManager);
      if (const auto* sentence = std::get_if<std::string>(&chosen)) {
        environment.console.error(*sentence);
        return Exit::ioFailed;
      }
      choices_.donor = std::get<ChosenInput>(chosen).file;
    }
    Batch batch(environment, inputs_.size(), json_);
    workOnEach(
        environment, batch, inputs_, [this](const std::string& input) { return placeFor(input); },
        [&](const Assignment& assignment, const CommandInputs& all) {
          SalvageOutcome told{.outcome = outcomeOf("salvage", assignment.input), .report = {}};
          if (assignment.refusal && !choices_.isDry) {
            told.outcome.reason = *assignment.refusal;
          } else {
            told = OneSalvage(environment, all, assignment.place, choices_).run(assignment.input);
          }
          if (report_) writeReport(environment, all, told);
          batch.report(told.outcome, inWords(told, verbose_), json_ ? inJson(told) : std::string());
          return told.outcome.outputPath;
        });
    return worse(batch.finish(), reportExit_);
  }

 private:
  /// By the rules of every output. Where it fails, that is told and counts, and the film stays.
  void writeReport(Environment& environment, const CommandInputs& inputs, SalvageOutcome& told) {
    if (!told.report) return;
    if (auto sentence = writeText(environment, inputs, {*report_, force_, false}, (*reportOf(*report_))(told))) {
      environment.console.error(*sentence);
      reportExit_ = Exit::ioFailed;
    }
  }

  [[nodiscard]] OutputChoice placeFor(const std::string& input) const {
    if (output_) return {*output_, force_, false};
    return {salvagedPath(input, outputFolder_), force_, false};
  }

  std::vector<std::string> inputs_;
  std::optional<std::string> output_;
  std::optional<std::string> outputFolder_;
  std::optional<std::string> report_;
  std::optional<std::string> donor_;
  std::optional<std::string> fps_;
  std::optional<std::string> rate_;
  std::optional<std::string> damaged_;
  std::optional<std::string> gaps_;
  Choices choices_;
  Exit reportExit_ = Exit::done;
  bool force_ = false;
  bool json_ = false;
  bool quiet_ = false;
  bool verbose_ = false;
};

}  // namespace

std::unique_ptr<Command> makeSalvageCommand() { return std::make_unique<SalvageCommand>(); }

}  // namespace zelvo::cli
