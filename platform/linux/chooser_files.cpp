#include "platform/linux/chooser_files.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <optional>
#include <utility>

#include "platform/panels.h"

namespace zelvo::platform::linux_ {

namespace {

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};

/// Follows links; nothing for what is neither wanted nor there.
std::optional<FolderEntry> wantedEntry(int folder, const dirent& found, const FileFilter& filter) {
  FolderEntry entry;
  entry.name = static_cast<const char*>(found.d_name);
  const bool isNamedSo = filter.files && hasAllowedFileType(entry.name, filter.extensions);
  if (found.d_type == DT_REG && !isNamedSo) return std::nullopt;
  struct stat status {};
  if (::fstatat(folder, entry.name.c_str(), &status, 0) != 0) return std::nullopt;
  entry.isFolder = S_ISDIR(status.st_mode);
  if (!entry.isFolder && (!isNamedSo || !S_ISREG(status.st_mode))) return std::nullopt;
  entry.size = static_cast<std::uint64_t>(status.st_size);
  entry.changed = status.st_mtime;
  return entry;
}

bool may(const std::string& path, int access) { return ::faccessat(AT_FDCWD, path.c_str(), access, AT_EACCESS) == 0; }

}  // namespace

PathKind LinuxChooserFiles::kindOf(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return errno == EACCES ? PathKind::noPermission : PathKind::nothing;
  if (S_ISDIR(status.st_mode)) return PathKind::folder;
  return S_ISREG(status.st_mode) ? PathKind::ordinaryFile : PathKind::other;
}

bool LinuxChooserFiles::mayRead(const std::string& path) { return may(path, R_OK); }

bool LinuxChooserFiles::mayMakeEntriesIn(const std::string& folder) { return may(folder, W_OK | X_OK); }

std::error_code LinuxChooserFiles::makeFolder(const std::string& path) {
  constexpr mode_t kAsTheUserAllows = 0777;
  if (::mkdir(path.c_str(), kAsTheUserAllows) == 0) return {};
  return {errno, std::generic_category()};
}

FolderListing LinuxChooserFiles::read(const std::string& folder, const FileFilter& filter,
                                      const std::atomic<bool>& abandoned) {
  FolderListing listing;
  listing.folder = folder;
  const std::unique_ptr<DIR, CloseFolder> open(::opendir(folder.c_str()));
  if (!open) {
    listing.failure = std::error_code(errno, std::generic_category());
    return listing;
  }
  const int descriptor = ::dirfd(open.get());
  errno = 0;
  while (const dirent* const found = ::readdir(open.get())) {
    if (abandoned) return listing;
    if (found->d_name[0] != '.') {
      if (auto entry = wantedEntry(descriptor, *found, filter)) listing.entries.push_back(std::move(*entry));
    }
    errno = 0;
  }
  // What was read before a failing disk gave up can still be chosen.
  if (errno != 0 && listing.entries.empty()) listing.failure = std::error_code(errno, std::generic_category());
  return listing;
}

}  // namespace zelvo::platform::linux_
