#include "platform/linux/program_starter.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>

namespace zelvo::platform::linux_ {

namespace {

class Started final : public StartedProgram {
 public:
  explicit Started(pid_t process)
      : process_(process), descriptor_(static_cast<int>(::syscall(SYS_pidfd_open, process, 0))) {}
  ~Started() override {
    if (descriptor_ >= 0) ::close(descriptor_);
  }
  Started(const Started&) = delete;
  Started& operator=(const Started&) = delete;

  [[nodiscard]] int descriptor() const override { return descriptor_; }
  [[nodiscard]] bool hasFailed() override {
    int status = 0;
    return ::waitpid(process_, &status, WNOHANG) == process_ && WIFEXITED(status) && WEXITSTATUS(status) != 0;
  }

 private:
  const pid_t process_;
  const int descriptor_;
};

}  // namespace

std::unique_ptr<StartedProgram> LinuxProgramStarter::start(const std::string& program, const std::string& argument) {
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
  std::string given = argument;
  const std::array<char*, 3> arguments = {name.data(), given.data(), nullptr};
  pid_t process = 0;
  works = works && ::posix_spawnp(&process, program.c_str(), &actions, &attributes, arguments.data(), environ) == 0;
  ::posix_spawn_file_actions_destroy(&actions);
  ::posix_spawnattr_destroy(&attributes);
  if (!works) return nullptr;
  return std::make_unique<Started>(process);
}

}  // namespace zelvo::platform::linux_
