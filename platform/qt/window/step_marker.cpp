#include "platform/qt/window/step_marker.h"

#include <QPainter>
#include <QPainterPath>

#include "platform/qt/drawing/appearance.h"
#include "platform/qt/texts.h"

namespace zelvo::platform::qt {

namespace {

constexpr int kSteps = 3;
constexpr int kMark = 24;
constexpr int kLabelGap = 8;
constexpr int kBetween = 44;
constexpr int kMarkerHeight = 32;

int labelWidth(const QFontMetrics& metrics, int step) { return metrics.horizontalAdvance(texts::stepName(step)); }

}  // namespace

StepMarker::StepMarker(int step, QWidget* parent) : QLabel(parent), step_(step) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  setFont(textFont(kSmallPixels, QFont::DemiBold));
  setAccessibleName(texts::stepDescription(step));
}

QSize StepMarker::sizeHint() const {
  int width = 0;
  for (int step = 0; step < kSteps; ++step) width += kMark + kLabelGap + labelWidth(fontMetrics(), step);
  return {width + (kSteps - 1) * kBetween, kMarkerHeight};
}

void StepMarker::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  int x = 0;
  for (int step = 0; step < kSteps; ++step) {
    const bool isHere = step == step_;
    const bool isDone = step < step_;
    const QRectF mark(x + 0.75, (height() - kMark) / 2.0 + 0.75, kMark - 1.5, kMark - 1.5);
    const QColor edge = isDone ? accent(palette()) : line(palette());
    painter.setPen(QPen(isHere ? textAccent(palette()) : edge, 1.5));
    painter.setBrush(isHere ? QBrush(textAccent(palette())) : QBrush(Qt::NoBrush));
    painter.drawEllipse(mark);
    if (isDone) {
      QPainterPath tick(mark.center() + QPointF(-5, 0));
      tick.lineTo(mark.center() + QPointF(-1.5, 3.5));
      tick.lineTo(mark.center() + QPointF(5, -4));
      painter.setPen(QPen(accent(palette()), 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
      painter.setBrush(Qt::NoBrush);
      painter.drawPath(tick);
    } else {
      painter.setPen(isHere ? palette().color(QPalette::HighlightedText) : secondaryText(palette()));
      painter.setFont(font());
      painter.drawText(mark, Qt::AlignCenter, QString::number(step + 1));
    }
    x += kMark + kLabelGap;
    painter.setPen(isHere ? palette().color(QPalette::WindowText) : secondaryText(palette()));
    painter.drawText(QRect(x, 0, labelWidth(fontMetrics(), step) + 2, height()), Qt::AlignVCenter | Qt::AlignLeft,
                     texts::stepName(step));
    x += labelWidth(fontMetrics(), step);
    if (step + 1 < kSteps) {
      painter.setPen(QPen(line(palette()), 1));
      painter.drawLine(QPointF(x + kLabelGap + 4, height() / 2.0), QPointF(x + kBetween - kLabelGap, height() / 2.0));
    }
    x += kBetween;
  }
}

}  // namespace zelvo::platform::qt
