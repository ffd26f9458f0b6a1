#include "platform/qt/chooser/folder_browser.h"

#include <QApplication>
#include <QFile>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QStyle>
#include <QStyledItemDelegate>
#include <QVBoxLayout>
#include <algorithm>
#include <filesystem>
#include <utility>

#include "platform/paths.h"
#include "platform/qt/chooser/folder_listing.h"
#include "platform/qt/drawing/appearance.h"
#include "platform/qt/drawing/text.h"
#include "platform/qt/texts.h"

namespace zelvo::platform::qt {

namespace {

constexpr int kBrowserGap = 12;
constexpr int kPlacesWidth = 150;
constexpr int kMostPlacesWidth = 220;
constexpr int kColumnGap = 28;
constexpr int kIconSize = 20;
constexpr int kRowHeight = 28;

QIcon icon(QStyle::StandardPixmap which) { return QApplication::style()->standardIcon(which); }

/// One of the window's own pictures, sharp at any scale.
QIcon icon(Pictures& pictures, std::string_view name) {
  constexpr int kScale = 4;
  QPixmap drawn(kIconSize * kScale, kIconSize * kScale);
  drawn.fill(Qt::transparent);
  QPainter painter(&drawn);
  pictures.draw(painter, name, QRectF(drawn.rect()));
  return QIcon(drawn);
}

/// Gives rows room to be hit.
class RoomyRows final : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    return {QStyledItemDelegate::sizeHint(option, index).width(), kRowHeight};
  }
};

bool isEnter(const QKeyEvent& event) { return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter; }

}  // namespace

/// A list that says in its middle why it is empty.
class FolderBrowser::List final : public QTreeView {
 public:
  using QTreeView::QTreeView;
  void setEmptyText(const QString& text) {
    emptyText_ = text;
    setAccessibleDescription(text);
    viewport()->update();
  }

 protected:
  void paintEvent(QPaintEvent* event) override {
    QTreeView::paintEvent(event);
    if (model() == nullptr || model()->rowCount() > 0) return;
    QPainter painter(viewport());
    painter.setPen(secondaryText(palette()));
    painter.drawText(viewport()->rect().adjusted(kBrowserGap, kBrowserGap, -kBrowserGap, -kBrowserGap),
                     Qt::AlignCenter | Qt::TextWordWrap, emptyText_);
  }

 private:
  QString emptyText_;
};

FolderBrowser::FolderBrowser(MainQueue& queue, Pictures& pictures, std::shared_ptr<ChooserFiles> files,
                             FileFilter filter)
    : filter_(std::move(filter)),
      path_(new ElidedLabel),
      up_(new QtButton(queue, pictures, texts::up(), QtButton::Look::push)),
      newFolder_(new QtButton(queue, pictures, texts::newFolder(), QtButton::Look::push)),
      placeList_(new QListWidget),
      list_(new List),
      model_(new FolderModel(icon(QStyle::SP_DirIcon), icon(pictures, "film-drop"), this)),
      reader_(queue, std::move(files)) {
  auto* const top = new QHBoxLayout;
  top->setSpacing(kBrowserGap);
  up_->setToolTip(texts::upTip());
  top->addWidget(up_);
  top->addWidget(path_, 1);
  top->addWidget(newFolder_);
  newFolder_->setVisible(false);

  placeList_->setAccessibleName(texts::places());
  placeList_->setIconSize({kIconSize, kIconSize});
  placeList_->setItemDelegate(new RoomyRows(placeList_));
  list_->setItemDelegate(new RoomyRows(list_));
  placeList_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  list_->setModel(model_);
  list_->setRootIsDecorated(false);
  list_->setItemsExpandable(false);
  list_->setUniformRowHeights(true);
  list_->setAllColumnsShowFocus(true);
  list_->setSortingEnabled(true);
  list_->sortByColumn(FolderModel::name, Qt::AscendingOrder);
  list_->setIconSize({kIconSize, kIconSize});
  list_->setTextElideMode(Qt::ElideMiddle);
  list_->header()->setStretchLastSection(false);
  list_->header()->setSectionResizeMode(FolderModel::name, QHeaderView::Stretch);
  const QFontMetrics metrics(font());
  const QString widestDate = FolderModel::shownDate(QDateTime(QDate(2020, 12, 28), QTime(20, 58)));
  list_->header()->resizeSection(FolderModel::size, metrics.horizontalAdvance(QStringLiteral("999.9 MB")) + kColumnGap);
  list_->header()->resizeSection(FolderModel::changed, metrics.horizontalAdvance(widestDate) + kColumnGap);

  auto* const middle = new QHBoxLayout;
  middle->setSpacing(kBrowserGap);
  middle->addWidget(placeList_);
  middle->addWidget(list_, 1);
  auto* const all = new QVBoxLayout(this);
  all->setContentsMargins(0, 0, 0, 0);
  all->setSpacing(kBrowserGap);
  all->addLayout(top);
  all->addLayout(middle, 1);

  up_->setAction([this](Button&) { enterFolderAbove(); });
  connect(list_, &QTreeView::doubleClicked, this, [this](const QModelIndex& index) { openEntry(index); });
  connect(list_->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { tell(selectionChanged_); });
  connect(placeList_, &QListWidget::itemClicked, this,
          [this] { enter(places_[static_cast<std::size_t>(placeList_->currentRow())].folder); });
  list_->installEventFilter(this);
  placeList_->installEventFilter(this);
  fillPlaces();
}

QTreeView& FolderBrowser::list() const { return *list_; }

