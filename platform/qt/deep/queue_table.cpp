#include "platform/qt/deep/queue_table.h"

#include <QFocusEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyledItemDelegate>
#include <algorithm>
#include <utility>

#include "platform/qt/deep/focus_ring.h"
#include "platform/qt/deep/verdict_looks.h"
#include "platform/qt/deep_texts.h"
#include "platform/qt/drawing/appearance.h"

namespace zelvo::platform::qt {

namespace {

constexpr int kFilmRow = 34;
constexpr int kSignSize = 18;
constexpr int kCrossColumn = 36;
constexpr int kCross = 10;
constexpr int kCellPadding = 24;
constexpr int kHeadingPadding = 12;
constexpr int kBar = 6;
constexpr int kProgressWidth = 110;
constexpr int kNarrowProgressWidth = 64;
constexpr int kWidthForProgress = 640;
constexpr int kLeastFilmWidth = 150;
constexpr int kEmptyMargin = 12;
constexpr int kLeastRows = 2;

}  // namespace

/// Gives rows room, draws the bars and the crosses, and shows what can be clicked as a link.
class QueueTable::Cells final : public QStyledItemDelegate {
 public:
  Cells(const QueueModel& model, QObject* parent) : QStyledItemDelegate(parent), model_(model) {}

  [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    return {QStyledItemDelegate::sizeHint(option, index).width(), kFilmRow};
  }
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    QStyleOptionViewItem plainRow = option;
    plainRow.state &= ~QStyle::State_HasFocus;  // the row is marked by its selection
    if (index.column() == QueueModel::result && model_.canBeOpened(index)) {
      plainRow.font.setUnderline(true);
      plainRow.palette.setColor(QPalette::Text, option.palette.color(QPalette::Link));
    }
    if (index.column() == QueueModel::result) plainRow.textElideMode = Qt::ElideRight;
    QStyledItemDelegate::paint(painter, plainRow, index);
    const bool isSelected = (option.state & QStyle::State_Selected) != 0;
    if (index.column() == QueueModel::progress) paintBar(*painter, option, index.data(Qt::UserRole), isSelected);
    if (index.column() == QueueModel::takeOut && model_.canBeTakenOut(index)) paintCross(*painter, option, isSelected);
  }

 private:
  static void paintBar(QPainter& painter, const QStyleOptionViewItem& option, const QVariant& percent,
                       bool isSelected) {
    if (!percent.isValid()) return;
    const QRect bar(option.rect.x() + 2, option.rect.center().y() - kBar / 2, option.rect.width() - kEmptyMargin, kBar);
    painter.fillRect(bar, line(option.palette));
    const QColor filled = isSelected ? option.palette.color(QPalette::HighlightedText) : accent(option.palette);
    painter.fillRect(QRectF(bar.x(), bar.y(), bar.width() * percent.toInt() / 100.0, bar.height()), filled);
  }
  static void paintCross(QPainter& painter, const QStyleOptionViewItem& option, bool isSelected) {
    const QPointF middle = QRectF(option.rect).center();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor colour = isSelected ? option.palette.color(QPalette::HighlightedText) : secondaryText(option.palette);
    painter.setPen(QPen(colour, 1.5, Qt::SolidLine, Qt::RoundCap));
    const QPointF arm(kCross / 2.0, kCross / 2.0);
    const QPointF other(kCross / 2.0, -kCross / 2.0);
    painter.drawLine(middle - arm, middle + arm);
    painter.drawLine(middle - other, middle + other);
    painter.restore();
  }

  const QueueModel& model_;
};

QueueTable::QueueTable(MainQueue& queue, Pictures& pictures) : queue_(queue), model_(new QueueModel(pictures, this)) {
  setModel(model_);
  setItemDelegate(new Cells(*model_, this));
  setFont(textFont(kSmallPixels));
  setAccessibleName(texts::filmsTable());
  setAccessibleDescription(texts::noFilms());
  setRootIsDecorated(false);
  setItemsExpandable(false);
  setUniformRowHeights(true);
  setTabKeyNavigation(false);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setTextElideMode(Qt::ElideMiddle);
  setIconSize({kSignSize, kSignSize});
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setMouseTracking(true);
  header()->setStretchLastSection(false);
  header()->setSectionsMovable(false);
  header()->setSectionsClickable(false);
  header()->setMinimumSectionSize(kCrossColumn);
  connect(this, &QTreeView::clicked, this, [this](const QModelIndex& index) { clickedAt(index); });
}

