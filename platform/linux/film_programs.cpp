// A program is given two pipes for what it prints, and as its third and fourth descriptor a socket to speak through and
// the lock that it shares with this one. It has a session of its own, so that a Ctrl-C reaches this program alone,
// which then asks the others to end.
#include "platform/linux/film_programs.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <utility>

#include "platform/linux/locked_files.h"
#include "platform/linux/spawn.h"

namespace zelvo::platform::linux_ {

namespace {

constexpr int kSocket = 3;
/// Descriptors that are handed on must not lie where they are put in the new program.
constexpr int kFirstHandedOn = 16;
/// A program that prints or says more than this is out of its mind: the rest is left out.
constexpr std::size_t kMaxPrinted = std::size_t{64} << 20U;
constexpr std::size_t kMaxLine = std::size_t{1} << 20U;

Descriptor high(int number) {
  Descriptor low(number);
  return Descriptor(::fcntl(low.number(), F_DUPFD_CLOEXEC, kFirstHandedOn));
}

struct Pair {
  Descriptor ours{-1};
  Descriptor theirs{-1};
};

Pair makePipe() {
  std::array<int, 2> ends{-1, -1};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return {};
  static_cast<void>(::fcntl(ends[0], F_SETFL, O_NONBLOCK));
  return {Descriptor(ends[0]), high(ends[1])};
}

Pair makeSocket() {
  std::array<int, 2> ends{-1, -1};
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) return {};
  static_cast<void>(::fcntl(ends[0], F_SETFL, O_NONBLOCK));
  return {Descriptor(ends[0]), high(ends[1])};
}

/// Adds what is there; closes the stream at its end.
void takeIn(Descriptor& stream, std::string& text, std::size_t limit) {
  std::array<char, 32768> piece;
  while (stream.isOpen()) {
    const ssize_t count = ::read(stream.number(), piece.data(), piece.size());
    if (count > 0) {
      const auto taken = std::min(static_cast<std::size_t>(count), limit - std::min(limit, text.size()));
      text.append(piece.data(), taken);
    } else if (count == 0 || (errno != EINTR && errno != EAGAIN)) {
      static_cast<void>(stream.close());
    } else if (errno == EAGAIN) {
      return;
    }
  }
}

}  // namespace

class LinuxFilmPrograms::Program final : public FilmProgram {
 public:
  Program(LinuxFilmPrograms& all, pid_t process, Descriptor socket, Descriptor out, Descriptor err)
      : all_(all),
        process_(process),
        ended_(static_cast<int>(::syscall(SYS_pidfd_open, process, 0))),
        socket_(std::move(socket)),
        out_(std::move(out)),
        err_(std::move(err)) {
    all_.running_.push_back(this);
  }
  ~Program() override {
    std::erase(all_.running_, this);
    if (end_) return;
    ::kill(process_, SIGKILL);
    // One that hangs in the system is not waited for.
    int status = 0;
    static_cast<void>(::waitpid(process_, &status, WNOHANG));
  }

  std::vector<std::string> takeMessages() override {
    std::vector<std::string> lines;
    std::size_t begin = 0;
    for (std::size_t at = said_.find('\n'); at != std::string::npos; at = said_.find('\n', begin)) {
      lines.push_back(said_.substr(begin, at - begin));
      begin = at + 1;
    }
    said_.erase(0, begin);
    return lines;
  }
  void answer(std::string_view line) override {
    const std::string whole = std::string(line) + "\n";
    static_cast<void>(::send(socket_.number(), whole.data(), whole.size(), MSG_NOSIGNAL | MSG_DONTWAIT));
  }
  const std::string& printed() const override { return printed_; }
  const std::string& complaints() const override { return complaints_; }
  void stop() override {
    if (!end_) ::kill(process_, SIGTERM);
  }
  void kill() override {
    if (!end_) ::kill(process_, SIGKILL);
  }
  std::optional<ProgramEnd> end() const override { return end_; }

  void addTo(std::vector<pollfd>& streams) const {
    for (const Descriptor* one : {&ended_, &socket_, &out_, &err_}) {
      if (one->isOpen()) streams.push_back({one->number(), POLLIN, 0});
    }
  }

  void look() {
    if (end_) return;
    // What it said before its end is all there by then.
    int status = 0;
    struct rusage used {};
    const bool isOver = ::wait4(process_, &status, WNOHANG, &used) == process_;
    takeIn(out_, printed_, kMaxPrinted);
    takeIn(err_, complaints_, kMaxPrinted);
    takeIn(socket_, said_, kMaxLine);
    if (!isOver) return;
    end_ = ProgramEnd{.exit = WIFEXITED(status) ? WEXITSTATUS(status) : -1,
                      .signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0,
                      .peakMemory = static_cast<std::uint64_t>(used.ru_maxrss) * 1024};
    static_cast<void>(ended_.close());
  }

