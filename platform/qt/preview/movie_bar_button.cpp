#include "platform/qt/preview/movie_bar_button.h"

#include <QEvent>
#include <QFocusEvent>
#include <QPainter>
#include <QPainterPath>

#include "platform/qt/drawing/appearance.h"

namespace zelvo::platform::qt {

namespace {

constexpr int kSide = 32;
constexpr double kFocusWidth = 2.0;

/// The signs, in a square of 16 by 16.
QPainterPath pathOf(MovieBarButton::Sign sign) {
  QPainterPath path;
  switch (sign) {
    case MovieBarButton::Sign::play:
      path.addPolygon(QPolygonF({{3, 1}, {14, 8}, {3, 15}, {3, 1}}));
      return path;
    case MovieBarButton::Sign::pause:
      path.addRect(3, 1, 4, 14);
      path.addRect(10, 1, 4, 14);
      return path;
    case MovieBarButton::Sign::sound:
    case MovieBarButton::Sign::mute:
      path.addPolygon(QPolygonF({{1, 5}, {4, 5}, {8, 1}, {8, 15}, {4, 11}, {1, 11}, {1, 5}}));
      return path;
  }
  return path;
}

/// What is drawn beside the loudspeaker, as lines.
QPainterPath besideOf(MovieBarButton::Sign sign) {
  QPainterPath path;
  if (sign == MovieBarButton::Sign::sound) {
    constexpr int kSpan = 90;  // degrees
    for (const double radius : {3.0, 6.5}) {
      const QRectF circle(8 - radius, 8 - radius, 2 * radius, 2 * radius);
      path.arcMoveTo(circle, -kSpan / 2.0);
      path.arcTo(circle, -kSpan / 2.0, kSpan);
    }
    path.translate(1.5, 0);
  } else if (sign == MovieBarButton::Sign::mute) {
    path.moveTo(10.5, 5.5);
    path.lineTo(15.5, 10.5);
    path.moveTo(15.5, 5.5);
    path.lineTo(10.5, 10.5);
  }
  return path;
}

}  // namespace

MovieBarButton::MovieBarButton(QWidget* parent) : QAbstractButton(parent) {
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void MovieBarButton::show(Sign sign, const QString& name) {
  if (sign == sign_ && name == accessibleName()) return;
  sign_ = sign;
  setAccessibleName(name);
  setToolTip(name);
  update();
}

QSize MovieBarButton::sizeHint() const { return {kSide, kSide}; }

bool MovieBarButton::event(QEvent* event) {
  if (event->type() == QEvent::Enter || event->type() == QEvent::Leave) update();
  return QAbstractButton::event(event);
}

void MovieBarButton::focusInEvent(QFocusEvent* event) {
  if (event->reason() != Qt::ActiveWindowFocusReason) showsFocus_ = event->reason() != Qt::MouseFocusReason;
  QAbstractButton::focusInEvent(event);
}

void MovieBarButton::paintEvent(QPaintEvent*) {
  constexpr double kSignSide = 16.0;
  constexpr double kLineWidth = 1.5;
  QPainter painter(this);
  if (isEnabled() && isDown()) painter.fillRect(rect(), line(palette()));
  if (isEnabled() && underMouse()) {
    painter.setPen(QPen(hoverFrame(palette()), 1));
    painter.drawRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
  }
  const QColor colour = palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::WindowText);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing, sign_ != Sign::pause);  // upright edges stay sharp
  painter.translate((width() - kSignSide) / 2, (height() - kSignSide) / 2);
  painter.fillPath(pathOf(sign_), colour);
  painter.strokePath(besideOf(sign_), QPen(colour, kLineWidth, Qt::SolidLine, Qt::RoundCap));
  painter.restore();
  if (hasFocus() && showsFocus_) {
    painter.setPen(QPen(focusColour(palette()), kFocusWidth));
    painter.drawRect(QRectF(rect()).adjusted(1, 1, -1, -1));
  }
}

}  // namespace zelvo::platform::qt