void QueueTable::show(const std::vector<QueuedFilm>& films) {
  queue_.perform([this, films] { display(films); });
}

void QueueTable::display(const std::vector<QueuedFilm>& films) {
  const int row = currentIndex().row();
  model_->setFilms(films);
  setAccessibleDescription(films.empty() ? texts::noFilms() : QString());
  const int last = static_cast<int>(films.size()) - 1;
  if (row >= 0 && last >= 0) setCurrentIndex(model_->index(std::min(row, last), 0));
}

void QueueTable::update(std::size_t film, const QueuedFilm& told) {
  queue_.perform([this, film, told] { model_->setFilm(film, told); });
}

void QueueTable::clickedAt(const QModelIndex& index) {
  if (index.column() == QueueModel::takeOut) return takeOut(index);
  open(index);
}

void QueueTable::open(const QModelIndex& index) {
  if (model_->canBeOpened(index) && opener_) opener_(static_cast<std::size_t>(index.row()));
}

void QueueTable::takeOut(const QModelIndex& index) {
  if (model_->canBeTakenOut(index) && remover_) remover_(static_cast<std::size_t>(index.row()));
}

QSize QueueTable::minimumSizeHint() const {
  return {0, header()->sizeHint().height() + kLeastRows * kFilmRow + 2 * frameWidth()};
}

void QueueTable::paintEvent(QPaintEvent* event) {
  QTreeView::paintEvent(event);
  if (model_->rowCount() == 0) {
    QPainter painter(viewport());
    painter.setPen(secondaryText(palette()));
    painter.drawText(viewport()->rect().adjusted(kEmptyMargin, kEmptyMargin, -kEmptyMargin, -kEmptyMargin),
                     Qt::AlignCenter | Qt::TextWordWrap, texts::noFilms());
  }
  paintFocusRing(*this);
}

void QueueTable::resizeEvent(QResizeEvent* event) {
  QTreeView::resizeEvent(event);
  int state = 0;
  for (const auto one : {QueuedFilm::State::waiting, QueuedFilm::State::working, QueuedFilm::State::done,
                         QueuedFilm::State::failed, QueuedFilm::State::stopped}) {
    state = std::max(state, fontMetrics().horizontalAdvance(nameOf(one)));
  }
  state += kCellPadding;
  const int heading = header()->fontMetrics().horizontalAdvance(texts::columnProgress()) + kHeadingPadding;
  const bool isNarrow = viewport()->width() < kWidthForProgress;
  const int progress = std::max(heading, isNarrow ? kNarrowProgressWidth : kProgressWidth);
  const int rest = viewport()->width() - state - progress - kCrossColumn;
  const int film = std::max(kLeastFilmWidth, rest * 2 / 5);
  header()->resizeSection(QueueModel::film, film);
  header()->resizeSection(QueueModel::state, state);
  header()->resizeSection(QueueModel::result, std::max(0, rest - film));
  header()->resizeSection(QueueModel::progress, progress);
  header()->resizeSection(QueueModel::takeOut, kCrossColumn);
}

void QueueTable::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return open(currentIndex());
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
      return takeOut(currentIndex());
    default:
      return QTreeView::keyPressEvent(event);
  }
}

void QueueTable::mouseMoveEvent(QMouseEvent* event) {
  QTreeView::mouseMoveEvent(event);
  const QModelIndex index = indexAt(event->position().toPoint());
  const bool isCross = index.column() == QueueModel::takeOut;
  const bool does = isCross ? model_->canBeTakenOut(index) : model_->canBeOpened(index);
  viewport()->setCursor(does ? Qt::PointingHandCursor : Qt::ArrowCursor);
}

void QueueTable::focusInEvent(QFocusEvent* event) {
  if (!currentIndex().isValid() && model_->rowCount() > 0 && event->reason() != Qt::MouseFocusReason) {
    setCurrentIndex(model_->index(0, 0));
  }
  QTreeView::focusInEvent(event);
  viewport()->update();
}

}  // namespace zelvo::platform::qt
