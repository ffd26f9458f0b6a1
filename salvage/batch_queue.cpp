#include "salvage/batch_queue.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <memory>
#include <utility>

namespace zelvo::salvage {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::string_view kProgress = "progress ";
constexpr std::string_view kNaming = "naming ";
constexpr std::string_view kEnd = "end ";

/// What films that have ended may keep waiting, in bytes, before no further one is begun.
constexpr std::size_t kMaxWaiting = std::size_t{64} << 20U;
constexpr std::chrono::milliseconds kLookEvery{100};
/// After a program was killed; one that hangs in the system is left to it.
constexpr std::chrono::milliseconds kAfterKill{2000};

std::string withoutEnd(std::string line) {
  if (line.ends_with('\n')) line.pop_back();
  return line;
}

class QueueRun {
 public:
  QueueRun(platform::FilmPrograms& programs, FilmQueue& queue, const QueueChoices& choices)
      : programs_(programs), queue_(queue), choices_(choices) {}

  void run() {
    while (!isOver()) {
      if (queue_.isStopped()) stopAll();
      beginFilms();
      tellFilms();
      if (running_.empty()) continue;
      programs_.wait(kLookEvery);
      for (Running& one : running_) listen(one);
      collect();
      queue_.look(shown());
    }
    tellFilms();
  }

 private:
  struct Running {
    RunningFilm shown;
    std::unique_ptr<platform::FilmProgram> program;
    FilmResult result;
  };

  [[nodiscard]] bool isOver() const {
    if (!running_.empty()) return isGivenUp_;
    return queue_.isStopped() || next_ == queue_.films();
  }

  void beginFilms() {
    while (!queue_.isStopped() && next_ < queue_.films() && running_.size() < choices_.jobs &&
           waitingBytes_ < kMaxWaiting) {
      auto arguments = held_ ? std::exchange(held_, std::nullopt) : queue_.begin(next_);
      if (!arguments) {
        waiting_.emplace(next_++, nullptr);
        // Films without any work are told as they come.
        tellFilms();
        continue;
      }
      platform::FilmProgramRequest request = choices_.request;
      request.arguments = *arguments;
      auto started = programs_.start(request);
      if (!started.program && !running_.empty()) {
        // The system has nothing to give just now: it is tried again when one of the others has ended.
        held_ = std::move(arguments);
        return;
      }
      Running one{.shown = {next_++, {}}, .program = std::move(started.program), .result = {}};
      if (one.program) {
        running_.push_back(std::move(one));
      } else {
        one.result.error = started.error;
        end(one);
      }
    }
  }

  void listen(Running& one) {
    for (const std::string& text : one.program->takeMessages()) {
      auto message = readFilmMessage(text);
      if (!message) continue;
      if (message->kind == FilmMessage::Kind::progress) {
        one.shown.progress = std::move(message->progress);
        one.shown.step = std::move(message->step);
        continue;
      }
      one.result.line = std::move(message->line);
      one.result.isLast = message->kind == FilmMessage::Kind::end;
      if (!one.result.isLast) {
        one.program->answer(!queue_.isStopped() && queue_.mayName(one.shown.film, *one.result.line) ? "go" : "no");
      }
    }
  }

  void collect() {
    for (Running& one : running_) {
      one.result.end = one.program->end();
      if (!one.result.end) continue;
      one.result.printed = one.program->printed();
      one.result.complaints = one.program->complaints();
      one.program.reset();
      end(one);
    }
    std::erase_if(running_, [](const Running& one) { return !one.program; });
  }

  void end(Running& one) {
    queue_.end(one.shown.film, one.result);
    waitingBytes_ += one.result.printed.size() + one.result.complaints.size();
    waiting_.emplace(one.shown.film, std::make_unique<FilmResult>(std::move(one.result)));
  }

  void tellFilms() {
    for (auto first = waiting_.begin(); first != waiting_.end() && first->first == told_; first = waiting_.begin()) {
      const FilmResult* result = first->second.get();
      queue_.tell(told_++, result);
      if (result != nullptr) waitingBytes_ -= result->printed.size() + result->complaints.size();
      waiting_.erase(first);
    }
  }

