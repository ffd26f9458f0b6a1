/// The entries of a folder as rows: folders first, then files, by name, size or date.
/// Thread: main.
#pragma once

#include <QAbstractTableModel>
#include <QDateTime>
#include <QIcon>
#include <vector>

#include "platform/chooser_files.h"

namespace zelvo::platform::qt {

class FolderModel final : public QAbstractTableModel {
 public:
  enum Column { name, size, changed };

  /// The two icons are drawn for every entry of their kind.
  FolderModel(const QIcon& folder, const QIcon& file, QObject* parent);

  void setEntries(std::vector<FolderEntry> entries);
  [[nodiscard]] const std::vector<FolderEntry>& entries() const { return entries_; }
  /// Null when the index is of no row.
  [[nodiscard]] const FolderEntry* entry(const QModelIndex& index) const;
  /// As it is shown.
  [[nodiscard]] static QString nameOf(const FolderEntry& entry);
  [[nodiscard]] static QString shownDate(const QDateTime& time);

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  void sort(int column, Qt::SortOrder order) override;

 private:
  void sortEntries();

  QIcon folderIcon_;
  QIcon fileIcon_;
  int sortColumn_ = name;
  Qt::SortOrder sortOrder_ = Qt::AscendingOrder;
  std::vector<FolderEntry> entries_;
};

}  // namespace zelvo::platform::qt
