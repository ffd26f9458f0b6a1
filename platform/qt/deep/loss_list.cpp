#include "platform/qt/deep/loss_list.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QStyledItemDelegate>
#include <algorithm>
#include <map>
#include <vector>

#include "platform/qt/damage/damage_paints.h"
#include "platform/qt/deep/focus_ring.h"
#include "platform/qt/deep_texts.h"
#include "platform/qt/drawing/appearance.h"
#include "platform/qt/drawing/text.h"

namespace zelvo::platform::qt {

namespace {

constexpr int kLossPadding = 4;
constexpr int kSign = 12;
constexpr int kFewestRows = 2;
constexpr int kMostRows = 6;

QIcon signOf(DamagePaint paint, const QPalette& palette) {
  QIcon sign;
  for (const int scale : {1, 2, 3}) {
    QPixmap drawn(QSize(kSign, kSign) * scale);
    drawn.fill(colourOf(paint, palette));
    QPainter painter(&drawn);
    painter.scale(scale, scale);
    constexpr int kPatternAlpha = 110;
    QColor over = surface(palette);
    over.setAlpha(kPatternAlpha);
    painter.fillRect(QRect(0, 0, kSign, kSign), QBrush(over, patternOf(paint)));
    for (const auto mode : {QIcon::Normal, QIcon::Selected}) sign.addPixmap(drawn, mode);
  }
  return sign;
}

/// Gives rows room to be hit.
class RoomyLosses final : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    return QStyledItemDelegate::sizeHint(option, index) + QSize(0, 2 * kLossPadding);
  }
};

}  // namespace

LossList::LossList() {
  setModel(&losses_);
  setItemDelegate(new RoomyLosses(this));
  setIconSize({kSign, kSign});
  setFont(textFont(kSmallPixels));
  setAccessibleName(texts::losses());
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setSelectionMode(QAbstractItemView::SingleSelection);
  setWordWrap(true);
  setResizeMode(QListView::Adjust);
  setTextElideMode(Qt::ElideRight);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  setTabKeyNavigation(false);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  connect(selectionModel(), &QItemSelectionModel::currentChanged, this, [this](const QModelIndex& now) {
    if (!isMarking_ && now.isValid() && onMark_) onMark_(static_cast<std::size_t>(now.row()));
  });
  connect(this, &QListView::clicked, this, [this](const QModelIndex& index) { open(index); });
}

void LossList::showLosses(const DamagePicture& picture) {
  std::vector<DamagePaint> paints(picture.losses.size(), DamagePaint::kept);
  for (const DamageBar& bar : picture.bars) {
    for (const DamageMark& mark : bar.marks) {
      if (mark.loss < paints.size() && weightOf(mark.paint) > weightOf(paints[mark.loss]))
        paints[mark.loss] = mark.paint;
    }
  }
  std::map<DamagePaint, QIcon> signs;
  losses_.clear();
  for (std::size_t i = 0; i < picture.losses.size(); ++i) {
    const auto [sign, isNew] = signs.try_emplace(paints[i]);
    if (isNew) sign->second = signOf(paints[i], palette());
    auto* const row = new QStandardItem(sign->second, shown(picture.losses[i].words));
    row->setEditable(false);
    losses_.appendRow(row);
  }
  updateGeometry();
}

void LossList::mark(std::size_t loss) {
  isMarking_ = true;
  setCurrentIndex(losses_.index(static_cast<int>(loss), 0));
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
  const int rows = std::clamp(losses_.rowCount(), kFewestRows, kMostRows);
  const int row = sizeHintForRow(0) + 2 * spacing();
  return {QListView::sizeHint().width(), rows * row + 2 * frameWidth() + 2 * spacing()};
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
  if (!currentIndex().isValid() && losses_.rowCount() > 0 && event->reason() != Qt::MouseFocusReason) {
    setCurrentIndex(losses_.index(0, 0));
  }
  QListView::focusInEvent(event);
  viewport()->update();
}

}  // namespace zelvo::platform::qt
