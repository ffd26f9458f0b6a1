#include "platform/qt/folder_listing.h"

#include <dirent.h>
#include <sys/stat.h>

#include <QCollator>
#include <QFile>
#include <algorithm>
#include <cerrno>
#include <memory>
#include <optional>

#include "platform/panels.h"

namespace zelvo::platform::qt {

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

void sortByName(std::vector<FolderEntry>& entries) {
  QCollator order;
  order.setNumericMode(true);
  order.setCaseSensitivity(Qt::CaseInsensitive);
  struct Place {
    QCollatorSortKey key;
    FolderEntry* entry;
  };
  std::vector<Place> places;
  places.reserve(entries.size());
  for (FolderEntry& entry : entries) {
    places.push_back({order.sortKey(QFile::decodeName(QByteArray::fromStdString(entry.name))), &entry});
  }
  std::sort(places.begin(), places.end(), [](const Place& left, const Place& right) {
    if (left.entry->isFolder != right.entry->isFolder) return left.entry->isFolder;
    const int compared = left.key.compare(right.key);
    return compared != 0 ? compared < 0 : left.entry->name < right.entry->name;
  });
  std::vector<FolderEntry> sorted;
  sorted.reserve(entries.size());
  for (const Place& place : places) {
    sorted.push_back(std::move(*place.entry));
    sorted.back().nameOrder = sorted.size();
  }
  entries = std::move(sorted);
}

}  // namespace

FolderListing readFolder(const std::string& folder, const FileFilter& filter, const std::atomic<bool>& abandoned) {
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
  sortByName(listing.entries);
  return listing;
}

std::string pathIn(const std::string& folder, const std::string& name) {
  return folder.ends_with('/') ? folder + name : folder + "/" + name;
}

std::string folderOf(const std::string& path) {
  const std::size_t end = path.find_last_not_of('/');
  if (end == std::string::npos) return "/";
  const std::size_t slash = path.rfind('/', end);
  if (slash == std::string::npos) return ".";
  const std::size_t last = path.find_last_not_of('/', slash);
  return last == std::string::npos ? "/" : path.substr(0, last + 1);
}

std::string nameOf(const std::string& path) {
  const std::size_t end = path.find_last_not_of('/');
  if (end == std::string::npos) return {};
  const std::size_t slash = path.rfind('/', end);
  return path.substr(slash == std::string::npos ? 0 : slash + 1,
                     end - (slash == std::string::npos ? 0 : slash + 1) + 1);
}

}  // namespace zelvo::platform::qt
