#include "platform/qt/chooser/folder_model.h"

#include <QFile>
#include <QLocale>
#include <algorithm>
#include <utility>

#include "platform/qt/texts.h"

namespace zelvo::platform::qt {

namespace {

QString printable(const FolderEntry& entry, int column) {
  if (column == FolderModel::name) return FolderModel::nameOf(entry);
  if (column == FolderModel::changed) return FolderModel::shownDate(QDateTime::fromSecsSinceEpoch(entry.changed));
  if (entry.isFolder) return {};
  return QLocale().formattedDataSize(static_cast<qint64>(entry.size), 1, QLocale::DataSizeSIFormat);
}

/// Negative, 0 or positive; only within one kind.
int compared(const FolderEntry& left, const FolderEntry& right, int column) {
  const auto order = [](const auto& a, const auto& b) { return a < b ? -1 : static_cast<int>(b < a); };
  if (column == FolderModel::size && left.size != right.size && !left.isFolder) return order(left.size, right.size);
  if (column == FolderModel::changed && left.changed != right.changed) return order(left.changed, right.changed);
  return order(left.nameOrder, right.nameOrder);
}

}  // namespace

FolderModel::FolderModel(const QIcon& folder, const QIcon& file, QObject* parent)
    : QAbstractTableModel(parent), folderIcon_(folder), fileIcon_(file) {}

QString FolderModel::nameOf(const FolderEntry& entry) {
  return QFile::decodeName(QByteArray::fromStdString(entry.name));
}

QString FolderModel::shownDate(const QDateTime& time) {
  return QLocale().toString(time.date(), QLocale::ShortFormat) + QStringLiteral("  ") +
         time.time().toString(QStringLiteral("HH:mm"));
}

void FolderModel::setEntries(std::vector<FolderEntry> entries) {
  beginResetModel();
  entries_ = std::move(entries);
  sortEntries();
  endResetModel();
}

const FolderEntry* FolderModel::entry(const QModelIndex& index) const {
  const auto row = static_cast<std::size_t>(index.row());
  return index.isValid() && row < entries_.size() ? &entries_[row] : nullptr;
}

int FolderModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(entries_.size());
}

int FolderModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : changed + 1; }

QVariant FolderModel::data(const QModelIndex& index, int role) const {
  const FolderEntry* const one = entry(index);
  if (one == nullptr) return {};
  switch (role) {
    case Qt::DisplayRole:
      return printable(*one, index.column());
    case Qt::ToolTipRole:
      return index.column() == name ? nameOf(*one).toHtmlEscaped() : QVariant();
    case Qt::AccessibleTextRole:
      return index.column() == name && one->isFolder ? texts::asFolder(nameOf(*one)) : printable(*one, index.column());
    case Qt::DecorationRole:
      if (index.column() != name) return {};
      return one->isFolder ? folderIcon_ : fileIcon_;
    case Qt::TextAlignmentRole:
      return QVariant::fromValue(Qt::AlignVCenter | (index.column() == name ? Qt::AlignLeft : Qt::AlignRight));
    default:
      return {};
  }
}

QVariant FolderModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return {};
  if (role == Qt::TextAlignmentRole) {
    return QVariant::fromValue(Qt::AlignVCenter | (section == name ? Qt::AlignLeft : Qt::AlignRight));
  }
  if (role != Qt::DisplayRole) return {};
  if (section == name) return texts::columnName();
  return section == size ? texts::columnSize() : texts::columnChanged();
}

void FolderModel::sort(int column, Qt::SortOrder order) {
  sortColumn_ = column;
  sortOrder_ = order;
  beginResetModel();
  sortEntries();
  endResetModel();
}

void FolderModel::sortEntries() {
  std::stable_sort(entries_.begin(), entries_.end(), [this](const FolderEntry& left, const FolderEntry& right) {
    if (left.isFolder != right.isFolder) return left.isFolder;
    const int order = compared(left, right, sortColumn_);
    return sortOrder_ == Qt::AscendingOrder ? order < 0 : order > 0;
  });
}

}  // namespace zelvo::platform::qt