void FolderBrowser::fillPlaces() {
  places_ = places();
  for (const Place& place : places_) {
    QStyle::StandardPixmap picture = place.isDisk ? QStyle::SP_DriveHDIcon : QStyle::SP_DirIcon;
    if (&place == &places_.front()) picture = QStyle::SP_DirHomeIcon;
    auto* const item = new QListWidgetItem(icon(picture), place.name, placeList_);
    item->setToolTip(shownPath(place.folder).toHtmlEscaped());
  }
  const int wanted = placeList_->sizeHintForColumn(0) + 2 * placeList_->frameWidth();
  placeList_->setFixedWidth(std::clamp(wanted, kPlacesWidth, kMostPlacesWidth));
}

void FolderBrowser::tell(const std::function<void()>& observer) const {
  if (!isSilent_ && observer) observer();
}

void FolderBrowser::setNewFolderAction(const std::function<void()>& action) {
  newFolder_->setVisible(action != nullptr);
  newFolder_->setAction([action](Button&) { action(); });
}

void FolderBrowser::enter(const std::string& folder) {
  std::string entered = folder;
  if (!entered.starts_with('/') || entered.find("/.") != std::string::npos) {
    // The way through ".." depends on links, which only the disk knows. A folder that is not there stays as it is.
    std::error_code failure;
    const std::filesystem::path real = std::filesystem::canonical(entered, failure);
    if (!failure) entered = real.string();
  }
  while (entered.size() > 1 && entered.ends_with('/')) entered.pop_back();
  folder_ = entered;
  isRead_ = false;
  path_->setWholeText(shownPath(folder_));
  up_->QPushButton::setEnabled(folder_ != "/");
  list_->setAccessibleName(texts::filesIn(shownPath(folder_)));
  list_->setEmptyText(texts::readingFolder());
  model_->setEntries({});
  markPlace();
  tell(folderChanged_);
  reader_.read(folder_, filter_, [this](FolderListing listing) { showListing(std::move(listing)); });
}

void FolderBrowser::refresh() {
  if (const FolderEntry* const one = selected()) selectNext_ = one->name;
  enter(folder_);
}

void FolderBrowser::enterFolderAbove() {
  if (folder_ == "/") return;
  selectNext_ = platform::nameOf(folder_);
  enter(folderOf(folder_));
}

void FolderBrowser::showListing(FolderListing listing) {
  isRead_ = true;
  if (listing.failure) {
    list_->setEmptyText(texts::folderUnreadable(shown(listing.failure.message())));
  } else {
    list_->setEmptyText(filter_.files ? texts::nothingHere() : texts::noFoldersHere());
  }
  model_->setEntries(std::move(listing.entries));
  const std::string wanted = std::exchange(selectNext_, {});
  const auto& entries = model_->entries();
  const auto found =
      std::find_if(entries.begin(), entries.end(), [&](const FolderEntry& one) { return one.name == wanted; });
  const int row = found == entries.end() ? 0 : static_cast<int>(found - entries.begin());
  const QModelIndex index = model_->index(row, FolderModel::name);
  if (found != entries.end()) {
    list_->setCurrentIndex(index);
  } else {
    list_->selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
  }
}

void FolderBrowser::selectSeveral() { list_->setSelectionMode(QAbstractItemView::ExtendedSelection); }

const FolderEntry* FolderBrowser::selected() const {
  const std::vector<const FolderEntry*> all = allSelected();
  return all.empty() ? nullptr : all.front();
}

std::vector<const FolderEntry*> FolderBrowser::allSelected() const {
  QModelIndexList rows = list_->selectionModel()->selectedRows();
  std::sort(rows.begin(), rows.end());
  std::vector<const FolderEntry*> all;
  for (const QModelIndex& row : rows) all.push_back(model_->entry(row));
  return all;
}

const FolderEntry* FolderBrowser::entryShownAs(const QString& name) const {
  const FolderEntry* const chosen = selected();
  if (chosen != nullptr && FolderModel::nameOf(*chosen) == name) return chosen;
  const std::string bytes = QFile::encodeName(name).toStdString();
  const FolderEntry* alike = nullptr;
  for (const FolderEntry& one : model_->entries()) {
    if (one.name == bytes) return &one;
    if (alike == nullptr && FolderModel::nameOf(one) == name) alike = &one;
  }
  return alike;
}

void FolderBrowser::openEntry(const QModelIndex& index) {
  const FolderEntry* const entry = model_->entry(index);
  if (entry == nullptr) return;
  if (entry->isFolder) {
    enter(pathIn(folder_, std::string(entry->name)));
  } else {
    tell(fileOpened_);
  }
}

void FolderBrowser::markPlace() {
  const auto here =
      std::find_if(places_.begin(), places_.end(), [this](const Place& one) { return one.folder == folder_; });
  if (here == places_.end()) {
    placeList_->clearSelection();
  } else {
    placeList_->setCurrentRow(static_cast<int>(here - places_.begin()));
  }
}

bool FolderBrowser::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return false;
  const auto& key = dynamic_cast<const QKeyEvent&>(*event);
  if (watched == list_ && isEnter(key)) {
    const QModelIndex current = list_->currentIndex();
    if (!current.isValid()) return true;
    if (allSelected().size() > 1) {
      tell(fileOpened_);
      return true;
    }
    list_->setCurrentIndex(current);
    openEntry(current);
    return true;
  }
  if (watched == placeList_ && isEnter(key)) {
    const int row = placeList_->currentRow();
    if (row >= 0) enter(places_[static_cast<std::size_t>(row)].folder);
    return true;
  }
  if (watched == list_ && key.key() == Qt::Key_Backspace) {
    enterFolderAbove();
    return true;
  }
  return false;
}

}  // namespace zelvo::platform::qt
