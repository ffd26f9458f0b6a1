#include "platform/linux/file_manager.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>

#include "platform/linux/descriptor.h"

namespace zelvo::platform::linux_ {

namespace fs = std::filesystem;

namespace {

FileAttributes attributesFrom(const struct stat& status) {
  FileAttributes attributes;
  if (S_ISREG(status.st_mode)) attributes.kind = FileAttributes::Kind::regularFile;
  if (S_ISDIR(status.st_mode)) attributes.kind = FileAttributes::Kind::folder;
  if (S_ISLNK(status.st_mode)) attributes.kind = FileAttributes::Kind::symbolicLink;
  attributes.size = static_cast<std::uint64_t>(status.st_size);
  attributes.device = status.st_dev;
  attributes.identity = status.st_ino;
  attributes.permissions = status.st_mode & 0777U;
  attributes.modified = std::int64_t{status.st_mtim.tv_sec} * 1'000'000'000 + status.st_mtim.tv_nsec;
  return attributes;
}

}  // namespace

std::optional<FileAttributes> LinuxFileManager::attributes(const std::string& path) {
  struct stat status {};
  if (::lstat(path.c_str(), &status) != 0) return std::nullopt;
  return attributesFrom(status);
}

std::optional<FileAttributes> LinuxFileManager::attributesFollowingLinks(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return std::nullopt;
  return attributesFrom(status);
}

std::optional<std::uint64_t> LinuxFileManager::freeSpace(const std::string& path) {
  struct statvfs status {};
  while (::statvfs(path.c_str(), &status) != 0) {
    if (errno != EINTR) return std::nullopt;
  }
  // f_bavail, not f_bfree: the blocks kept back for root are not this user's. Counted in f_frsize, not f_bsize.
  return static_cast<std::uint64_t>(status.f_bavail) * status.f_frsize;
}

bool LinuxFileManager::exists(const std::string& path) { return attributesFollowingLinks(path).has_value(); }

std::error_code LinuxFileManager::createFile(const std::string& path) {
  int number = -1;
  do {
    number = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOCTTY, 0666);
  } while (number < 0 && errno == EINTR);
  if (number < 0) return lastError();
  ::close(number);
  return {};
}

std::error_code LinuxFileManager::createFolder(const std::string& path) {
  if (::mkdir(path.c_str(), 0777) == 0) return {};
  const std::error_code error = lastError();
  const auto there = attributesFollowingLinks(path);
  return there && there->kind == FileAttributes::Kind::folder ? std::error_code{} : error;
}

std::error_code LinuxFileManager::rename(const std::string& from, const std::string& to) {
  return std::rename(from.c_str(), to.c_str()) == 0 ? std::error_code{} : lastError();
}

std::error_code LinuxFileManager::remove(const std::string& path) {
  std::error_code error;
  fs::remove_all(path, error);
  return error;
}

namespace {

/// What can be read of it, sorted; `error` tells why that is not all.
std::vector<std::string> entriesOf(const std::string& folder, std::error_code& error) {
  std::vector<std::string> names;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    names.push_back(entry->path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace

std::vector<std::string> LinuxFileManager::list(const std::string& folder) {
  std::error_code error;
  return entriesOf(folder, error);
}

std::optional<std::vector<std::string>> LinuxFileManager::listReadable(const std::string& folder) {
  std::error_code error;
  std::vector<std::string> names = entriesOf(folder, error);
  if (error) return std::nullopt;
  return names;
}

std::optional<std::string> LinuxFileManager::linkTarget(const std::string& path) {
  std::error_code error;
  const fs::path target = fs::read_symlink(path, error);
  if (error) return std::nullopt;
  return target.string();
}

bool LinuxFileManager::isWritable(const std::string& path) {
  return ::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0;
}

bool LinuxFileManager::isDeletable(const std::string& path) {
  struct stat status {};
  if (path == "/" || ::lstat(path.c_str(), &status) != 0) return false;
  fs::path entry = fs::path(path).lexically_normal();
  if (!entry.has_filename()) entry = entry.parent_path();  // written with a slash at its end
  const fs::path parent = entry.has_parent_path() ? entry.parent_path() : fs::path(".");
  struct stat above {};
  if (::stat(parent.c_str(), &above) != 0) return false;
  if (::faccessat(AT_FDCWD, parent.c_str(), W_OK | X_OK, AT_EACCESS) != 0) return false;
  // In a sticky folder only the owner of the entry or of the folder may remove it.
  const uid_t user = ::geteuid();
  return (above.st_mode & S_ISVTX) == 0 || user == 0 || user == status.st_uid || user == above.st_uid;
}

}  // namespace zelvo::platform::linux_
