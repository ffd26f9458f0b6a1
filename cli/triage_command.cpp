// One quick look: the sample is read and judged on the worker, through a file whose reads a stop does not wait for.
#include <chrono>
#include <memory>
#include <utility>

#include "cli/batch.h"
#include "cli/batch_command.h"
#include "cli/chosen_input.h"
#include "cli/commands.h"
#include "cli/job_progress.h"
#include "cli/rescue_choice.h"
#include "cli/shown_text.h"
#include "cli/triage_words.h"
#include "cli/worker_run.h"
#include "salvage/scan/stoppable_reads.h"
#include "salvage/triage/triage.h"

namespace zelvo::cli {

namespace {

TriageOutcome lookAt(Environment& environment, const std::string& path, const ChosenRescue* map) {
  const auto start = std::chrono::steady_clock::now();
  TriageOutcome told{.outcome = outcomeOf("triage", path), .report = {}};
  auto chosen = chooseInput(path, environment.files, environment.fileManager, FirstByte::left);
  if (auto* sentence = std::get_if<std::string>(&chosen)) {
    told.outcome.reason = std::move(*sentence);
    return told;
  }
  const ChosenInput& input = std::get<ChosenInput>(chosen);
  told.outcome.inputSize = input.attributes.size;
  std::optional<salvage::FilmRescue> rescue;
  if (map != nullptr) {
    auto found = map->of(printable(path), input.attributes.size);
    if (auto* sentence = std::get_if<std::string>(&found)) {
      told.outcome.reason = std::move(*sentence);
      return told;
    }
    rescue = std::move(std::get<salvage::FilmRescue>(found));
  }
  const auto cancel = std::make_shared<platform::CancelMark>();
  salvage::TriageReport report;
  ProgressLine line(path);
  const std::error_code shortage = runOnWorker(
      environment, cancel,
      [&] {
        salvage::StoppableReads reads(input.file, *cancel, environment.workers);
        report = salvage::triage(
            {.input = reads, .rescue = rescue ? &*rescue : nullptr, .cancel = *cancel, .workers = environment.workers});
      },
      [&] {
        const auto now = ProgressLine::Clock::now();
        if (environment.console.showsProgress() && line.isDue(now))
          environment.console.progress(line.text(now, Stage::analysing, 0, 0), line.step());
      });
  if (environment.stopRequested || cancel->abandoned()) {
    told.outcome.verdict = Verdict::stopped;
    told.outcome.reason = "stopped before " + printable(path) + " was looked at.";
  } else if (shortage) {
    told.outcome.reason = shortageSentence(path, shortage);
  } else {
    told.report = std::move(report);
    const bool isLeft = isAnythingLeft(*told.report);
    told.outcome.facts.figures.push_back({"kept_share", told.report->kept.share});
    told.outcome.verdict = isLeft ? Verdict::repairable : Verdict::notSupported;
    told.outcome.readFailures.count = told.report->failedReads;
    if (told.report->failed > 0) {
      told.outcome.warnings.push_back(counted(told.report->failed, "byte") + " of " + printable(path) +
                                      " could not be read.");
      environment.console.warning(told.outcome.warnings.back());
    }
  }
  told.outcome.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  return told;
}

class TriageCommand final : public Command {
 public:
  std::vector<Option> options() override {
    std::vector<Option> options = {
        BatchOptions::damagedFilms(inputs_),
        {"--json", "print one JSON object a line instead of text", &json_},
        {"-q,--quiet", "print errors only", &quiet_},
    };
    rescue_.addTo(options);
    batch_.addTo(options);
    return options;
  }

  std::optional<std::string> misuse() const override {
    if (auto sentence = rescue_.misuse(batch_.namesMore() ? 2 : inputs_.size())) return sentence;
    return batch_.misuse(inputs_);
  }

  Exit run(Environment& environment) override {
    environment.console.setQuiet(quiet_);
    if (isBatch(environment, batch_, inputs_)) {
      return runBatch(environment, batch_,
                      {.name = "triage",
                       .options = options(),
                       .inputs = inputs_,
                       .isJson = json_,
                       .json = [](const Outcome& outcome) {
                         return inJson(TriageOutcome{outcome, {}});
                       }});
    }
    const auto rescue = rescue_.read(environment);
    if (const auto* sentence = std::get_if<std::string>(&rescue)) {
      environment.console.error(*sentence);
      return Exit::ioFailed;
    }
    const ChosenRescue* const map = std::get<std::shared_ptr<const ChosenRescue>>(rescue).get();
    Batch batch(environment, inputs_.size(), json_);
    for (const std::string& input : inputs_) {
      if (!batch.shouldContinue()) break;
      const TriageOutcome told = lookAt(environment, input, map);
      batch.report(told.outcome, inWords(told), json_ ? inJson(told) : std::string());
    }
    return batch.finish();
  }

 private:
  BatchOptions batch_;
  std::vector<std::string> inputs_;
  RescueChoice rescue_;
  bool json_ = false;
  bool quiet_ = false;
};

}  // namespace

std::unique_ptr<Command> makeTriageCommand() { return std::make_unique<TriageCommand>(); }

}  // namespace zelvo::cli
