/// Files that come into being under a name which nothing bears yet. Never replaces anything.
#pragma once

#include <string>
#include <system_error>

namespace zelvo::platform {

/// Thread: any.
class NewFiles {
 public:
  virtual ~NewFiles() = default;

  /// Creates an empty file. Failure: std::errc::file_exists when the path names anything, a dangling link included.
  [[nodiscard]] virtual std::error_code createNewFile(const std::string& path) = 0;

  /// Renames a file within its file system. Failure: std::errc::file_exists when `to` names anything; `from` stays.
  [[nodiscard]] virtual std::error_code renameToNew(const std::string& from, const std::string& to) = 0;
};

}  // namespace zelvo::platform
