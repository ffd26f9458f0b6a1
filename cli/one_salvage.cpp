// One deep repair:
// 1. Look at the input and the output; refuse what cannot go well before the long work.
// 2. On the worker: the run. Before it writes it asks for its output; then the free space is looked at, and the hidden
//    file is created. Afterwards the wait for the disk.
// 3. On the main thread: judge the run, and give the file its final name.
#include "cli/one_salvage.h"

#include <chrono>
#include <utility>

#include "cli/job_progress.h"
#include "cli/new_output.h"
#include "cli/salvage_facts.h"
#include "cli/salvage_progress.h"
#include "cli/shown_text.h"
#include "cli/told_parent.h"
#include "cli/worker_run.h"
#include "platform/ran_out.h"
#include "salvage/playing/film_check.h"
#include "salvage/salvage_words.h"

namespace zelvo::cli {

namespace {

class OneSalvage {
 public:
  OneSalvage(Environment& environment, const CommandInputs& inputs, OutputChoice place,
             const OneSalvageChoices& choices)
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
    environment_.console.progress(line.text(now, stage, done, all), line.step());
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
  const OneSalvageChoices& choices_;
  std::optional<salvage::FilmRescue> rescue_;
  platform::Relaxed<std::uint64_t> written_;
  platform::Relaxed<std::uint64_t> expected_;
  SalvageProgress progress_;
  HiddenFile hidden_;
  std::optional<salvage::FilmCheck> played_;  ///< what playing the output showed
  std::uint64_t keysDropped_ = 0;
  std::string obstacle_;  ///< why there will be no output; a sentence
};

}  // namespace

SalvageOutcome salvageOne(Environment& environment, const CommandInputs& inputs, OutputChoice place,
                          const OneSalvageChoices& choices, const std::string& inputPath) {
  return OneSalvage(environment, inputs, std::move(place), choices).run(inputPath);
}

}  // namespace zelvo::cli
