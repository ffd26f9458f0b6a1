#include "platform/linux/folder_trees.h"

#include <dirent.h>
#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "platform/linux/descriptor.h"

namespace zelvo::platform::linux_ {

namespace fs = std::filesystem;

namespace {

/// What an entry is and which mount it belongs to; the file systems behind two mounts may be one.
struct Place {
  bool isFolder = false;
  std::uint64_t device = 0;
  std::uint64_t mount = 0;
  [[nodiscard]] bool isOnMountOf(const Place& other) const { return device == other.device && mount == other.mount; }
};

std::optional<Place> placeOf(int folder, const char* name, int flags) {
  struct statx status {};
  if (::statx(folder, name, flags | AT_NO_AUTOMOUNT, STATX_TYPE | STATX_MNT_ID, &status) != 0) return std::nullopt;
  Place place;
  place.isFolder = S_ISDIR(status.stx_mode);
  place.device = (std::uint64_t{status.stx_dev_major} << 32U) | status.stx_dev_minor;
  if ((status.stx_mask & STATX_MNT_ID) != 0) place.mount = status.stx_mnt_id;
  return place;
}

std::vector<std::string> entriesOf(int folder) {
  struct CloseListing {
    void operator()(DIR* open) const { ::closedir(open); }
  };
  std::vector<std::string> names;
  const int copy = ::fcntl(folder, F_DUPFD_CLOEXEC, 3);
  const std::unique_ptr<DIR, CloseListing> open(copy < 0 ? nullptr : ::fdopendir(copy));
  if (!open) {
    if (copy >= 0) ::close(copy);
    return names;
  }
  while (const dirent* entry = ::readdir(open.get())) {
    const std::string name = static_cast<const char*>(entry->d_name);
    if (name != "." && name != "..") names.push_back(name);
  }
  return names;
}

/// Removes the entry `name` of `folder`, which lies at `above`. Never follows a link: each step is made from a folder
/// that is open.
std::error_code removeEntry(int folder, const Place& above, const std::string& name) {
  const auto place = placeOf(folder, name.c_str(), AT_SYMLINK_NOFOLLOW);
  if (!place) return errno == ENOENT ? std::error_code{} : lastError();
  if (!place->isOnMountOf(above)) return std::make_error_code(std::errc::cross_device_link);
  if (!place->isFolder) return ::unlinkat(folder, name.c_str(), 0) == 0 ? std::error_code{} : lastError();

  std::error_code first;
  const auto note = [&first](std::error_code error) {
    if (!first) first = error;
  };
  {
    const Descriptor open(::openat(folder, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!open.isOpen()) return lastError();
    const auto opened = placeOf(open.number(), "", AT_EMPTY_PATH);
    if (!opened || !opened->isOnMountOf(above)) return std::make_error_code(std::errc::cross_device_link);
    for (const std::string& entry : entriesOf(open.number())) note(removeEntry(open.number(), *opened, entry));
  }
  if (::unlinkat(folder, name.c_str(), AT_REMOVEDIR) != 0) note(lastError());
  return first;
}

/// The folder that holds a path, and the path's name in it.
std::pair<std::string, std::string> split(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return {".", path};
  return {slash == 0 ? "/" : path.substr(0, slash), path.substr(slash + 1)};
}

bool isThere(const std::string& path) {
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0;
}

}  // namespace

std::error_code LinuxFolderTrees::copy(const std::string& from, const std::string& to) {
  const std::string name = split(to).second;
  if (name.empty() || name == "." || name == "..") return std::make_error_code(std::errc::invalid_argument);
  if (isThere(to)) return std::make_error_code(std::errc::file_exists);
  std::string beside = to + ".XXXXXX";
  if (::mkdtemp(beside.data()) == nullptr) return lastError();
  const std::string copied = beside + "/" + name;
  std::error_code error;
  fs::copy(from, copied, fs::copy_options::recursive | fs::copy_options::copy_symlinks, error);
  if (!error && std::rename(copied.c_str(), to.c_str()) != 0) error = lastError();
  const std::error_code leftover = remove(beside);
  return error ? error : leftover;
}

std::error_code LinuxFolderTrees::remove(const std::string& path) {
  const auto [parent, name] = split(path);
  if (name.empty() || name == "." || name == "..") return std::make_error_code(std::errc::invalid_argument);
  const Descriptor folder(::open(parent.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  if (!folder.isOpen()) return errno == ENOENT ? std::error_code{} : lastError();
  const auto place = placeOf(folder.number(), "", AT_EMPTY_PATH);
  return place ? removeEntry(folder.number(), *place, name) : lastError();
}

}  // namespace zelvo::platform::linux_
