/// What can be asked of and done to files and folders by their path. Sizes are in bytes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace zelvo::platform {

/// What a path names, looked at without following a symbolic link.
struct FileAttributes {
  enum class Kind { regularFile, folder, symbolicLink, other };
  Kind kind = Kind::other;
  std::uint64_t size = 0;         ///< for a link, the length of its target's name
  std::uint64_t device = 0;       ///< with `identity`: equal for two names of one file
  std::uint64_t identity = 0;     ///< the file system's number of the file (inode)
  std::uint32_t permissions = 0;  ///< read, write and execute bits of owner, group and others: 0 to 0777
  std::int64_t modified = 0;      ///< when its content was last changed: nanoseconds since 1970, UTC
};

/// Thread: any.
class FileManager {
 public:
  virtual ~FileManager() = default;

  /// Attributes of the path itself; nothing when it does not exist or cannot be looked at.
  [[nodiscard]] virtual std::optional<FileAttributes> attributes(const std::string& path) = 0;
  /// The same for what the path leads to, symbolic links followed.
  [[nodiscard]] virtual std::optional<FileAttributes> attributesFollowingLinks(const std::string& path) = 0;

  /// Bytes that this user may still write on the file system that holds `path`; nothing when it cannot be told.
  [[nodiscard]] virtual std::optional<std::uint64_t> freeSpace(const std::string& path) = 0;

  /// True when the path leads to something, symbolic links followed.
  [[nodiscard]] virtual bool exists(const std::string& path) = 0;

  /// Creates an empty file, or empties an existing one.
  [[nodiscard]] virtual std::error_code createFile(const std::string& path) = 0;
  /// Creates one folder; its parent must exist. A folder that is there already is no error.
  [[nodiscard]] virtual std::error_code createFolder(const std::string& path) = 0;
  /// Renames a file; one that bears the new name is replaced in the same step.
  [[nodiscard]] virtual std::error_code rename(const std::string& from, const std::string& to) = 0;
  /// Removes a file, a link (not its target) or a folder with all it holds. Nothing there is no error.
  [[nodiscard]] virtual std::error_code remove(const std::string& path) = 0;

  /// Names (not paths) of a folder's entries, sorted; empty when it cannot be read.
  [[nodiscard]] virtual std::vector<std::string> list(const std::string& folder) = 0;
  /// The same; nothing when the folder cannot be read.
  [[nodiscard]] virtual std::optional<std::vector<std::string>> listReadable(const std::string& folder) {
    return list(folder);
  }
  /// Target of a symbolic link as it is written; nothing when the path is no link.
  [[nodiscard]] virtual std::optional<std::string> linkTarget(const std::string& path) = 0;
  /// Whether this user may write the file or folder.
  [[nodiscard]] virtual bool isWritable(const std::string& path) = 0;
  /// Whether this user may remove the file or folder from its parent.
  [[nodiscard]] virtual bool isDeletable(const std::string& path) = 0;
};

}  // namespace zelvo::platform
