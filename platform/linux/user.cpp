#include "platform/linux/user.h"

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

namespace zelvo::platform::linux_ {

namespace {

/// The home directory in the system's list of users.
std::string listedHome() {
  passwd entry{};
  passwd* found = nullptr;
  std::array<char, 16384> room{};
  if (::getpwuid_r(::getuid(), &entry, room.data(), room.size(), &found) != 0 || found == nullptr) return {};
  return found->pw_dir;
}

/// Nothing where the variable is missing or no whole path.
std::string wholePath(const char* variable) {
  const char* const value = std::getenv(variable);
  return value != nullptr && *value == '/' ? value : std::string();
}

std::string withoutSlashAtEnd(std::string path) {
  while (path.size() > 1 && path.ends_with('/')) path.pop_back();
  return path;
}

std::string userFolder(const char* variable, const char* belowHome) {
  const std::string given = wholePath(variable);
  if (!given.empty()) return withoutSlashAtEnd(given);
  const std::string home = homeDirectory();
  return (home == "/" ? std::string() : home) + belowHome;
}

}  // namespace

std::string homeDirectory() {
  std::string home = wholePath("HOME");
  if (home.empty()) home = listedHome();
  return withoutSlashAtEnd(home.starts_with('/') ? home : "/");
}

std::string cacheFolder() { return userFolder("XDG_CACHE_HOME", "/.cache"); }

std::string configFolder() { return userFolder("XDG_CONFIG_HOME", "/.config"); }

bool standardErrorIsTerminal() { return ::isatty(STDERR_FILENO) == 1; }

}  // namespace zelvo::platform::linux_
