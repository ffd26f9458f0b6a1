/// What a chooser of files asks of the system. Names and paths are bytes: one that is no text can be chosen like any
/// other. Sizes are in bytes.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <system_error>
#include <vector>

namespace zelvo::platform {

/// Which entries are of interest; folders always are.
struct FileFilter {
  bool files = true;
  std::vector<std::string> extensions;  ///< in any letter case; every file when empty
};

struct FolderEntry {
  std::string name;
  bool isFolder = false;
  std::uint64_t size = 0;     ///< of a file
  std::int64_t changed = 0;   ///< seconds since 1970
  std::size_t nameOrder = 0;  ///< place among the names in the order of the user's language, once they are sorted
};

struct FolderListing {
  std::string folder;
  std::error_code failure;  ///< why there are no entries
  std::vector<FolderEntry> entries;
};

/// What a path leads to, links followed.
enum class PathKind { nothing, noPermission, folder, ordinaryFile, other };

/// Every call may take long, or for ever, where the disk does not answer.
/// Thread: any.
class ChooserFiles {
 public:
  virtual ~ChooserFiles() = default;

  [[nodiscard]] virtual PathKind kindOf(const std::string& path) = 0;
  /// Whether this user may read the file.
  [[nodiscard]] virtual bool mayRead(const std::string& path) = 0;
  /// Whether this user may make entries in the folder.
  [[nodiscard]] virtual bool mayMakeEntriesIn(const std::string& folder) = 0;
  /// Makes one folder, with the permissions that this user's programs usually give.
  /// Failure: `file_exists` when something has that name.
  [[nodiscard]] virtual std::error_code makeFolder(const std::string& path) = 0;
  /// Reads a folder in no order, but for hidden entries and links that lead nowhere. Only what the filter lets through
  /// is looked at more closely. Ends early, with whatever it has, once `abandoned` is true.
  [[nodiscard]] virtual FolderListing read(const std::string& folder, const FileFilter& filter,
                                           const std::atomic<bool>& abandoned) = 0;
};

}  // namespace zelvo::platform
