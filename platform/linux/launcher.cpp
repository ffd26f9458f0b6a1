#include "platform/linux/launcher.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>
#include <system_error>
#include <thread>
#include <vector>

#include "platform/bytes.h"
#include "platform/linux/files.h"
#include "platform/linux/trusted_path.h"

namespace zelvo::platform::linux_ {

namespace {

constexpr std::size_t kLargestInfoList = std::size_t{1024} * 1024;

/// With these a program could be made to run other code.
constexpr std::array<std::string_view, 3> kNeverHandedOn = {"LD_PRELOAD", "LD_LIBRARY_PATH", "QT_PLUGIN_PATH"};
/// With these a program may take the foreground.
constexpr std::array<std::string_view, 2> kActivation = {"XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"};

std::vector<char*> environmentFor(std::uint32_t options) {
  std::vector<char*> variables;
  for (char** variable = environ; *variable != nullptr; ++variable) {
    const std::string_view whole = *variable;
    const std::string_view name = whole.substr(0, whole.find('='));
    const auto isIn = [name](const auto& names) { return std::find(names.begin(), names.end(), name) != names.end(); };
    const bool staysBehind = (options & kLaunchWithoutActivation) != 0 && isIn(kActivation);
    if (!staysBehind && !isIn(kNeverHandedOn)) variables.push_back(*variable);
  }
  variables.push_back(nullptr);
  return variables;
}

/// What becomes of the descriptors, signals and the session in the new process.
class SpawnSettings {
 public:
  SpawnSettings() {
    sigset_t none;
    sigset_t all;
    ::sigemptyset(&none);
    ::sigfillset(&all);
    ::posix_spawnattr_init(&attributes_);
    ::posix_spawnattr_setsigmask(&attributes_, &none);
    ::posix_spawnattr_setsigdefault(&attributes_, &all);
    works_ = ::posix_spawnattr_setflags(&attributes_,
                                        POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF) == 0;
    ::posix_spawn_file_actions_init(&actions_);
    works_ = works_ && ::posix_spawn_file_actions_addchdir_np(&actions_, "/") == 0;
    for (int stream = 0; stream < 3; ++stream) {
      const int mode = stream == 0 ? O_RDONLY : O_WRONLY;
      works_ = works_ && ::posix_spawn_file_actions_addopen(&actions_, stream, "/dev/null", mode, 0) == 0;
    }
    works_ = works_ && ::posix_spawn_file_actions_addclosefrom_np(&actions_, 3) == 0;
  }
  SpawnSettings(const SpawnSettings&) = delete;
  SpawnSettings& operator=(const SpawnSettings&) = delete;
  ~SpawnSettings() {
    ::posix_spawn_file_actions_destroy(&actions_);
    ::posix_spawnattr_destroy(&attributes_);
  }

  [[nodiscard]] std::optional<pid_t> spawn(std::string program, std::uint32_t options,
                                           std::optional<std::string> file) const {
    std::array<char*, 3> arguments = {program.data(), file ? file->data() : nullptr, nullptr};
    const std::vector<char*> environment = environmentFor(options);
    pid_t process = 0;
    if (!works_ ||
        ::posix_spawn(&process, program.c_str(), &actions_, &attributes_, arguments.data(), environment.data()) != 0) {
      return std::nullopt;
    }
    return process;
  }

 private:
  posix_spawnattr_t attributes_{};
  posix_spawn_file_actions_t actions_{};
  bool works_ = false;
};

void waitFor(pid_t process) {
  while (::waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
  }
}

/// Takes note of the process's end, so that nothing of it stays in the system's table. The thread is nobody's: it ends
/// with the process, which may outlive this one. // Decision: update, Launched applications stand alone
void waitInTheBackground(pid_t process) {
  sigset_t all;
  sigset_t before;
  ::sigfillset(&all);
  ::pthread_sigmask(SIG_BLOCK, &all, &before);
  try {
    std::thread(&waitFor, process).detach();
  } catch (const std::system_error&) {
    // Without a thread its entry stays until this process ends, which harms nobody.
  }
  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

bool isFolder(const std::string& path) {
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool isExecutableFile(const std::string& path) {
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
         ::faccessat(AT_FDCWD, path.c_str(), X_OK, AT_EACCESS) == 0;
}

/// The name of the program that the list names; it lies beside others, never elsewhere.
std::optional<std::string> executableNamed(PropertyLists& lists, const std::string& listPath) {
  const auto opened = LinuxFiles().openForReading(listPath);
  if (!opened.file || opened.file->size() > kLargestInfoList) return std::nullopt;
  Bytes bytes(static_cast<std::size_t>(opened.file->size()));
  if (opened.file->readAt(0, bytes).count != bytes.size()) return std::nullopt;
  const auto list = lists.parse(bytes, kLargestInfoList);
  const std::string* name = list && list->dictionary() ? list->dictionary()->text("CFBundleExecutable") : nullptr;
  if (name == nullptr || name->empty() || *name == "." || *name == "..") return std::nullopt;
  if (name->find_first_of(std::string_view("/\0", 2)) != std::string::npos) return std::nullopt;
  return *name;
}

}  // namespace

const OwnerCheck LinuxLauncher::kBuiltIn = ZELVO_CHECK_LAUNCH_OWNERS ? OwnerCheck::on : OwnerCheck::off;

LinuxLauncher::LinuxLauncher(PropertyLists& lists, std::string prefix, OwnerCheck ownerCheck)
    : lists_(lists), prefix_(std::move(prefix)), ownerCheck_(ownerCheck) {}

std::optional<std::string> LinuxLauncher::checked(const std::string& path) const {
  return ownerCheck_ == OwnerCheck::on ? trustedPath(path, prefix_) : realPath(path);
}

std::optional<std::string> LinuxLauncher::program(const std::string& path) {
  const auto target = checked(path);
  if (!target || !isFolder(*target)) return target;
  const auto list = checked(*target + "/Contents/Info.plist");
  const auto name = list ? executableNamed(lists_, *list) : std::nullopt;
  return name ? checked(*target + "/Contents/MacOS/" + *name) : std::nullopt;
}

bool LinuxLauncher::launchApplication(const std::string& path, std::uint32_t options) {
  return start(path, options, std::nullopt);
}

bool LinuxLauncher::openFile(const std::string& file, const std::string& application) {
  return start(application, 0, file);
}

bool LinuxLauncher::start(const std::string& path, std::uint32_t options, const std::optional<std::string>& file) {
  const auto executable = program(path);
  if (!executable || !isExecutableFile(*executable)) return false;
  const auto process = SpawnSettings().spawn(*executable, options, file);
  if (!process) return false;
  waitInTheBackground(*process);
  return true;
}

}  // namespace zelvo::platform::linux_
