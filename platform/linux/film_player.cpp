#include "platform/linux/film_player.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <map>
#include <utility>
#include <vector>

#include "platform/linux/descriptor.h"
#include "platform/linux/player_findings.h"
#include "platform/linux/spawn.h"

namespace zelvo::platform::linux_ {

namespace {

using Clock = std::chrono::steady_clock;
constexpr std::size_t kPiece = std::size_t{1} << 16U;
/// How often the cancel mark is looked at.
constexpr std::chrono::milliseconds kLook{50};

/// How one player ended.
struct PlayerExit {
  bool isStarted = false;
  bool isCancelled = false;
  bool isHung = false;
  bool isLiar = false;  ///< it sent what no player sends
  int signal = 0;
  int code = 0;
};

/// One that was killed ends at once, unless it waits for a disk that does not answer. Then it is left behind, and ends
/// when it can.
int waitForEnd(pid_t process, bool isKilled) {
  constexpr int kMaxLooks = 200;
  constexpr int kPause = 5;  // milliseconds
  int status = 0;
  for (int look = 0; look < kMaxLooks || !isKilled; ++look) {
    const pid_t ended = ::waitpid(process, &status, isKilled ? WNOHANG : 0);
    if (ended > 0 || (ended < 0 && errno != EINTR)) return status;
    if (ended == 0) ::poll(nullptr, 0, kPause);
  }
  return SIGKILL;
}

/// How long a process has been computing; nothing when that cannot be told any more.
std::chrono::nanoseconds computed(pid_t process) {
  clockid_t clock = 0;
  timespec spent{};
  if (::clock_getcpuclockid(process, &clock) != 0 || ::clock_gettime(clock, &spent) != 0) return {};
  return std::chrono::seconds(spent.tv_sec) + std::chrono::nanoseconds(spent.tv_nsec);
}

/// Whether a player gives no sign of life for too long. One that does not compute waits for the disk, which may try a
/// bad sector for half a minute.
class Silence {
 public:
  Silence(pid_t process, std::chrono::milliseconds limit) : process_(process), limit_(limit) { heard(); }

  void heard() {
    since_ = Clock::now();
    hasLooked_ = false;
  }
  [[nodiscard]] bool isTooLong() {
    constexpr int kDiskMayTake = 12;
    const auto silent = Clock::now() - since_;
    if (silent >= kDiskMayTake * limit_) return true;
    if (silent < limit_ / 2) return false;
    if (!std::exchange(hasLooked_, true)) computedThen_ = computed(process_);
    return silent >= limit_ && computed(process_) - computedThen_ >= limit_ / 10;
  }

 private:
  const pid_t process_;
  const std::chrono::milliseconds limit_;
  Clock::time_point since_;
  bool hasLooked_ = false;
  std::chrono::nanoseconds computedThen_{};  ///< when half the limit was over
};

/// Starts a player and hands on what it says until it ends, or is ended.
PlayerExit runPlayer(const SpawnRequest& request, std::chrono::milliseconds limit, const CancelMark& cancel,
                     PlayerFindings& findings) {
  PlayerExit exit;
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return exit;
  const Descriptor from(ends[0]);
  Descriptor to(ends[1]);
  SpawnRequest whole = request;
  whole.output = to.number();
  const Spawned spawned = spawn(whole);
  static_cast<void>(to.close());
  if (spawned.error) return exit;
  exit.isStarted = true;
  std::vector<std::byte> bytes(kPiece);
  Silence silence(spawned.process, limit);
  for (;;) {
    exit.isCancelled = cancel.abandoned();
    exit.isHung = silence.isTooLong();
    if (exit.isCancelled || exit.isHung) break;
    pollfd wanted{from.number(), POLLIN, 0};
    const int ready = ::poll(&wanted, 1, static_cast<int>(kLook.count()));
    if (ready == 0 || (ready < 0 && errno == EINTR)) continue;
    const ssize_t count = ready < 0 ? -1 : ::read(from.number(), bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) break;
    silence.heard();
    exit.isLiar = !findings.read(std::span(bytes).first(static_cast<std::size_t>(count)));
    if (exit.isLiar) break;
  }
  // One that ended by itself is not changed by it.
  const bool isKilled = exit.isCancelled || exit.isHung || exit.isLiar;
  if (isKilled) ::kill(spawned.process, SIGKILL);
  const int status = waitForEnd(spawned.process, isKilled);
  exit.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
  exit.code = WIFEXITED(status) ? WEXITSTATUS(status) : 0;
  return exit;
}

/// All players of one film.
class Playing {
 public:
  Playing(const PlayChoices& choices, const std::function<void(const PlayEvent&)>& take)
      : choices_(choices), take_(take), seeks_(choices.seeks) {}

