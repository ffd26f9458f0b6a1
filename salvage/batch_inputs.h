/// Which films a batch works on: those that were named, and those found in folders that were.
/// Decision: collections, Folders are searched, links to folders are not followed
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/file_manager.h"
#include "platform/files.h"

namespace zelvo::salvage {

struct BatchFilm {
  std::string input;     ///< its path, as it was named or found
  std::string below;     ///< its path below the folder in which it was found; its path as it was named
  bool isFound = false;  ///< in a folder, rather than named itself
};

struct BatchSearch {
  bool entersFolders = false;               ///< else a folder is taken for a film that cannot be read
  bool anyName = false;                     ///< whatever begins as an AVI film does, not only names that end as one's
  std::optional<std::string> outputFolder;  ///< is not entered
};

struct BatchInputs {
  std::vector<BatchFilm> films;         ///< in the order of the names; what a folder holds is sorted by its bytes
  std::vector<std::string> unreadable;  ///< folders that could not be listed
  bool isTooMany = false;               ///< more films than a batch takes; the list is cut short
};

inline constexpr std::size_t kMaxBatchFilms = 1'000'000;

/// A film that is named or found twice is taken once. Folders and files whose names begin with a dot are looked at as
/// all others, but not what this program has not finished writing.
/// `goesOn` is asked now and then; false ends the search.
/// Thread: any.
[[nodiscard]] BatchInputs findFilms(const std::vector<std::string>& named, const BatchSearch& search,
                                    platform::FileManager& fileManager, platform::Files& files,
                                    const std::function<bool()>& goesOn);

/// Where a path lies, whatever way leads there: equal for two paths that name the same entry of one folder.
[[nodiscard]] std::string placeKey(const std::string& path, platform::FileManager& fileManager);

}  // namespace zelvo::salvage
