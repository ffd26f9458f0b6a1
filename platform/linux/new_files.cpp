#include "platform/linux/new_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "platform/linux/descriptor.h"
#include "platform/linux/files.h"
#include "platform/linux/locked_files.h"

namespace zelvo::platform::linux_ {

namespace {

/// For file systems that know neither the exclusive rename nor hard links (FAT over some drivers): the look and the
/// rename are two steps there, so a file that appears just in between is replaced.
std::error_code renameAfterLooking(const std::string& from, const std::string& to) {
  struct stat status {};
  if (::lstat(to.c_str(), &status) == 0) return std::make_error_code(std::errc::file_exists);
  return std::rename(from.c_str(), to.c_str()) == 0 ? std::error_code{} : lastError();
}

}  // namespace

Opened<WritableFile> LinuxNewFiles::createNewFile(const std::string& path) {
  int number = -1;
  do {
    number = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
  } while (number < 0 && errno == EINTR);
  if (number < 0) return {nullptr, lastError()};
  return {adoptForWriting(number), {}};
}

std::unique_ptr<FileLock> LinuxNewFiles::lockNewFile(const std::string& path) {
  return LinuxLockedFiles().lockFile(path);
}

std::error_code LinuxNewFiles::renameToNew(const std::string& from, const std::string& to) {
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return {};
  if (errno != EINVAL && errno != ENOSYS) return lastError();
  if (::link(from.c_str(), to.c_str()) != 0) {
    const std::error_code error = lastError();
    return error == std::errc::operation_not_permitted || error == std::errc::operation_not_supported
               ? renameAfterLooking(from, to)
               : error;
  }
  return ::unlink(from.c_str()) == 0 ? std::error_code{} : lastError();
}

std::error_code LinuxNewFiles::setPermissions(const std::string& path, std::uint32_t permissions) {
  return ::chmod(path.c_str(), permissions & 0777U) == 0 ? std::error_code{} : lastError();
}

std::error_code LinuxNewFiles::flushFolder(const std::string& folder) {
  const int number = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (number < 0) return errno == EACCES ? std::error_code{} : lastError();
  std::error_code error;
  while (::fsync(number) != 0) {
    if (errno == EINTR) continue;
    if (errno != EINVAL && errno != EROFS && errno != ENOSYS && errno != EOPNOTSUPP) error = lastError();
    break;
  }
  ::close(number);
  return error;
}

}  // namespace zelvo::platform::linux_
