#include "platform/linux/path_probe_child.h"

#include <pthread.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstdlib>
#include <cstring>

namespace zelvo::platform::linux_ {

namespace {

constexpr unsigned kLifeInSeconds = 5;
constexpr std::size_t kStackSize = std::size_t{256} * 1024;
constexpr std::size_t kFirstPath = 2;  // after the program's name and the option

std::span<char* const> paths;
std::atomic<std::size_t> pathsLeft;

void report(const ProbeRecord& record) {
  // A parent that does not listen any more needs no answer.
  static_cast<void>(!::write(STDOUT_FILENO, &record, sizeof record));
  if (pathsLeft.fetch_sub(1) == 1) ::_exit(EXIT_SUCCESS);
}

int spaceAt(const char* path, struct statvfs& space) {
  while (::statvfs(path, &space) != 0) {
    if (errno != EINTR) return errno;
  }
  return 0;
}

/// A path that is not there yet will be made in this folder, which is asked too.
void lookAtFolderOf(const char* path) {
  std::array<char, PATH_MAX> folder{};
  const char* const name = std::strrchr(path, '/');
  const std::size_t length = name == nullptr ? 0 : static_cast<std::size_t>(name - path);
  if (length == 0 || length >= folder.size()) return;
  std::memcpy(folder.data(), path, length);
  struct statvfs space {};
  static_cast<void>(spaceAt(folder.data(), space));
}

void* lookAt(void* argument) {
  auto* const path = static_cast<char* const*>(argument);
  ProbeRecord record;
  record.place = static_cast<std::uint32_t>(path - paths.data());
  struct stat status {};
  struct statvfs space {};
  // Whoever asked will look at the path itself, at what it leads to, and at the space there.
  static_cast<void>(::lstat(*path, &status));
  static_cast<void>(::stat(*path, &status));
  record.error = spaceAt(*path, space);
  if (record.error == ENOENT) lookAtFolderOf(*path);
  if (record.error == 0) {
    // f_bavail, not f_bfree: the blocks kept back for root are not this user's. Counted in f_frsize, not f_bsize.
    record.free = static_cast<std::uint64_t>(space.f_bavail) * space.f_frsize;
    record.capacity = static_cast<std::uint64_t>(space.f_blocks) * space.f_frsize;
  }
  report(record);
  return nullptr;
}

}  // namespace

bool isProbeChild(std::span<char* const> arguments) {
  return arguments.size() >= kFirstPath && arguments[1] == kProbeOption;
}

void answerForPaths(std::span<char* const> arguments) {
  ::alarm(kLifeInSeconds);
  paths = arguments.subspan(kFirstPath);
  if (paths.empty()) ::_exit(EXIT_SUCCESS);
  pathsLeft = paths.size();
  pthread_attr_t attributes;
  ::pthread_attr_init(&attributes);
  ::pthread_attr_setstacksize(&attributes, kStackSize);
  ::pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
  for (std::size_t place = 0; place < paths.size(); ++place) {
    pthread_t thread{};
    auto* const path = const_cast<char**>(&paths[place]);  // NOLINT: the interface of threads takes no constant
    const int error = ::pthread_create(&thread, &attributes, &lookAt, path);
    if (error != 0) report({.place = static_cast<std::uint32_t>(place), .error = error});
  }
  for (;;) ::pause();
}

}  // namespace zelvo::platform::linux_
