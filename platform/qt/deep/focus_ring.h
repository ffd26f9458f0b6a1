/// The ring that shows which list or table has the keyboard.
/// Thread: main.
#pragma once

#include <QAbstractScrollArea>
#include <QPainter>

#include "platform/qt/drawing/appearance.h"

namespace zelvo::platform::qt {

/// To be drawn on the view's viewport after everything else.
inline void paintFocusRing(const QAbstractScrollArea& view) {
  if (!view.hasFocus()) return;
  constexpr int kRingWidth = 2;
  QPainter painter(view.viewport());
  painter.setPen(QPen(focusColour(view.palette()), kRingWidth));
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(QRectF(view.viewport()->rect()).adjusted(1, 1, -1, -1));
}

}  // namespace zelvo::platform::qt
