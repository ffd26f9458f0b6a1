#include "platform/qt/drawing/canvas.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <algorithm>
#include <array>
#include <cmath>

#include "platform/qt/drawing/pictures.h"
#include "platform/qt/drawing/text.h"

namespace zelvo::platform::qt {

QColor shown(const Colour& colour) {
  const auto fraction = [](double value) { return static_cast<float>(std::clamp(value, 0.0, 1.0)); };
  return QColor::fromRgbF(fraction(colour.red), fraction(colour.green), fraction(colour.blue), fraction(colour.alpha));
}

Colour plain(const QColor& colour) {
  const auto fraction = [](float value) { return static_cast<double>(value); };
  return {fraction(colour.redF()), fraction(colour.greenF()), fraction(colour.blueF()), fraction(colour.alphaF())};
}

QFont fontOf(const TextAttributes& attributes) {
  QFont font;
  if (attributes.font) {
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(attributes.font->points))));
    if (attributes.font->name == kBoldSystemFont) {
      font.setWeight(QFont::Bold);
    } else if (attributes.font->name != kSystemFont) {
      font.setFamily(shown(attributes.font->name));
    }
  }
  font.setUnderline(attributes.underline == UnderlineStyle::single);
  return font;
}

void QtCanvas::restoreState() {
  if (saved_.empty()) return;
  colours_ = saved_.back();
  saved_.pop_back();
}

QRectF QtCanvas::snapped(const Rect& rect) const {
  const QRectF pixels = painter_.deviceTransform().mapRect(QRectF(rect.x, rect.y, rect.width, rect.height));
  return {QPointF(std::round(pixels.left()), std::round(pixels.top())),
          QPointF(std::round(pixels.right()), std::round(pixels.bottom()))};
}

void QtCanvas::fillPixels(const QRectF& pixels, const Colour& colour) {
  if (pixels.width() <= 0 || pixels.height() <= 0) return;
  painter_.save();
  painter_.setRenderHint(QPainter::Antialiasing, false);
  painter_.fillRect(painter_.deviceTransform().inverted().mapRect(pixels), shown(colour));
  painter_.restore();
}

void QtCanvas::fillRect(const Rect& rect) {
  if (rect.width > 0 && rect.height > 0) fillPixels(snapped(rect), colours_.fill);
}

void QtCanvas::strokeRectWithWidth(const Rect& rect, double width) {
  if (rect.width <= 0 || rect.height <= 0 || width <= 0) return;
  const QRectF outer = snapped(insetRect(rect, -width / 2, -width / 2));
  // The same number of pixels on all four sides, wherever the edges came to lie.
  const double pixels = std::max(1.0, std::round(width * painter_.deviceTransform().m11()));
  const QRectF inner = outer.adjusted(pixels, pixels, -pixels, -pixels);
  if (inner.width() <= 0 || inner.height() <= 0) {
    fillPixels(outer, colours_.stroke);
    return;
  }
  const std::array<QRectF, 4> sides = {QRectF(outer.topLeft(), QPointF(outer.right(), inner.top())),
                                       QRectF(QPointF(outer.left(), inner.bottom()), outer.bottomRight()),
                                       QRectF(QPointF(outer.left(), inner.top()), inner.bottomLeft()),
                                       QRectF(inner.topRight(), QPointF(outer.right(), inner.bottom()))};
  for (const QRectF& side : sides) fillPixels(side, colours_.stroke);
}

Size QtCanvas::sizeWithAttributes(std::string_view text, const TextAttributes& attributes) {
  const QFontMetricsF metrics(fontOf(attributes), painter_.device());
  return {metrics.horizontalAdvance(shown(text)), metrics.height()};
}

void QtCanvas::drawInRect(std::string_view text, const Rect& rect, const TextAttributes& attributes) {
  if (rect.width <= 0 || rect.height <= 0) return;
  const QRectF place(rect.x, rect.y, rect.width, rect.height);
  const ParagraphStyle paragraph = attributes.paragraph.value_or(ParagraphStyle{});
  const QFont font = fontOf(attributes);
  int flags = Qt::AlignTop;
  flags |= paragraph.alignment == TextAlignment::centre ? Qt::AlignHCenter : Qt::AlignLeft;
  QString printable = shown(text);
  if (paragraph.lineBreakMode == LineBreakMode::truncatingTail) {
    flags |= Qt::TextSingleLine;
    printable = QFontMetricsF(font, painter_.device()).elidedText(printable, Qt::ElideRight, rect.width);
  } else {
    flags |= Qt::TextWordWrap;
  }
  painter_.save();
  painter_.setClipRect(place, Qt::IntersectClip);
  painter_.setFont(font);
  painter_.setPen(shown(attributes.foreground.value_or(kBlack)));
  painter_.drawText(place, flags, printable);
  painter_.restore();
}

void QtCanvas::drawImage(const Image& image, const Rect& rect, const Rect& fromRect, CompositeOperation,
                         double fraction) {
  const auto* const picture = dynamic_cast<const QtImage*>(&image);
  if (picture == nullptr || rect.width <= 0 || rect.height <= 0) return;
  painter_.save();
  painter_.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
  painter_.setCompositionMode(QPainter::CompositionMode_SourceOver);
  painter_.setOpacity(painter_.opacity() * std::clamp(fraction, 0.0, 1.0));
  picture->draw(painter_, QRectF(rect.x, rect.y, rect.width, rect.height), fromRect);
  painter_.restore();
}

}  // namespace zelvo::platform::qt
