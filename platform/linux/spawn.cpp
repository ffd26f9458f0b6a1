#include "platform/linux/spawn.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <unistd.h>

#include <cerrno>

namespace zelvo::platform::linux_ {

namespace {

/// What becomes of the descriptors, signals, session and folder in the new process.
class Settings {
 public:
  explicit Settings(const SpawnRequest& request) {
    sigset_t none;
    sigset_t all;
    ::sigemptyset(&none);
    ::sigfillset(&all);
    ::posix_spawnattr_init(&attributes_);
    ::posix_spawn_file_actions_init(&actions_);
    note(::posix_spawnattr_setsigmask(&attributes_, &none));
    note(::posix_spawnattr_setsigdefault(&attributes_, &all));
    const int session = request.hasOwnSession ? POSIX_SPAWN_SETSID : 0;
    note(::posix_spawnattr_setflags(&attributes_,
                                    static_cast<short>(session | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF)));
    give(STDIN_FILENO, request.input);
    give(STDOUT_FILENO, request.output);
    give(STDERR_FILENO, request.error);
    int next = STDERR_FILENO;
    for (const int other : request.others) give(++next, other);
    if (!request.keepsFolder) note(::posix_spawn_file_actions_addchdir_np(&actions_, "/"));
    note(::posix_spawn_file_actions_addclosefrom_np(&actions_, next + 1));
  }
  Settings(const Settings&) = delete;
  Settings& operator=(const Settings&) = delete;
  ~Settings() {
    ::posix_spawn_file_actions_destroy(&actions_);
    ::posix_spawnattr_destroy(&attributes_);
  }

  /// What kept the settings from being made; 0 when nothing did.
  [[nodiscard]] int error() const { return error_; }
  [[nodiscard]] const posix_spawnattr_t* attributes() const { return &attributes_; }
  [[nodiscard]] const posix_spawn_file_actions_t* actions() const { return &actions_; }

 private:
  /// Without a descriptor the stream leads nowhere.
  void give(int stream, std::optional<int> descriptor) {
    if (descriptor) {
      note(::posix_spawn_file_actions_adddup2(&actions_, *descriptor, stream));
    } else {
      const int mode = stream == STDIN_FILENO ? O_RDONLY : O_WRONLY;
      note(::posix_spawn_file_actions_addopen(&actions_, stream, "/dev/null", mode, 0));
    }
  }
  void note(int error) {
    if (error_ == 0) error_ = error;
  }

  posix_spawnattr_t attributes_{};
  posix_spawn_file_actions_t actions_{};
  int error_ = 0;
};

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

}  // namespace

Spawned spawn(const SpawnRequest& request) {
  std::vector<std::string> texts = {request.program};
  texts.insert(texts.end(), request.arguments.begin(), request.arguments.end());
  std::vector<std::string> variables = request.environment.value_or(std::vector<std::string>());
  const std::vector<char*> arguments = pointersTo(texts);
  const std::vector<char*> given = pointersTo(variables);
  char* const* const environment = request.environment ? given.data() : environ;
  const Settings settings(request);
  Spawned spawned;
  int error = settings.error();
  if (error == 0) {
    const auto start = request.searchesPath ? &::posix_spawnp : &::posix_spawn;
    error = start(&spawned.process, request.program.c_str(), settings.actions(), settings.attributes(),
                  arguments.data(), environment);
  }
  if (error != 0) spawned = {.process = 0, .error = {error, std::generic_category()}};
  return spawned;
}

}  // namespace zelvo::platform::linux_
