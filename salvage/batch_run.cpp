#include "salvage/batch_run.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <utility>

#include "platform/hidden_names.h"
#include "platform/paths.h"

namespace zelvo::salvage {

namespace {

constexpr int kFailedExit = 3;
constexpr int kStoppedExit = 130;

std::string fromRoot(const std::string& path) {
  std::error_code error;
  const std::filesystem::path whole = std::filesystem::absolute(path, error);
  return error ? path : whole.lexically_normal().string();
}

/// An exit by which a command says that it came to its end, whether the film could be repaired or not.
bool isDone(int exit) { return exit == 0 || exit == 1; }

}  // namespace

BatchRun::BatchRun(const BatchOrder& order, BatchJournal* journal, BatchListener& listener, Services services)
    : order_(order),
      journal_(journal),
      listener_(listener),
      services_(std::move(services)),
      known_(order.films.size()) {
  for (std::size_t film = 0; film < known_.size(); ++film) {
    const auto there = services_.fileManager.attributesFollowingLinks(order.films[film].input);
    if (there) known_[film].size = there->size;
    bytes_ += known_[film].size;
  }
}

BatchLine BatchRun::lineFor(std::size_t film) const {
  BatchLine line;
  line.outcome = "failed";
  line.exit = kFailedExit;
  complete(film, line);
  return line;
}

void BatchRun::complete(std::size_t film, BatchLine& line) const {
  line.command = order_.command;
  line.options = order_.options;
  line.input = fromRoot(order_.films[film].input);
  line.inputSize = known_[film].size;
  line.inputModified = known_[film].modified;
  if (line.output) line.output->path = fromRoot(line.output->path);
}

bool BatchRun::write(const BatchLine& line) {
  if (journal_ == nullptr || isBroken_) return !isBroken_;
  const std::error_code error = journal_->append(line);
  if (!error) return true;
  isBroken_ = true;
  listener_.journalFailed(error);
  return false;
}

void BatchRun::leaveOut(std::size_t film, ToldAs as, std::string reason) {
  Known& known = known_[film];
  known.as = as;
  known.line = lineFor(film);
  known.line.reason = std::move(reason);
  ++ended_;
  endedBytes_ += known.size;
  static_cast<void>(write(known.line));
}

bool BatchRun::resumed(std::size_t film) {
  if (journal_ == nullptr || !order_.resumes) return false;
  Known& known = known_[film];
  const BatchLine line = lineFor(film);
  const ResumeStep step =
      journal_->stepFor(line, services_.fileManager, [&] { return services_.checksum(order_.films[film].input); });
  if (step == ResumeStep::work) return false;
  known.as = step == ResumeStep::skip ? ToldAs::skipped : ToldAs::adopted;
  known.line = journal_->lineOf(line);
  ++ended_;
  endedBytes_ += known.size;
  if (step == ResumeStep::adopt) {
    known.line.state = LineState::done;
    known.line.isAdopted = true;
    return write(known.line);
  }
  return true;
}

std::error_code BatchRun::makeFolder(const std::string& output) {
  const std::string folder = platform::folderOf(output);
  if (!order_.outputFolder || services_.fileManager.exists(folder)) return {};
  // From the output folder downwards, which is there: what lies below it mirrors the inputs' folders.
  const std::string& top = *order_.outputFolder;
  if (!folder.starts_with(top) || !services_.fileManager.exists(top)) return {};
  for (std::size_t at = top.size(); at < folder.size();) {
    at = folder.find('/', at + 1);
    if (const std::error_code error = services_.fileManager.createFolder(folder.substr(0, at))) return error;
    if (at == std::string::npos) break;
  }
  return {};
}

void BatchRun::clean(const std::string& output) {
  const std::string folder = platform::folderOf(output);
  if (cleanFolders_.insert(folder).second) {
    removeDeadFiles(folder, services_.fileManager, services_.lockedFiles);
  }
}

std::optional<std::vector<std::string>> BatchRun::begin(std::size_t film) {
  const PlannedFilm& planned = order_.films[film];
  Known& known = known_[film];
  if (const auto there = services_.fileManager.attributesFollowingLinks(planned.input)) {
    known.size = there->size;
    known.modified = there->modified;
  }
  if (resumed(film)) return std::nullopt;
  if (!planned.refusal.empty()) {
    leaveOut(film, ToldAs::refused, planned.refusal);
    return std::nullopt;
  }
  std::vector<std::string> arguments = order_.arguments;
  if (!planned.output.empty()) {
    if (order_.makesOutputs) {
      if ((known.error = makeFolder(planned.output))) {
        leaveOut(film, ToldAs::noFolder, listener_.reasonOf(ToldAs::noFolder, nullptr, known.error));
        return std::nullopt;
      }
      clean(planned.output);
    }
    arguments.insert(arguments.end(), {"-o", planned.output});
  }
  arguments.insert(arguments.end(), {"--", planned.input});
  return arguments;
}

bool BatchRun::wasStopped(const platform::ProgramEnd& end) const {
  return end.exit == kStoppedExit || (isStopped() && (end.signal == SIGTERM || end.signal == SIGKILL));
}

bool BatchRun::mayName(std::size_t film, const BatchLine& line) {
  BatchLine naming = line;
  complete(film, naming);
  naming.state = LineState::naming;
  return naming.output && write(naming);
}

void BatchRun::end(std::size_t film, const FilmResult& result) {
  Known& known = known_[film];
  ++ended_;
  endedBytes_ += known.size;
  known.error = result.error;
  if (result.line && result.isLast) {
    known.line = *result.line;
    complete(film, known.line);
    // A program that was killed after it had told its end has come to it all the same.
    const int exit = result.end && result.end->signal == 0 ? result.end->exit : known.line.exit;
    if (!isDone(exit)) known.line.exit = exit;
    known.line.state = isDone(known.line.exit) ? LineState::done : LineState::failed;
  } else if (result.line && result.line->output && isInPlace(*result.line->output, services_.fileManager)) {
    known.line = *result.line;
    complete(film, known.line);
    known.line.state = LineState::done;
    known.line.isAdopted = true;
    known.as = ToldAs::adopted;
  } else {
    known.as = result.end ? ToldAs::died : ToldAs::notStarted;
    known.line = lineFor(film);
    if (result.end && wasStopped(*result.end)) {
      known.line.exit = kStoppedExit;
      known.line.outcome = "stopped";
    }
    known.line.reason = listener_.reasonOf(known.as, &result, result.error);
    const std::string& output = order_.films[film].output;
    if (!output.empty() && order_.makesOutputs) {
      removeDeadFiles(platform::folderOf(output), services_.fileManager, services_.lockedFiles);
    }
  }
  if (result.end) known.line.peakMemory = result.end->peakMemory;
  // A film that was stopped has no end yet, and one that died after a stop may have died of it.
  if (known.line.state == LineState::done || !isStopped()) static_cast<void>(write(known.line));
}

void BatchRun::tell(std::size_t film, const FilmResult* result) {
  ++told_;
  Known& known = known_[film];
  listener_.tell({order_.films[film], known.as, result, std::exchange(known.line, {}), known.error});
}

void BatchRun::look(const std::vector<RunningFilm>& running) {
  const auto now = platform::TimeLeft::Clock::now();
  timeLeft_.note(now, 0, endedBytes_, bytes_);
  listener_.progress({running, ended_, order_.films.size(), endedBytes_, bytes_, timeLeft_.seconds()});
}

void removeDeadFiles(const std::string& folder, platform::FileManager& fileManager,
                     platform::LockedFiles& lockedFiles) {
  for (const std::string& name : fileManager.list(folder)) {
    if (!platform::isHiddenName(name)) continue;
    const std::string path = platform::pathIn(folder, name);
    // The lock is kept until the file is gone, so nobody else takes it for a live one.
    if (const auto lock = lockedFiles.lockFile(path)) static_cast<void>(fileManager.remove(path));
  }
}

}  // namespace zelvo::salvage
