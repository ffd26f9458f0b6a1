// 1. Start the child, with a pipe for its answers.
// 2. Read until every path has answered, the child has ended, or the time is up.
// 3. Kill the child. Take note of its end if that comes before the time is up, and otherwise at the next question.
#include "platform/linux/path_probe.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <optional>

#include "platform/linux/path_probe_child.h"
#include "platform/linux/spawn.h"

namespace zelvo::platform::linux_ {

namespace {

using Clock = std::chrono::steady_clock;

std::error_code errorOf(int number) { return {number, std::generic_category()}; }

/// Starts the child. \return where its answers can be read; nothing on failure, which `error` tells
std::optional<int> start(const std::string& program, const std::vector<std::string>& paths, pid_t& child, int& error) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
    error = errno;
    return std::nullopt;
  }
  std::vector<std::string> arguments = {std::string(kProbeOption)};
  arguments.insert(arguments.end(), paths.begin(), paths.end());
  const Spawned spawned = spawn({.program = program, .arguments = arguments, .output = ends[1]});
  child = spawned.process;
  error = spawned.error.value();
  ::close(ends[1]);
  if (error == 0) return ends[0];
  ::close(ends[0]);
  return std::nullopt;
}

enum class Reading { go, ended, late };

int millisecondsUntil(Clock::time_point end) {
  return static_cast<int>(std::max(0L, std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count()));
}

/// Waits for the next answer.
Reading next(int answers, Clock::time_point end, ProbeRecord& record) {
  for (;;) {
    const int left = millisecondsUntil(end);
    if (left == 0) return Reading::late;
    pollfd wanted{answers, POLLIN, 0};
    const int ready = ::poll(&wanted, 1, left);
    if (ready < 0 && errno != EINTR) return Reading::ended;
    if (ready <= 0) continue;
    // A record was written at once, so that it is there as a whole.
    const ssize_t count = ::read(answers, &record, sizeof record);
    if (count < 0 && errno == EINTR) continue;
    return count == static_cast<ssize_t>(sizeof record) ? Reading::go : Reading::ended;
  }
}

void readAnswers(int answers, Clock::time_point end, std::vector<PathAnswer>& found) {
  std::vector<bool> told(found.size());
  Reading reading = Reading::go;
  ProbeRecord record;
  for (std::size_t left = found.size(); left > 0; --left) {
    reading = next(answers, end, record);
    if (reading != Reading::go || record.place >= found.size()) break;
    told[record.place] = true;
    PathAnswer& answer = found[record.place];
    answer.free = record.free;
    answer.capacity = record.capacity;
    if (record.error != 0) answer.error = errorOf(record.error);
  }
  for (std::size_t place = 0; place < found.size(); ++place) {
    if (told[place]) continue;
    // A child that has ended without an answer says nothing about the path.
    found[place].answered = reading != Reading::late;
    found[place].error = std::make_error_code(reading == Reading::late ? std::errc::timed_out : std::errc::io_error);
  }
}

/// Kills a child that hardly ever has not ended by itself, and waits a little for its end.
void end(pid_t child, Clock::time_point latest) {
  ::kill(child, SIGKILL);
  const int process = static_cast<int>(::syscall(SYS_pidfd_open, child, 0));
  if (process < 0) return;
  pollfd ended{process, POLLIN, 0};
  ::poll(&ended, 1, millisecondsUntil(latest));
  ::close(process);
}

}  // namespace

LinuxPathProbe::LinuxPathProbe(std::string program, std::chrono::milliseconds limit, std::chrono::milliseconds silence)
    : program_(std::move(program)), limit_(limit), silence_(silence) {}

LinuxPathProbe::~LinuxPathProbe() {
  const std::lock_guard lock(mutex_);
  takeNoteOfEnded();
}

std::string LinuxPathProbe::programBeside(const std::string& runningProgram) {
  return runningProgram.substr(0, runningProgram.rfind('/') + 1) + "zelvo-avi-probe";
}

std::vector<PathAnswer> LinuxPathProbe::ask(const std::vector<std::string>& paths) {
  std::vector<PathAnswer> found(paths.size());
  std::vector<std::size_t> places;  // of those to be asked
  std::vector<std::string> asked;
  for (std::size_t place = 0; place < paths.size(); ++place) {
    if (isSilent(paths[place])) {
      found[place] = {.answered = false, .error = std::make_error_code(std::errc::timed_out)};
    } else {
      places.push_back(place);
      asked.push_back(paths[place]);
    }
  }
  if (asked.empty()) return found;
  const Clock::time_point latest = Clock::now() + limit_;
  std::vector<PathAnswer> answers(asked.size());
  pid_t child = 0;
  int error = 0;
  if (const auto pipe = start(program_, asked, child, error)) {
    readAnswers(*pipe, latest, answers);
    ::close(*pipe);
    end(child, latest);
    keep(child, asked, answers);
  } else {
    for (PathAnswer& answer : answers) answer.error = errorOf(error);
  }
  for (std::size_t at = 0; at < places.size(); ++at) found[places[at]] = answers[at];
  return found;
}

bool LinuxPathProbe::isSilent(const std::string& path) {
  const std::lock_guard lock(mutex_);
  std::erase_if(silent_, [now = Clock::now()](const Silent& one) { return one.until <= now; });
  return std::ranges::any_of(
      silent_, [&path](const Silent& one) { return path == one.path || path.starts_with(one.path + "/"); });
}

void LinuxPathProbe::keep(pid_t child, const std::vector<std::string>& paths, const std::vector<PathAnswer>& answers) {
  const std::lock_guard lock(mutex_);
  children_.push_back(child);
  takeNoteOfEnded();
  const Clock::time_point until = Clock::now() + silence_;
  for (std::size_t place = 0; place < paths.size(); ++place) {
    if (!answers[place].answered) silent_.push_back({paths[place], until});
  }
}

void LinuxPathProbe::takeNoteOfEnded() {
  std::erase_if(children_, [](pid_t child) { return ::waitpid(child, nullptr, WNOHANG) != 0; });
}

}  // namespace zelvo::platform::linux_
