// A batch: 1. list the films. 2. Judge where their outputs go. 3. Open the journal. 4. Let the queue run; each film's
// result is told in the order of the inputs.
#include "cli/batch_command.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <unordered_map>
#include <utility>

#include "cli/batch.h"
#include "cli/batch_lines.h"
#include "cli/command_inputs.h"
#include "cli/shown_text.h"
#include "cli/told_parent.h"
#include "platform/paths.h"
#include "salvage/batch_run.h"

namespace zelvo::cli {

namespace {

using salvage::ToldAs;

/// How long another run may hold the journal: one that was killed lets go within moments. A run that is to go on where
/// that one was waits longer: on a cluster it may have been started before the other was ended.
constexpr std::chrono::seconds kJournalPatience{10};
constexpr std::chrono::minutes kResumePatience{10};

constexpr std::array<std::string_view, 4> kPlaces{"INPUT", "-o,--output", "--output-dir", "--into"};
/// What says how a result is told, and where else, but not what it is.
constexpr std::array<std::string_view, 6> kManners{"--json",     "-q,--quiet", "-v,--verbose",
                                                   "-f,--force", "--report",   "--wanted"};

std::string longName(const Option& option) { return option.names.substr(option.names.find("--")); }

void append(std::vector<std::string>& arguments, const Option& option) {
  const std::string name = longName(option);
  std::visit(
      [&](const auto* target) {
        using Value = std::remove_const_t<std::remove_pointer_t<decltype(target)>>;
        if constexpr (std::is_same_v<Value, bool>) {
          if (*target) arguments.push_back(name);
        } else if constexpr (std::is_same_v<Value, int>) {
          for (int i = 0; i < *target; ++i) arguments.push_back(name);
        } else if constexpr (std::is_same_v<Value, std::optional<std::string>>) {
          if (*target) arguments.insert(arguments.end(), {name, **target});
        } else if constexpr (std::is_same_v<Value, std::string>) {
          arguments.insert(arguments.end(), {name, *target});
        } else {
          for (const std::string& one : *target) arguments.insert(arguments.end(), {name, one});
        }
      },
      option.target);
}

/// What is given but for some of it, and but for what belongs to a batch.
std::vector<std::string> givenBut(const std::vector<Option>& options, std::span<const std::string_view> left,
                                  std::span<const std::string_view> alsoLeft) {
  std::vector<std::string> arguments;
  for (const Option& option : options) {
    const bool isLeft = std::ranges::count(left, option.names) + std::ranges::count(alsoLeft, option.names) > 0;
    if (!isLeft && !option.isOfBatch) append(arguments, option);
  }
  return arguments;
}

/// Where the output of a film goes. Below an output folder the folders of the inputs are mirrored.
std::string outputOf(const BatchCommand& command, const salvage::BatchFilm& film) {
  if (command.output) return *command.output;
  if (!command.outputFolder || !film.isFound) return command.outputPath(film.input, command.outputFolder);
  const std::string below = platform::folderOf(film.below);
  return command.outputPath(film.input,
                            below == "." ? *command.outputFolder : platform::pathIn(*command.outputFolder, below));
}

/// The films with their outputs, judged against each other; what a film was made of before is none itself.
std::vector<salvage::PlannedFilm> planned(Environment& environment, const BatchOptions& options,
                                          const BatchCommand& command, std::vector<salvage::BatchFilm> films) {
  std::vector<salvage::PlannedFilm> plan;
  if (command.outputPath != nullptr) {
    std::unordered_map<std::string, std::size_t> outputs;
    for (std::size_t i = 0; i < films.size(); ++i) {
      outputs.emplace(salvage::placeKey(outputOf(command, films[i]), environment.fileManager), i);
    }
    std::size_t next = 0;
    std::erase_if(films, [&](const salvage::BatchFilm& film) {
      const std::size_t place = next++;
      const auto made = outputs.find(salvage::placeKey(film.input, environment.fileManager));
      return film.isFound && made != outputs.end() && made->second != place;
    });
  }
  std::vector<std::string> paths;
  for (const salvage::BatchFilm& film : films) paths.push_back(film.input);
  const CommandInputs all(paths, environment.fileManager);
  std::unordered_map<std::string, std::string> taken;
  for (const salvage::BatchFilm& film : films) {
    salvage::PlannedFilm one{film.input, {}, {}};
    if (command.outputPath != nullptr) {
      one.output = outputOf(command, film);
      const auto [first, isFree] = taken.emplace(salvage::placeKey(one.output, environment.fileManager), film.input);
      if (auto sentence = command.isDry ? std::nullopt : all.refusal(film.input, one.output)) {
        one.refusal = std::move(*sentence);
      } else if (!isFree && !command.isDry) {
        one.refusal = printable(film.input) + " is not repaired: its output would be " + printable(one.output) +
                      ", as that of another input of the same name, " + printable(first->second) + ".";
      }
    }
    if (options.isOurs(environment, film)) plan.push_back(std::move(one));
  }
  return plan;
}

/// Tells a batch on the console.
class BatchTeller final : public salvage::BatchListener {
 public:
  BatchTeller(Environment& environment, const BatchCommand& command)
      : console_(environment.console), command_(command) {}

