#include "platform/qt/drop_area.h"

#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>

#include "platform/qt/appearance.h"
#include "platform/qt/picture_widget.h"
#include "platform/qt/window_texts.h"

namespace zelvo::platform::qt {

namespace {

constexpr int kPictureWidth = 112;
constexpr int kPictureHeight = 84;
constexpr int kMargin = 24;
constexpr double kCorner = 6;

}  // namespace

DropArea::DropArea(Pictures& pictures, QAbstractButton& chooser, QWidget* parent) : QWidget(parent), chooser_(chooser) {
  setCursor(Qt::PointingHandCursor);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  column->setSpacing(kMargin / 2);
  column->addStretch(1);
  column->addWidget(new PictureWidget(pictures, "film-drop", QSize(kPictureWidth, kPictureHeight)), 0,
                    Qt::AlignHCenter);
  auto* const invitation = new QLabel(texts::dropHere());
  invitation->setFont(textFont(kTitlePixels, QFont::DemiBold));
  column->addWidget(invitation, 0, Qt::AlignHCenter);
  column->addWidget(&chooser, 0, Qt::AlignHCenter);
  column->addStretch(1);
}

void DropArea::addLine(QWidget* widget) { layout()->addWidget(widget); }

void DropArea::setInviting(bool inviting) {
  isInviting_ = inviting;
  update();
}

void DropArea::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(strip(palette()));
  const QColor edge = isInviting_ ? accent(palette()) : line(palette());
  painter.setPen(QPen(edge, 2, isInviting_ ? Qt::SolidLine : Qt::DashLine));
  painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), kCorner, kCorner);
}

void DropArea::mousePressEvent(QMouseEvent* event) { event->accept(); }

void DropArea::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint())) chooser_.click();
}

}  // namespace zelvo::platform::qt
