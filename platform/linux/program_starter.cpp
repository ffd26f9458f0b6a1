#include "platform/linux/program_starter.h"

#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/linux/spawn.h"

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
  const Spawned spawned = spawn(
      {.program = program, .arguments = {argument}, .searchesPath = true, .hasOwnSession = true, .keepsFolder = true});
  if (spawned.error) return nullptr;
  return std::make_unique<Started>(spawned.process);
}

}  // namespace zelvo::platform::linux_
