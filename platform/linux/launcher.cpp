#include "platform/linux/launcher.h"

#include <fcntl.h>
#include <signal.h>
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
#include "platform/linux/spawn.h"
#include "platform/linux/trusted_path.h"

namespace zelvo::platform::linux_ {

namespace {

constexpr std::size_t kLargestInfoList = std::size_t{1024} * 1024;

/// With these a program could be made to run other code.
constexpr std::array<std::string_view, 3> kNeverHandedOn = {"LD_PRELOAD", "LD_LIBRARY_PATH", "QT_PLUGIN_PATH"};
/// With these a program may take the foreground.
constexpr std::array<std::string_view, 2> kActivation = {"XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"};

std::vector<std::string> environmentFor(std::uint32_t options) {
  std::vector<std::string> variables;
  for (char** variable = environ; *variable != nullptr; ++variable) {
    const std::string_view whole = *variable;
    const std::string_view name = whole.substr(0, whole.find('='));
    const auto isIn = [name](const auto& names) { return std::find(names.begin(), names.end(), name) != names.end(); };
    const bool staysBehind = (options & kLaunchWithoutActivation) != 0 && isIn(kActivation);
    if (!staysBehind && !isIn(kNeverHandedOn)) variables.emplace_back(*variable);
  }
  return variables;
}

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
  SpawnRequest request{.program = *executable, .hasOwnSession = true, .environment = environmentFor(options)};
  if (file) request.arguments.push_back(*file);
  const Spawned spawned = spawn(request);
  if (spawned.error) return false;
  waitInTheBackground(spawned.process);
  return true;
}

}  // namespace zelvo::platform::linux_
