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
#include "cli/batch_command.h"
#include "cli/job_progress.h"
#include "cli/new_output.h"
#include "cli/rescue_choice.h"
#include "cli/salvage_facts.h"
#include "cli/salvage_outcome.h"
#include "cli/salvage_page.h"
#include "cli/salvage_progress.h"
#include "cli/shown_text.h"
#include "cli/told_parent.h"
#include "cli/worker_run.h"
#include "platform/ran_out.h"
#include "salvage/deep_repair.h"
#include "salvage/film_check.h"

namespace zelvo::cli {

namespace {

/// What was chosen for all inputs.
struct Choices {
  salvage::SalvageChoices repair;
  std::shared_ptr<platform::ReadableFile> donor;  ///< null without one
  std::shared_ptr<const ChosenRescue> rescue;     ///< null without a map
  bool isDry = false;
  bool verifies = false;  ///< plays the film that was written
};

class OneSalvage {
 public:
  OneSalvage(Environment& environment, const CommandInputs& inputs, OutputChoice place, const Choices& choices)
      : environment_(environment),
        output_(environment, inputs, std::move(place)),
        choices_(choices),
        hidden_(environment.fileManager, environment.newFiles, written_) {}

  [[nodiscard]] SalvageOutcome run(const std::string& inputPath) {
    SalvageOutcome told{.outcome = outcomeOf("salvage", inputPath), .report = {}};
    auto chosen = chooseInput(inputPath, environment_.files, environment_.fileManager, FirstByte::left);
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
    if (choices_.rescue) {
      auto rescue = choices_.rescue->of(printable(inputPath), input.attributes.size);
      if (auto* sentence = std::get_if<std::string>(&rescue)) {
        told.outcome.reason = std::move(*sentence);
        return told;
      }
      rescue_ = std::move(std::get<salvage::FilmRescue>(rescue));
    }
    work(input, told);
    told.outcome.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
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
                            .rescue = rescue_ ? &*rescue_ : nullptr,
                            .donor = choices_.donor.get(),
                            .observer = progress_,
                            .cancel = cancel,
                            .workers = environment_.workers,
                            .decoder = &environment_.trialDecoder,
                            .choices = choices_.repair,
                            .sharedInput = input.file,
                            .sharedDonor = choices_.donor,
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
    if (choices_.verifies) {
      if (const std::error_code error = verify(cancel)) {
        report.writeFailure = {report.outputSize, error};
        return report;
      }
    }
    progress_.beginFlushing();
    if (const std::error_code error = hidden_.flushAndClose()) report.writeFailure = {report.outputSize, error};
    return report;
  }

  /// Plays what was written, before it has its final name. Pictures that its index falsely calls keys are not called
  /// so any more; then it is played again.
  /// \return why the index could not be changed. Thread: the worker.
  std::error_code verify(const platform::CancelMark& cancel) {
    progress_.beginPlaying();
    auto opened = environment_.files.openForReading(hidden_.path());
    if (!opened.file) return opened.error;
    const salvage::FilmCheckRun run{.file = *opened.file,
                                    .path = hidden_.path(),
                                    .player = environment_.filmPlayer,
                                    .choices = {},
                                    .cancel = cancel,
                                    .progress = [this](std::uint64_t offset) { progress_.played(offset); }};
    played_ = salvage::checkFilm(run);
    if (played_->falseKeys.empty() || cancel.abandoned()) return {};
    keysDropped_ = played_->falseKeyPictures();
    const std::error_code error = salvage::dropKeyFlags(*hidden_.file(), played_->falseKeys);
    if (!error) played_ = salvage::checkFilm(run);
    return error;
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
    } else if (stage == Stage::playing) {
      all = expected_;
      done = progress_.playedUpTo();
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
    outcome.facts = factsOf(*told.report);
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
    outcome.outputSize = told.report->outputSize;
    if (choices_.isDry) {
      outcome.verdict = Verdict::repairable;
    } else if (!nameOutput(outcome)) {
      return;
    }
    told.played = std::move(played_);
    told.keysDropped = keysDropped_;
    if (told.played && told.played->end == platform::PlayEnd::noPlayer) {
      warn(outcome,
           "the film was not verified, since the program zelvo-avi-player, which lies beside zelvo-avi, is "
           "missing or cannot run here.");
      told.played.reset();
    }
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

  /// False when it could not get its name; the outcome says why.
  bool nameOutput(Outcome& outcome) {
    outcome.verdict = Verdict::repaired;
    outcome.outputPath = output_.path();
    outcome.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
    auto refused = askForName(environment_, outcome, hidden_.path());
    if (!refused) refused = output_.publish(hidden_);
    if (refused) {
      outcome.verdict = environment_.stopRequested ? Verdict::stopped : Verdict::failed;
      outcome.reason = std::move(*refused);
      outcome.outputPath.reset();
      outcome.outputSize.reset();
      return false;
    }
    if (const auto warning = output_.keepName()) warn(outcome, *warning);
    return true;
  }

  void warn(Outcome& outcome, const std::string& sentence) {
    environment_.console.warning(sentence);
    outcome.warnings.push_back(sentence);
  }

  Environment& environment_;
  const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  NewOutput output_;
  const Choices& choices_;
  std::optional<salvage::FilmRescue> rescue_;
  platform::Relaxed<std::uint64_t> written_;
  platform::Relaxed<std::uint64_t> expected_;
  SalvageProgress progress_;
  HiddenFile hidden_;
  std::optional<salvage::FilmCheck> played_;  ///< what playing the output showed
  std::uint64_t keysDropped_ = 0;
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
    std::vector<Option> options = {
        {.names = "INPUT",
         .help = "damaged AVI files, or with --recursive folders of them; they are only read, never changed",
         .target = &inputs_,
         .mayLack = true},
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
        {"--verify", "play the film that was written by decoding it, and tell what plays", &choices_.verifies},
        {"--dry-run", "write nothing but the report", &choices_.isDry},
        {"-f,--force", "replace an existing output", &force_},
        {"--allow-growth", "write the film even if it is much larger than its input", &choices_.repair.allowsGrowth},
        {"--json", "print one JSON object a line instead of text", &json_},
        {"-q,--quiet", "print errors only", &quiet_},
        {"-v,--verbose", "tell each stretch of damage", &verbose_},
    };
    rescue_.addTo(options);
    options.push_back({"--wanted",
                       "write down what of it would bring most back, as a domain map for ddrescue -m (for one input)",
                       &wanted_, "FILE"});
    batch_.addTo(options);
    return options;
  }

