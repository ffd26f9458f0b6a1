#include "platform/qt/drawing/picture_widget.h"

#include <QPainter>
#include <utility>

namespace zelvo::platform::qt {

PictureWidget::PictureWidget(Pictures& pictures, std::string name, const QSize& size)
    : pictures_(pictures), name_(std::move(name)) {
  setFixedSize(size);
}

void PictureWidget::setName(std::string name) {
  name_ = std::move(name);
  update();
}

void PictureWidget::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  if (!name_.empty()) pictures_.draw(painter, name_, QRectF(rect()));
}

}  // namespace zelvo::platform::qt
