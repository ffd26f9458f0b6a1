#include "cli/verify_command.h"

#include <charconv>
#include <chrono>
#include <utility>

#include "cli/batch.h"
#include "cli/batch_command.h"
#include "cli/commands.h"
#include "cli/job_progress.h"
#include "cli/shown_text.h"
#include "cli/worker_run.h"

namespace zelvo::cli {

namespace {

constexpr unsigned kMaxThreads = 16;

std::string whyUnreadable(const salvage::FilmCheck& check, const std::string& name) {
  using platform::PlayEnd;
  if (check.container.readFailures.count > 0) {
    const avi::ReadFailures& failures = check.container.readFailures;
    return name + " cannot be read at byte " + shownNumber(failures.firstOffset) + ": " +
           failures.firstCause.message() + ".";
  }
  if (check.play.unreadable > 0)
    return name + " cannot be read at byte " + shownNumber(check.play.firstUnreadable) + ".";
  if (check.end == PlayEnd::noPlayer) {
    return name +
           " cannot be decoded: the program zelvo-avi-player, which lies beside zelvo-avi, is missing or cannot "
           "run here.";
  }
  if (check.end == PlayEnd::noFilm) return name + " cannot be played: no player recognises a film in it.";
  return name + " could not be opened for playing.";
}

void judge(VerifyOutcome& told, const ChosenInput& input) {
  const salvage::FilmCheck& check = *told.check;
  Outcome& outcome = told.outcome;
  outcome.readFailures = check.container.readFailures;
  if (auto sentence = becameShorter(input)) {
    outcome.reason = std::move(*sentence);
    return;
  }
  switch (check.verdict()) {
    case salvage::FilmVerdict::plays:
      outcome.verdict = Verdict::plays;
      return;
    case salvage::FilmVerdict::faults:
      outcome.verdict = Verdict::faults;
      return;
    case salvage::FilmVerdict::unreadable:
      break;
  }
  outcome.reason = whyUnreadable(check, printable(input.path));
}

/// The text as a whole number of threads; nothing when it is none.
std::optional<unsigned> threadsIn(const std::string& text) {
  unsigned number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || number == 0 || number > kMaxThreads)
    return std::nullopt;
  return number;
}

class VerifyCommand final : public Command {
 public:
  std::vector<Option> options() override {
    std::vector<Option> options = {
        {.names = "INPUT",
         .help = "films to look at, or with --recursive folders of them; they are only read",
         .target = &inputs_,
         .mayLack = true},
        {"--no-seeks", "play through only; do not try jumps", &noSeeks_},
        {"--threads", "threads of each decoder, 1 to 16 (1 without it)", &threads_, "N"},
        {"--json", "print one JSON object a line instead of text", &json_},
        {"-q,--quiet", "print errors only; the exit code tells the result", &quiet_},
        {"-v,--verbose", "tell each fault", &verbose_},
    };
    batch_.addTo(options);
    return options;
  }

  std::optional<std::string> misuse() const override {
    if (threads_ && !threadsIn(*threads_)) return "--threads takes a whole number from 1 to 16.";
    return batch_.misuse(inputs_);
  }

  Exit run(Environment& environment) override {
    environment.console.setQuiet(quiet_);
    platform::PlayChoices choices;
    if (noSeeks_) choices.seeks = 0;
    if (threads_) choices.threads = threadsIn(*threads_).value_or(1);
    if (isBatch(environment, batch_, inputs_)) {
      return runBatch(environment, batch_,
                      {.name = "verify",
                       .options = options(),
                       .inputs = inputs_,
                       .isJson = json_,
                       .json = [](const Outcome& outcome) {
                         return inJson(VerifyOutcome{outcome, {}});
                       }});
    }
    Batch batch(environment, inputs_.size(), json_);
    for (const std::string& input : inputs_) {
      if (!batch.shouldContinue()) break;
      const VerifyOutcome told = verifyFilm(environment, input, choices);
      batch.report(told.outcome, inWords(told, verbose_), json_ ? inJson(told) : std::string());
    }
    return batch.finish();
  }

 private:
  BatchOptions batch_;
  std::vector<std::string> inputs_;
  std::optional<std::string> threads_;
  bool noSeeks_ = false;
  bool json_ = false;
  bool quiet_ = false;
  bool verbose_ = false;
};

}  // namespace

VerifyOutcome verifyFilm(Environment& environment, const std::string& inputPath, const platform::PlayChoices& choices) {
  const auto start = std::chrono::steady_clock::now();
  VerifyOutcome told{.outcome = outcomeOf("verify", inputPath), .check = {}};
  auto chosen = chooseInput(inputPath, environment.files, environment.fileManager);
  if (auto* sentence = std::get_if<std::string>(&chosen)) {
    told.outcome.reason = std::move(*sentence);
    return told;
  }
  const ChosenInput& input = std::get<ChosenInput>(chosen);
  told.outcome.inputSize = input.attributes.size;
  const auto cancel = std::make_shared<platform::CancelMark>();
  platform::Relaxed<std::uint64_t> reached;
  salvage::FilmCheck check;
  ProgressLine line(input.path);
  const std::error_code shortage = runOnWorker(
      environment, cancel,
      [&] {
        check = salvage::checkFilm({.file = *input.file,
                                    .path = input.path,
                                    .player = environment.filmPlayer,
                                    .choices = choices,
                                    .cancel = *cancel,
                                    .progress = [&](std::uint64_t offset) { reached = offset; }});
      },
      [&] {
        const auto now = ProgressLine::Clock::now();
        if (!environment.console.showsProgress() || !line.isDue(now)) return;
        environment.console.progress(line.text(now, Stage::playing, reached, input.attributes.size), line.step());
      });
  if (environment.stopRequested) {
    told.outcome.verdict = Verdict::stopped;
    told.outcome.reason = "stopped before " + printable(input.path) + " was played through; it is unchanged.";
  } else if (shortage) {
    told.outcome.reason = shortageSentence(input.path, shortage);
  } else {
    told.check = std::move(check);
    judge(told, input);
    const auto add = [&](std::string_view figure, double value) {
      told.outcome.facts.figures.push_back({std::string(figure), value});
    };
    add("seconds", told.check->play.seconds);
    add("errors", static_cast<double>(told.check->errorsOf(platform::PlayedKind::video) +
                                      told.check->errorsOf(platform::PlayedKind::sound)));
    add("wrong_seeks", static_cast<double>(told.check->wrongSeeks()));
    if (!told.check->wasConfined && told.check->end == platform::PlayEnd::played) {
      told.outcome.warnings.emplace_back("the decoders were not confined, since this program was built for tests.");
      environment.console.warning(told.outcome.warnings.back());
    }
  }
  told.outcome.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  return told;
}

std::unique_ptr<Command> makeVerifyCommand() { return std::make_unique<VerifyCommand>(); }

}  // namespace zelvo::cli
