#include "platform/qt/deep/loss_list.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <algorithm>

#include "platform/qt/deep/focus_ring.h"
#include "platform/qt/deep_texts.h"
#include "platform/qt/drawing/appearance.h"
#include "platform/qt/drawing/text.h"

namespace zelvo::platform::qt {

namespace {

constexpr int kLossRow = 28;
constexpr int kLossPadding = 4;
constexpr int kFewestRows = 2;
constexpr int kMostRows = 6;

}  // namespace

LossList::LossList() {
  setModel(&words_);
  setFont(textFont(kSmallPixels));
  setAccessibleName(texts::losses());
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setSelectionMode(QAbstractItemView::SingleSelection);
  setWordWrap(true);
  setResizeMode(QListView::Adjust);
  setTextElideMode(Qt::ElideNone);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  setSpacing(kLossPadding / 2);
  setTabKeyNavigation(false);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  connect(selectionModel(), &QItemSelectionModel::currentChanged, this, [this](const QModelIndex& now) {
    if (!isMarking_ && now.isValid() && onMark_) onMark_(static_cast<std::size_t>(now.row()));
  });
  connect(this, &QListView::clicked, this, [this](const QModelIndex& index) { open(index); });
}

void LossList::showLosses(const std::vector<DamageLoss>& losses) {
  QStringList all;
  all.reserve(static_cast<qsizetype>(losses.size()));
  for (const DamageLoss& loss : losses) all.push_back(shown(loss.words));
  words_.setStringList(all);
  updateGeometry();
}

void LossList::mark(std::size_t loss) {
  isMarking_ = true;
  setCurrentIndex(words_.index(static_cast<int>(loss), 0));
  isMarking_ = false;
}

std::optional<std::size_t> LossList::marked() const {
  const QModelIndex current = currentIndex();
  if (!current.isValid()) return std::nullopt;
  return static_cast<std::size_t>(current.row());
}

void LossList::open(const QModelIndex& index) {
  if (index.isValid() && onOpen_) onOpen_(static_cast<std::size_t>(index.row()));
}

QSize LossList::sizeHint() const {
  const int rows = std::clamp(words_.rowCount(), kFewestRows, kMostRows);
  return {QListView::sizeHint().width(), rows * kLossRow + 2 * frameWidth() + kLossPadding};
}

void LossList::paintEvent(QPaintEvent* event) {
  QListView::paintEvent(event);
  paintFocusRing(*this);
}

void LossList::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) return open(currentIndex());
  QListView::keyPressEvent(event);
}

void LossList::focusInEvent(QFocusEvent* event) {
  // The view would take the first row as its current one without marking it.
  if (!currentIndex().isValid() && words_.rowCount() > 0 && event->reason() != Qt::MouseFocusReason) {
    setCurrentIndex(words_.index(0, 0));
  }
  QListView::focusInEvent(event);
  viewport()->update();
}

}  // namespace zelvo::platform::qt