  void tell(const salvage::ToldFilm& film) override {
    if (film.as == ToldAs::skipped) {
      ++skipped_;
      return;
    }
    exit_ = worse(exit_, static_cast<Exit>(film.line.exit));
    verdicts_.push_back(verdictOf(film.line.outcome));
    const bool isTold = film.as == ToldAs::worked;
    if (film.result != nullptr) {
      relay(film.result->complaints);
      if (isTold) console_.result(film.result->printed);
    }
    if (!isTold) tellInstead(film);
    console_.flushResult();
  }

  void progress(const salvage::BatchProgress& progress) override {
    if (console_.showsProgress()) console_.progressLines(batchProgressLines(progress));
  }

  void journalFailed(std::error_code error) override {
    exit_ = worse(exit_, Exit::ioFailed);
    console_.error("the journal cannot be written to: " + error.message() + "; no further film is begun.");
  }

  std::string reasonOf(ToldAs as, const salvage::FilmResult* result, std::error_code error) override {
    if (as == ToldAs::noFolder) return "the folder for its output cannot be created: " + error.message() + ".";
    if (as == ToldAs::notStarted) return "the program to work on it could not be started: " + error.message() + ".";
    if (result->end->signal == SIGTERM) return "the program that worked on it was stopped; nothing was written.";
    if (result->end->signal == SIGKILL) {
      return "the program that worked on it was killed, perhaps for want of memory; nothing was written.";
    }
    if (result->end->signal != 0) {
      return "the program that worked on it crashed (signal " + std::to_string(result->end->signal) +
             "); nothing was written.";
    }
    return "the program that worked on it ended without a result.";
  }

  /// The summary, and the worst exit.
  [[nodiscard]] Exit finish(std::size_t films, std::size_t told) {
    console_.progressLines({});
    if (told < films) exit_ = worse(exit_, Exit::stopped);
    if (films < 2) return exit_;
    std::string text;
    if (!verdicts_.empty() || told < films) text = summary(verdicts_, films - told);
    if (skipped_ > 0) text += counted(skipped_, "film") + " left out: done before, and unchanged.\n";
    if (!command_.isJson) {
      if (!console_.isQuiet()) console_.result(text);
      return exit_;
    }
    relay(text);
    return exit_;
  }

