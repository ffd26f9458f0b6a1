#include "platform/qt/address_opener.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDeadlineTimer>
#include <QSocketNotifier>
#include <array>
#include <memory>
#include <utility>

namespace zelvo::platform::qt {

namespace {

/// A browser that runs within the program ends long after it was opened; its status says nothing then.
constexpr qint64 kSoonMilliseconds = 30000;

/// 0 when the program could not be started.
pid_t start(const std::string& program, const std::string& address) {
  posix_spawn_file_actions_t actions{};
  posix_spawnattr_t attributes{};
  sigset_t none;
  sigset_t all;
  ::sigemptyset(&none);
  ::sigfillset(&all);
  ::posix_spawnattr_init(&attributes);
  ::posix_spawn_file_actions_init(&actions);
  ::posix_spawnattr_setsigmask(&attributes, &none);
  ::posix_spawnattr_setsigdefault(&attributes, &all);
  bool works =
      ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF) == 0;
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    const int mode = stream == STDIN_FILENO ? O_RDONLY : O_WRONLY;
    works = works && ::posix_spawn_file_actions_addopen(&actions, stream, "/dev/null", mode, 0) == 0;
  }
  works = works && ::posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1) == 0;
  std::string name = program;
  std::string argument = address;
  const std::array<char*, 3> arguments = {name.data(), argument.data(), nullptr};
  pid_t process = 0;
  works = works && ::posix_spawnp(&process, program.c_str(), &actions, &attributes, arguments.data(), environ) == 0;
  ::posix_spawn_file_actions_destroy(&actions);
  ::posix_spawnattr_destroy(&attributes);
  return works ? process : 0;
}

/// True when the program has ended and says that it opened nothing.
bool saysNo(pid_t process) {
  int status = 0;
  return ::waitpid(process, &status, WNOHANG) == process && WIFEXITED(status) && WEXITSTATUS(status) != 0;
}

}  // namespace

bool AddressOpener::open(const std::string& address, std::function<void()> failed) {
  const pid_t process = start(program_, address);
  if (process == 0) return false;
  watch(process, std::move(failed));
  return true;
}

void AddressOpener::watch(int process, std::function<void()> failed) {
  const auto descriptor = static_cast<int>(::syscall(SYS_pidfd_open, process, 0));
  if (descriptor < 0) return;  // without one nothing is learned of its end
  auto* const end = new QSocketNotifier(descriptor, QSocketNotifier::Read, this);
  const auto close = std::shared_ptr<void>(nullptr, [descriptor](void*) { ::close(descriptor); });
  connect(end, &QSocketNotifier::activated, this,
          [end, process, close, told = std::move(failed), soon = QDeadlineTimer(kSoonMilliseconds)] {
            end->setEnabled(false);
            end->deleteLater();
            if (saysNo(process) && !soon.hasExpired() && told) told();
          });
}

}  // namespace zelvo::platform::qt
