/// Files that come into being under a name which nothing bears yet. Never replaces anything.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <system_error>

#include "platform/files.h"
#include "platform/locked_files.h"

namespace zelvo::platform {

/// Thread: any.
class NewFiles {
 public:
  virtual ~NewFiles() = default;

  /// Creates an empty file with the permissions that the user gives new files, and leaves it open.
  /// Failure: std::errc::file_exists when the path names anything, a dangling link included.
  [[nodiscard]] virtual Opened<WritableFile> createNewFile(const std::string& path) = 0;

  /// Locks a file that was just created, so that it is known to have a writer for as long as the lock is held. Null
  /// where the file system knows no locks, and where the file is gone or somebody else has locked it.
  [[nodiscard]] virtual std::unique_ptr<FileLock> lockNewFile(const std::string& /*path*/) { return nullptr; }

  /// Renames a file within its file system. Failure: std::errc::file_exists when `to` names anything; `from` stays.
  [[nodiscard]] virtual std::error_code renameToNew(const std::string& from, const std::string& to) = 0;

  /// Gives a file of this user these permissions, 0 to 0777. Failure: the file keeps those it has, as on file systems
  /// that know none.
  [[nodiscard]] virtual std::error_code setPermissions(const std::string& path, std::uint32_t permissions) = 0;

  /// Waits until the names in a folder lie on the medium. A folder that this user may not open, and a file system that
  /// cannot do it, is no failure.
  [[nodiscard]] virtual std::error_code flushFolder(const std::string& folder) = 0;
};

}  // namespace zelvo::platform