  std::optional<std::string> misuse() const override {
    if (output_ && outputFolder_) return "only one of --output and --output-dir can be given.";
    if (inputs_.size() > 1 && output_) return "--output takes one input; use --output-dir for several.";
    if (inputs_.size() > 1 && donor_) return "--donor takes one input.";
    if (inputs_.size() > 1 && report_) return "--report takes one input.";
    if (report_ && !reportOf(*report_)) return "--report takes a name that ends in .json, .html or .txt.";
    if (wanted_ && !rescue_.mapPath()) return "--wanted needs --map.";
    if (wanted_ && (wanted_ == output_ || wanted_ == report_)) return "--wanted and another option name the same file.";
    if (auto sentence = rescue_.misuse(inputs_.size())) return sentence;
    if (report_ && output_ && *report_ == *output_) return "--report and --output name the same file.";
    if (fps_ && !numberIn(*fps_, 0.01, 1000)) return "--fps takes a number between 0.01 and 1000, such as 29.97.";
    if (rate_ && !numberIn(*rate_, 100, 1e6)) return "--rate takes a whole number of hertz, such as 44100.";
    if (choices_.verifies && choices_.isDry) return "--verify plays what is written, and --dry-run writes nothing.";
    if (damaged_ && *damaged_ != "keep" && *damaged_ != "empty") return "--damaged is either keep or empty.";
    if (gaps_ && *gaps_ != "fill" && *gaps_ != "close") return "--gaps is either fill or close.";
    if (batch_.namesMore() && (output_ || donor_ || report_ || rescue_.mapPath())) {
      return "--output, --donor, --report and --map take one input, and no folder or list.";
    }
    return batch_.misuse(inputs_);
  }

  Exit run(Environment& environment) override {
    environment.console.setQuiet(quiet_);
    choices_.repair.emptiesDamaged = damaged_ == "empty";
    choices_.repair.closesGaps = gaps_ == "close";
    if (fps_) choices_.repair.rates.pictures = numberIn(*fps_, 0.01, 1000);
    if (rate_) choices_.repair.rates.samples = static_cast<std::uint32_t>(*numberIn(*rate_, 100, 1e6));
    if (donor_) {
      auto chosen = chooseInput(*donor_, environment.files, environment.fileManager, FirstByte::left);
      if (const auto* sentence = std::get_if<std::string>(&chosen)) {
        environment.console.error(*sentence);
        return Exit::ioFailed;
      }
      choices_.donor = std::get<ChosenInput>(chosen).file;
    }
    if (isBatch(environment, batch_, inputs_)) {
      return runBatch(environment, batch_,
                      {.name = "salvage",
                       .options = options(),
                       .inputs = inputs_,
                       .output = output_,
                       .outputFolder = outputFolder_,
                       .outputPath = salvagedPath,
                       .isDry = choices_.isDry,
                       .isJson = json_,
                       .json = [](const Outcome& outcome) {
                         return inJson(SalvageOutcome{outcome, {}});
                       }});
    }
    auto rescue = rescue_.read(environment);
    if (const auto* sentence = std::get_if<std::string>(&rescue)) {
      environment.console.error(*sentence);
      return Exit::ioFailed;
    }
    choices_.rescue = std::get<std::shared_ptr<const ChosenRescue>>(rescue);
    const std::string film = choices_.isDry ? std::string() : placeFor(inputs_.front()).path;
    if (auto sentence = rescue_.replacedBy({film, report_.value_or(""), wanted_.value_or("")}, environment)) {
      environment.console.error(*sentence);
      return Exit::ioFailed;
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
          if (wanted_) writeWanted(environment, told);
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

  /// The same of the map of what is wanted; it replaces neither the film nor the map that it was made from.
  void writeWanted(Environment& environment, const SalvageOutcome& told) {
    if (!told.report || !told.report->rescue) return;
    const CommandInputs inputs({inputs_.front(), *rescue_.mapPath()}, environment.fileManager);
    const std::string text = salvage::domainMap(salvage::wantedPlaces(*told.report->rescue), choices_.rescue->map.end);
    if (auto sentence = writeText(environment, inputs, {*wanted_, force_, false}, text)) {
      environment.console.error(*sentence);
      reportExit_ = Exit::ioFailed;
    }
  }

  [[nodiscard]] OutputChoice placeFor(const std::string& input) const {
    if (output_) return {*output_, force_, false};
    return {salvagedPath(input, outputFolder_), force_, false};
  }

  BatchOptions batch_;
  std::vector<std::string> inputs_;
  std::optional<std::string> output_;
  std::optional<std::string> outputFolder_;
  std::optional<std::string> report_;
  RescueChoice rescue_;
  std::optional<std::string> wanted_;
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