  void stopAll() {
    const auto now = Clock::now();
    if (!stopped_) {
      stopped_ = now;
      for (Running& one : running_) one.program->stop();
    } else if (!isKilled_ && now - *stopped_ > choices_.patience) {
      isKilled_ = true;
      for (Running& one : running_) one.program->kill();
    }
    isGivenUp_ = isKilled_ && now - *stopped_ > choices_.patience + kAfterKill;
  }

  [[nodiscard]] std::vector<RunningFilm> shown() const {
    std::vector<RunningFilm> films;
    for (const Running& one : running_) films.push_back(one.shown);
    return films;
  }

  platform::FilmPrograms& programs_;
  FilmQueue& queue_;
  const QueueChoices& choices_;
  std::vector<Running> running_;
  std::map<std::size_t, std::unique_ptr<FilmResult>> waiting_;  ///< ended, and not told yet
  std::size_t waitingBytes_ = 0;
  std::size_t next_ = 0;
  std::size_t told_ = 0;
  std::optional<std::vector<std::string>> held_;  ///< of a film that was begun and could not be started yet
  std::optional<Clock::time_point> stopped_;
  bool isKilled_ = false;
  bool isGivenUp_ = false;
};

/// Two numbers, the stage and the line, each behind a tab but the first.
std::string progressMessage(const FilmMessage& message) {
  std::string stage = message.step.stage;
  std::ranges::replace(stage, '\t', ' ');
  std::string text = std::string(kProgress) + std::to_string(message.step.done) + "\t" +
                     std::to_string(message.step.all) + "\t" + stage + "\t" + message.progress;
  std::ranges::replace(text, '\n', ' ');
  return text;
}

/// What stands before the next tab, which is taken away with it; nothing when there is none.
std::optional<std::string_view> takeField(std::string_view& text) {
  const std::size_t tab = text.find('\t');
  if (tab == std::string_view::npos) return std::nullopt;
  const std::string_view field = text.substr(0, tab);
  text.remove_prefix(tab + 1);
  return field;
}

std::optional<std::uint64_t> takeNumber(std::string_view& text) {
  const auto field = takeField(text);
  if (!field) return std::nullopt;
  std::uint64_t number = 0;
  const auto [end, error] = std::from_chars(field->data(), field->data() + field->size(), number);
  if (error != std::errc() || end != field->data() + field->size()) return std::nullopt;
  return number;
}

std::optional<FilmMessage> readProgress(std::string_view text) {
  const auto done = takeNumber(text);
  const auto all = done ? takeNumber(text) : std::nullopt;
  const auto stage = all ? takeField(text) : std::nullopt;
  if (!stage) return std::nullopt;
  return FilmMessage{FilmMessage::Kind::progress, std::string(text), {}, {std::string(*stage), *done, *all}};
}

}  // namespace

void runQueue(platform::FilmPrograms& programs, FilmQueue& queue, const QueueChoices& choices) {
  QueueRun(programs, queue, choices).run();
}

std::string filmMessage(const FilmMessage& message) {
  if (message.kind == FilmMessage::Kind::progress) return progressMessage(message);
  return std::string(message.kind == FilmMessage::Kind::naming ? kNaming : kEnd) +
         withoutEnd(journalLine(*message.line));
}

std::optional<FilmMessage> readFilmMessage(std::string_view text) {
  if (text.starts_with(kProgress)) return readProgress(text.substr(kProgress.size()));
  const bool isNaming = text.starts_with(kNaming);
  if (!isNaming && !text.starts_with(kEnd)) return std::nullopt;
  auto line = readJournalLine(text.substr((isNaming ? kNaming : kEnd).size()));
  if (!line) return std::nullopt;
  return FilmMessage{isNaming ? FilmMessage::Kind::naming : FilmMessage::Kind::end, {}, std::move(line)};
}

QueueWidth queueWidth(unsigned wanted, std::optional<std::uint64_t> availableMemory) {
  if (!availableMemory) return {wanted, false};
  const std::uint64_t fit = std::max<std::uint64_t>(1, *availableMemory / kMemoryOfFilm);
  if (fit >= wanted) return {wanted, false};
  return {static_cast<unsigned>(fit), true};
}

}  // namespace zelvo::salvage
