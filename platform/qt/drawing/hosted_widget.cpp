#include "platform/qt/drawing/hosted_widget.h"

#include <QPaintEvent>

namespace zelvo::platform::qt {

HostedWidget::HostedWidget(QWidget* parent)
    : QWidget(parent), host_(new QtViewHost(*this, [this](QPainter& painter) { paintBase(painter); })) {}

void HostedWidget::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  host_->paint(painter, event->rect());
}

}  // namespace zelvo::platform::qt