  [[nodiscard]] std::vector<std::string> arguments() const {
    return {std::to_string(choices_.threads), std::to_string(seeks_), std::to_string(first_), std::to_string(leftOut_),
            looksAhead_ ? "1" : "0"};
  }
  [[nodiscard]] PlayerFindings findings() {
    return PlayerFindings([this](const PlayEvent& event) { pass(event); }, first_);
  }

  /// Tells why a player ended too early. \return whether another is to be started for what is left
  [[nodiscard]] bool goesOn(const PlayerExit& exit, const PlayerFindings& findings) {
    PlayFault fault{.kind = PlayFaultKind::crashed, .signal = exit.isLiar ? 0 : exit.signal};
    if (exit.isHung || exit.signal == SIGXCPU) fault = {.kind = PlayFaultKind::hung};
    if (!exit.isHung && !exit.isLiar && exit.signal == 0 && exit.code != 0) fault.kind = PlayFaultKind::noMemory;
    if (findings.hasPacket()) {
      last_ = findings.lastPacket();
      looksAhead_ = looksAhead_ || findings.nextPacket() > first_;
    }
    fault.stream = last_.stream;
    fault.packet = last_.number;
    take_(fault);
    if (findings.seeks()) return false;
    if (!findings.hasPacket() && !looksAhead_) return false;
    if (!findings.hasPacket()) looksAhead_ = false;
    first_ = findings.nextPacket();
    if (findings.hasPacket() && ++failures_[last_.stream] >= LinuxFilmPlayer::kMaxFailures && last_.stream < 64)
      leftOut_ |= std::uint64_t{1} << last_.stream;
    return ++restarts_ <= LinuxFilmPlayer::kMaxRestarts;
  }

 private:
  /// The streams are told once.
  void pass(const PlayEvent& event) {
    if (const auto* stream = std::get_if<PlayedStream>(&event)) {
      if (stream->stream < told_) return;
      told_ = stream->stream + 1;
    }
    take_(event);
  }

  const PlayChoices& choices_;
  const std::function<void(const PlayEvent&)>& take_;
  unsigned seeks_;
  std::uint64_t first_ = 0;
  std::uint64_t leftOut_ = 0;
  bool looksAhead_ = true;
  std::uint32_t told_ = 0;
  unsigned restarts_ = 0;
  std::map<std::uint32_t, unsigned> failures_;  ///< by stream
  PlayedPacket last_;
};

}  // namespace

std::string LinuxFilmPlayer::programBeside(const std::string& runningProgram) {
  return runningProgram.substr(0, runningProgram.rfind('/') + 1) + "zelvo-avi-player";
}

PlayEnd LinuxFilmPlayer::play(const std::string& path, const PlayChoices& choices, const CancelMark& cancel,
                              const std::function<void(const PlayEvent&)>& take) {
  const Descriptor film(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
  if (!film.isOpen()) return PlayEnd::unreadable;
  Playing playing(choices, take);
  for (bool isFirst = true;; isFirst = false) {
    PlayerFindings findings = playing.findings();
    const SpawnRequest request{
        .program = program_, .arguments = playing.arguments(), .hasOwnSession = true, .input = film.number()};
    const PlayerExit exit = runPlayer(request, limit_, cancel, findings);
    if (exit.isCancelled) return PlayEnd::interrupted;
    if (isFirst) wasConfined_ = findings.isConfined();
    if (!exit.isStarted || !findings.isGreeted()) return isFirst ? PlayEnd::noPlayer : PlayEnd::played;
    if (findings.isEnded()) return findings.isNoFilm() && isFirst ? PlayEnd::noFilm : PlayEnd::played;
    if (!playing.goesOn(exit, findings)) return PlayEnd::played;
  }
}

}  // namespace zelvo::platform::linux_
