#include "cli/batch_options.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "cli/input_list.h"
#include "cli/shown_text.h"

namespace zelvo::cli {

namespace {

constexpr unsigned kMaxJobs = 256;

std::optional<unsigned> jobNumber(const std::string& text) {
  unsigned number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || number == 0 || number > kMaxJobs) return std::nullopt;
  return number;
}

}  // namespace

Option BatchOptions::damagedFilms(std::vector<std::string>& inputs) {
  return {.names = "INPUT",
          .help = "damaged AVI files, or with --recursive folders of them; they are only read, never changed",
          .target = &inputs,
          .mayLack = true};
}

std::vector<Option> BatchOptions::rows() {
  return {
      {"-j,--jobs", "how many films to work on at once", &jobs_, "N"},
      {"--threads", "how many threads each of them may use", &threads_, "N"},
      {"--inputs-from", "read the inputs' paths from a file, one a line; - is standard input", &list_, "FILE"},
      {"-0,--null", "a zero byte ends each path of that file, not a line's end", &endsWithZero_},
      {"-r,--recursive", "search the folders among the inputs for films: .avi, .divx, .xvid", &isRecursive_},
      {"--any-name", "of those folders take whatever begins as an AVI film, too", &anyName_},
      {"--shard", "only part K of N, from 1; each machine takes another one", &shard_, "K/N"},
      {"--journal", "write down what becomes of each film, a line each, so that a run can be resumed", &journal_,
       "FILE"},
      {"--resume", "leave out what the journal says is done, if it has not changed", &resumes_},
      {"--checksums", "note the SHA-256 of inputs and outputs in the journal", &takesChecksums_},
  };
}

void BatchOptions::addTo(std::vector<Option>& options) {
  for (Option& row : rows()) {
    // A command may have one of that name for each film.
    if (std::ranges::count(options, row.names, &Option::names) > 0) continue;
    row.isOfBatch = true;
    options.push_back(std::move(row));
  }
}

bool BatchOptions::isGiven() const {
  return jobs_ || threads_ || list_ || journal_ || shard_ || endsWithZero_ || isRecursive_ || anyName_ || resumes_ ||
         takesChecksums_;
}

std::optional<std::string> BatchOptions::misuse(const std::vector<std::string>& inputs) const {
  if (inputs.empty() && !list_) return "no input was given.";
  if (jobs_ && !jobNumber(*jobs_)) return "--jobs takes a whole number from 1 to 256.";
  if (threads_ && !jobNumber(*threads_)) return "--threads takes a whole number from 1 to 256.";
  if (shard_ && !salvage::shardFrom(*shard_)) return "--shard takes K/N, such as 1/4: part K of N, from 1.";
  if (endsWithZero_ && !list_) return "--null tells how --inputs-from is to be read; it needs that one.";
  if (anyName_ && !isRecursive_) return "--any-name is for folders; it needs --recursive.";
  if (resumes_ && !journal_) return "--resume needs the --journal of the run before.";
  if (takesChecksums_ && !journal_) return "--checksums needs a --journal to note them in.";
  return std::nullopt;
}

BatchOptions::Films BatchOptions::films(Environment& environment, const std::vector<std::string>& inputs,
                                        const std::optional<std::string>& outputFolder) const {
  Films films;
  const auto fail = [&](const std::string& sentence) {
    environment.console.error(sentence);
    films.exit = Exit::ioFailed;
  };
  std::vector<std::string> named = inputs;
  if (list_) {
    auto listed = readInputList(*list_, endsWithZero_ ? '\0' : '\n');
    if (const auto* sentence = std::get_if<std::string>(&listed)) {
      fail(*sentence);
      return films;
    }
    for (std::string& path : std::get<std::vector<std::string>>(listed)) named.push_back(std::move(path));
  }
  salvage::BatchInputs found =
      salvage::findFilms(named, {isRecursive_, anyName_, outputFolder}, environment.fileManager, environment.files,
                         [&] { return !environment.stopRequested; });
  for (const std::string& folder : found.unreadable) fail("the folder " + printable(folder) + " cannot be read.");
  if (found.isTooMany) {
    fail("there are more than " + shownNumber(salvage::kMaxBatchFilms) + " films; name fewer at once.");
    return films;
  }
  films.films = std::move(found.films);
  return films;
}

bool BatchOptions::isOurs(Environment& environment, const salvage::BatchFilm& film) const {
  if (!shard_) return true;
  const auto shard = *salvage::shardFrom(*shard_);
  return salvage::shardOf(film.below, shard.count, *environment.checksums) == shard.number;
}

std::optional<unsigned> BatchOptions::jobs() const { return jobs_ ? jobNumber(*jobs_) : std::nullopt; }
unsigned BatchOptions::threads() const { return threads_ ? jobNumber(*threads_).value_or(0) : 0; }

}  // namespace zelvo::cli
