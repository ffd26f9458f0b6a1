#include "platform/qt/drawing/wrapping_row.h"

#include <QStyle>
#include <QWidget>
#include <algorithm>

namespace zelvo::platform::qt {

WrappingRow::~WrappingRow() = default;

void WrappingRow::addItem(QLayoutItem* item) { items_.emplace_back(item); }

QLayoutItem* WrappingRow::itemAt(int index) const {
  return index >= 0 && index < count() ? items_[static_cast<std::size_t>(index)].get() : nullptr;
}

QLayoutItem* WrappingRow::takeAt(int index) {
  if (itemAt(index) == nullptr) return nullptr;
  const auto place = items_.begin() + index;
  QLayoutItem* const taken = place->release();
  items_.erase(place);
  return taken;
}

int WrappingRow::heightForWidth(int width) const { return layOut(QRect(0, 0, width, 0), false); }

QSize WrappingRow::sizeHint() const {
  QSize all;
  for (const auto& item : items_) {
    if (item->isEmpty()) continue;
    const QSize one = item->sizeHint();
    all = QSize(all.width() + (all.width() == 0 ? 0 : gap_) + one.width(), std::max(all.height(), one.height()));
  }
  return all;
}

QSize WrappingRow::minimumSize() const {
  QSize widest;
  for (const auto& item : items_) {
    if (!item->isEmpty()) widest = widest.expandedTo(item->sizeHint());
  }
  return widest;
}

void WrappingRow::setGeometry(const QRect& area) {
  QLayout::setGeometry(area);
  layOut(area, true);
}

int WrappingRow::layOut(const QRect& area, bool isPlacing) const {
  int top = area.top();
  std::size_t begin = 0;
  while (begin < items_.size()) {
    int width = 0;
    int height = 0;
    std::size_t end = begin;
    for (; end < items_.size(); ++end) {
      if (items_[end]->isEmpty()) continue;
      const QSize one = items_[end]->sizeHint();
      const int wider = width + (width == 0 ? 0 : gap_) + one.width();
      if (width != 0 && wider > area.width()) break;
      width = wider;
      height = std::max(height, one.height());
    }
    int left = area.left();
    for (std::size_t i = begin; isPlacing && i < end; ++i) {
      if (items_[i]->isEmpty()) continue;
      const int own = items_[i]->sizeHint().width();
      const QRect place(left, top, own, height);
      items_[i]->setGeometry(QStyle::visualRect(parentWidget()->layoutDirection(), area, place));
      left += own + gap_;
    }
    top += height;
    begin = end;
  }
  return top - area.top();
}

}  // namespace zelvo::platform::qt
