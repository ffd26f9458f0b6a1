#include "platform/qt/chooser/folder_listing.h"

#include <QCollator>
#include <QFile>
#include <algorithm>
#include <utility>

namespace zelvo::platform::qt {

QString shownPath(const std::string& path) { return QFile::decodeName(QByteArray::fromStdString(path)); }

void sortByName(std::vector<FolderEntry>& entries) {
  QCollator order;
  order.setNumericMode(true);
  order.setCaseSensitivity(Qt::CaseInsensitive);
  struct Keyed {
    QCollatorSortKey key;
    FolderEntry* entry;
  };
  std::vector<Keyed> places;
  places.reserve(entries.size());
  for (FolderEntry& entry : entries) {
    places.push_back({order.sortKey(shownPath(entry.name)), &entry});
  }
  std::sort(places.begin(), places.end(), [](const Keyed& left, const Keyed& right) {
    if (left.entry->isFolder != right.entry->isFolder) return left.entry->isFolder;
    const int compared = left.key.compare(right.key);
    return compared != 0 ? compared < 0 : left.entry->name < right.entry->name;
  });
  std::vector<FolderEntry> sorted;
  sorted.reserve(entries.size());
  for (const Keyed& place : places) {
    sorted.push_back(std::move(*place.entry));
    sorted.back().nameOrder = sorted.size();
  }
  entries = std::move(sorted);
}

}  // namespace zelvo::platform::qt