 private:
  void relay(std::string_view text) {
    while (!text.empty()) {
      const std::size_t end = text.find('\n');
      console_.logLine(text.substr(0, end));
      text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
  }

  void tellInstead(const salvage::ToldFilm& film) {
    Outcome outcome = outcomeOf(command_.name, film.film.input);
    outcome.verdict = verdictOf(film.line.outcome);
    outcome.inputSize = film.line.inputSize;
    outcome.reason = film.line.reason;
    outcome.seconds = film.line.seconds;
    if (film.as == ToldAs::adopted) {
      outcome.outputPath = film.line.output->path;
      outcome.outputSize = film.line.output->size;
      console_.note("zelvo-avi: " + printable(film.film.input) +
                    ": its output was whole, and is kept: " + printable(film.line.output->path) + ".");
    } else {
      const bool namesInput = film.as == ToldAs::refused;
      console_.error((namesInput ? "" : printable(film.film.input) + ": ") + outcome.reason);
    }
    if (command_.isJson) console_.result(command_.json(outcome));
  }

  Console& console_;
  const BatchCommand& command_;
  std::vector<Verdict> verdicts_;
  std::size_t skipped_ = 0;
  Exit exit_ = Exit::done;
};

std::string journalRefusal(const std::string& path, const salvage::JournalRefusal& refusal) {
  const std::string name = "the journal " + printable(path);
  if (refusal.foreignLine > 0) {
    return name + " is none, or was changed: line " + shownNumber(refusal.foreignLine) +
           " is not as this program writes them. Nothing was touched.";
  }
  if (refusal.error == std::errc::timed_out) return name + " is in use by another run; wait for its end.";
  if (refusal.error == std::errc::invalid_argument) return name + " is not a regular file.";
  return name + " cannot be used: " + refusal.error.message() + ".";
}

}  // namespace

std::vector<std::string> argumentsGiven(const std::vector<Option>& options) { return givenBut(options, kPlaces, {}); }

std::string decidingOptions(const std::vector<Option>& options) {
  std::string text;
  for (const std::string& argument : givenBut(options, kPlaces, kManners)) {
    text += (text.empty() ? "" : " ") + argument;
  }
  return text;
}

bool isBatch(const Environment& environment, const BatchOptions& options, const std::vector<std::string>& inputs) {
  return environment.filmPrograms != nullptr && environment.parent == nullptr &&
         (options.isGiven() || inputs.size() > 1);
}

Exit runBatch(Environment& environment, const BatchOptions& options, const BatchCommand& command) {
  Console& console = environment.console;
  BatchOptions::Films films = options.films(environment, command.inputs, command.outputFolder);
  if (environment.stopRequested) return worse(films.exit, Exit::stopped);
  salvage::BatchOrder order{.command = command.name,
                            .options = decidingOptions(command.options),
                            .arguments = {command.name},
                            .films = planned(environment, options, command, std::move(films.films)),
                            .outputFolder = command.outputFolder,
                            .makesOutputs = !command.isDry,
                            .resumes = options.resumes()};
  const std::vector<std::string> given = argumentsGiven(command.options);
  order.arguments.insert(order.arguments.end(), given.begin(), given.end());

  std::unique_ptr<salvage::BatchJournal> journal;
  if (options.journal()) {
    auto opened = salvage::BatchJournal::open(*environment.lockedFiles, *options.journal(),
                                              options.resumes() ? kResumePatience : kJournalPatience,
                                              [&] { return !environment.stopRequested; });
    if (const auto* refusal = std::get_if<salvage::JournalRefusal>(&opened)) {
      console.error(journalRefusal(*options.journal(), *refusal));
      return environment.stopRequested ? Exit::stopped : Exit::ioFailed;
    }
    journal = std::move(std::get<std::unique_ptr<salvage::BatchJournal>>(opened));
  }

  const unsigned processors = environment.workers.processors();
  unsigned jobs = options.jobs().value_or(command.jobs.value_or(processors));
  jobs = std::max(1U, static_cast<unsigned>(std::min<std::size_t>(jobs, order.films.size())));
  const auto width = salvage::queueWidth(jobs, environment.memory->available());
  if (width.isLowered && options.jobs()) {
    console.warning(counted(width.jobs, "film") + " at once instead of " + shownNumber(jobs) +
                    ": there is no memory for more.");
  }
  BatchTeller teller(environment, command);
  salvage::BatchRun run(order, journal.get(), teller,
                        {.fileManager = environment.fileManager,
                         .lockedFiles = *environment.lockedFiles,
                         .checksum = [&](const std::string& path) { return checksumOf(environment, path); },
                         .isStopped = [&]() -> bool { return environment.stopRequested; }});
  const unsigned threads = options.threads() > 0 ? options.threads() : std::max(1U, processors / width.jobs);
  salvage::runQueue(*environment.filmPrograms, run,
                    {.jobs = width.jobs,
                     .request = {.arguments = {},
                                 .threads = threads,
                                 .tellsProgress = console.showsProgress(),
                                 .takesChecksums = options.takesChecksums(),
                                 .lock = journal ? &journal->lock() : nullptr}});
  return worse(teller.finish(order.films.size(), run.told()), films.exit);
}

}  // namespace zelvo::cli
