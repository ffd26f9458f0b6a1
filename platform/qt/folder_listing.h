/// What a chooser shows of a folder. Names are bytes: one that is no text can be chosen like any other.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <system_error>
#include <vector>

namespace zelvo::platform::qt {

/// Which entries are of interest; folders always are.
struct FileFilter {
  bool files = true;
  std::vector<std::string> extensions;  ///< in any letter case; every file when empty
};

struct FolderEntry {
  std::string name;
  bool isFolder = false;
  std::uint64_t size = 0;     ///< bytes; of a file
  std::int64_t changed = 0;   ///< seconds since 1970
  std::size_t nameOrder = 0;  ///< place among the names in the order of the user's language
};

struct FolderListing {
  std::string folder;
  std::error_code failure;           ///< why there are no entries
  std::vector<FolderEntry> entries;  ///< folders first, each kind in the order of its names
};

/// Reads a folder, but for hidden entries and links that lead nowhere. Only what the filter lets through is looked at
/// more closely. Ends early, with whatever it has, once `abandoned` is true.
/// Thread: any; may take long, or for ever, where the folder's disk does not answer.
[[nodiscard]] FolderListing readFolder(const std::string& folder, const FileFilter& filter,
                                       const std::atomic<bool>& abandoned);

/// The path of `name` in `folder`.
[[nodiscard]] std::string pathIn(const std::string& folder, const std::string& name);
/// The folder that holds `path`, by its text; "/" of itself.
[[nodiscard]] std::string folderOf(const std::string& path);
/// The last part of `path`, by its text.
[[nodiscard]] std::string nameOf(const std::string& path);

}  // namespace zelvo::platform::qt
