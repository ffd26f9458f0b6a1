#include "salvage/batch_inputs.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <unordered_set>
#include <utility>

#include "avi/name_endings.h"
#include "platform/hidden_names.h"
#include "platform/paths.h"
#include "platform/same_file.h"

namespace zelvo::salvage {

namespace {

using Kind = platform::FileAttributes::Kind;

/// No file system keeps a path that is longer.
constexpr std::size_t kMaxPath = 4096;

bool hasFilmEnding(std::string_view name) {
  const std::size_t dot = name.rfind('.');
  if (dot == 0 || dot == std::string_view::npos) return false;
  const std::string_view ending = name.substr(dot + 1);
  return std::ranges::any_of(avi::kNameEndings, [&](std::string_view one) {
    return std::ranges::equal(ending, one, [](char here, char small) {
      return (here >= 'A' && here <= 'Z' ? static_cast<char>(here - 'A' + 'a') : here) == small;
    });
  });
}

bool beginsAsFilm(const std::string& path, platform::Files& files) {
  const auto opened = files.openForReading(path);
  std::array<std::byte, 12> front{};
  if (!opened.file || opened.file->readAt(0, front).count < front.size()) return false;
  return std::memcmp(front.data(), "RIFF", 4) == 0 && std::memcmp(front.data() + 8, "AVI ", 4) == 0;
}

class Search {
 public:
  Search(const BatchSearch& search, platform::FileManager& fileManager, platform::Files& files,
         const std::function<bool()>& goesOn)
      : search_(search), fileManager_(fileManager), files_(files), goesOn_(goesOn) {
    if (search.outputFolder) output_ = fileManager.attributesFollowingLinks(*search.outputFolder);
  }

  void add(const std::string& path) {
    if (search_.entersFolders) {
      const auto there = fileManager_.attributesFollowingLinks(path);
      if (there && there->kind == Kind::folder) {
        enter(path);
        return;
      }
    }
    take({path, path, false});
  }

  BatchInputs result;

 private:
  struct Folder {
    std::string path;
    std::string below;
  };

  bool isFull() {
    if (result.films.size() < kMaxBatchFilms) return false;
    result.isTooMany = true;
    return true;
  }

  void take(BatchFilm film) {
    if (!isFull() && taken_.insert(placeKey(film.input, fileManager_)).second) result.films.push_back(std::move(film));
  }

  /// Folders are kept in a list of their own, so no depth of theirs can overrun anything.
  void enter(const std::string& top) {
    std::vector<Folder> waiting{{top, ""}};
    while (!waiting.empty() && !result.isTooMany && goesOn_()) {
      const Folder folder = std::move(waiting.back());
      waiting.pop_back();
      const auto names = fileManager_.listReadable(folder.path);
      if (!names) {
        result.unreadable.push_back(folder.path);
        continue;
      }
      std::vector<Folder> inside;
      for (const std::string& name : *names) {
        if (platform::isHiddenName(name)) continue;
        const Folder entry{platform::pathIn(folder.path, name),
                           folder.below.empty() ? name : folder.below + "/" + name};
        const auto itself = fileManager_.attributes(entry.path);
        if (itself && itself->kind == Kind::folder) {
          if (entry.path.size() >= kMaxPath) {
            result.unreadable.push_back(entry.path);
          } else if (!platform::areOneFile(itself, output_)) {
            inside.push_back(entry);
          }
        } else if (itself && isFilm(entry.path, name, *itself)) {
          take({entry.path, entry.below, true});
        }
      }
      waiting.insert(waiting.end(), inside.rbegin(), inside.rend());
    }
  }

  bool isFilm(const std::string& path, const std::string& name, const platform::FileAttributes& itself) {
    if (!search_.anyName && !hasFilmEnding(name)) return false;
    auto kind = itself.kind;
    if (kind == Kind::symbolicLink) {
      const auto there = fileManager_.attributesFollowingLinks(path);
      if (!there) return false;
      kind = there->kind;
    }
    return kind == Kind::regularFile && (!search_.anyName || hasFilmEnding(name) || beginsAsFilm(path, files_));
  }

  const BatchSearch& search_;
  platform::FileManager& fileManager_;
  platform::Files& files_;
  const std::function<bool()>& goesOn_;
  std::optional<platform::FileAttributes> output_;
  std::unordered_set<std::string> taken_;
};

}  // namespace

std::string placeKey(const std::string& path, platform::FileManager& fileManager) {
  const auto folder = fileManager.attributesFollowingLinks(platform::folderOf(path));
  if (!folder) return path;
  return std::to_string(folder->device) + ":" + std::to_string(folder->identity) + "/" + platform::nameOf(path);
}

BatchInputs findFilms(const std::vector<std::string>& named, const BatchSearch& search,
                      platform::FileManager& fileManager, platform::Files& files, const std::function<bool()>& goesOn) {
  Search all(search, fileManager, files, goesOn);
  for (const std::string& path : named) {
    if (all.result.isTooMany || !goesOn()) break;
    all.add(path);
  }
  return std::move(all.result);
}

}  // namespace zelvo::salvage