 private:
  LinuxFilmPrograms& all_;
  const pid_t process_;
  Descriptor ended_;
  Descriptor socket_;
  Descriptor out_;
  Descriptor err_;
  std::string said_;
  std::string printed_;
  std::string complaints_;
  std::optional<ProgramEnd> end_;
};

FilmPrograms::Started LinuxFilmPrograms::start(const FilmProgramRequest& request) {
  Pair out = makePipe();
  Pair err = makePipe();
  Pair socket = makeSocket();
  // Every lock of this system is one of ours.
  const auto* held = static_cast<const LinuxFileLock*>(request.lock);
  const Descriptor lock(held == nullptr ? -1 : ::fcntl(held->number(), F_DUPFD_CLOEXEC, kFirstHandedOn));
  if (!out.theirs.isOpen() || !err.theirs.isOpen() || !socket.theirs.isOpen() ||
      (request.lock != nullptr && !lock.isOpen())) {
    return {nullptr, lastError()};
  }
  SpawnRequest spawning{.program = program_,
                        .arguments = {std::string(kFilmOption) + std::to_string(request.threads) +
                                      (request.tellsProgress ? "p" : "") + (request.takesChecksums ? "c" : "")},
                        .hasOwnSession = true,
                        .keepsFolder = true,
                        .output = out.theirs.number(),
                        .error = err.theirs.number(),
                        .others = {socket.theirs.number()}};
  spawning.arguments.insert(spawning.arguments.end(), request.arguments.begin(), request.arguments.end());
  if (lock.isOpen()) spawning.others.push_back(lock.number());
  const Spawned spawned = spawn(spawning);
  if (spawned.error) return {nullptr, spawned.error};
  return {std::make_unique<Program>(*this, spawned.process, std::move(socket.ours), std::move(out.ours),
                                    std::move(err.ours)),
          {}};
}

std::string LinuxFilmPrograms::programBeside(const std::string& runningProgram) {
  return runningProgram.substr(0, runningProgram.rfind('/') + 1) + "zelvo-avi";
}

void LinuxFilmPrograms::wait(std::chrono::milliseconds most) {
  std::vector<pollfd> streams;
  for (const Program* program : running_) {
    if (!program->end()) program->addTo(streams);
  }
  static_cast<void>(::poll(streams.data(), streams.size(), static_cast<int>(most.count())));
  for (Program* program : running_) program->look();
}

bool LinuxFilmParent::isAsked(std::span<char* const> arguments) {
  return arguments.size() > 1 && std::string_view(arguments[1]).starts_with(kFilmOption);
}

LinuxFilmParent::LinuxFilmParent(std::string_view option) : socket_(kSocket) {
  option.remove_prefix(kFilmOption.size());
  wantsProgress_ = option.find('p') != std::string_view::npos;
  wantsChecksums_ = option.find('c') != std::string_view::npos;
  static_cast<void>(std::from_chars(option.data(), option.data() + option.size(), threads_));
  static_cast<void>(::fcntl(kSocket, F_SETFD, FD_CLOEXEC));
  // The lock, when there is one: held by being open.
  static_cast<void>(::fcntl(kSocket + 1, F_SETFD, FD_CLOEXEC));
  ::prctl(PR_SET_PDEATHSIG, SIGTERM);
  pollfd other{kSocket, POLLIN, 0};
  // The other one may have ended before that.
  if (::poll(&other, 1, 0) > 0 && (other.revents & (POLLHUP | POLLERR | POLLNVAL)) != 0) ::raise(SIGTERM);
  if (std::FILE* file = std::fopen("/proc/self/oom_score_adj", "we")) {
    std::fputs("300", file);
    std::fclose(file);
  }
}

void LinuxFilmParent::tell(std::string_view line) {
  std::string whole = std::string(line) + "\n";
  for (std::string_view left = whole; !left.empty();) {
    const ssize_t count = ::send(socket_.number(), left.data(), left.size(), MSG_NOSIGNAL);
    if (count > 0) {
      left.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno != EINTR) {
      return;
    }
  }
}

bool LinuxFilmParent::ask(std::string_view line) {
  tell(line);
  std::string reply;
  while (!reply.ends_with('\n')) {
    char letter = 0;
    const ssize_t count = ::recv(socket_.number(), &letter, 1, 0);
    if (count > 0) {
      reply += letter;
    } else if (count == 0 || errno != EINTR) {
      return false;
    }
  }
  return reply == "go\n";
}

}  // namespace zelvo::platform::linux_
