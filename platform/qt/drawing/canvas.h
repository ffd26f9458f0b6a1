/// Draws a self-drawn control with a painter. Edges of filled and stroked rectangles fall on whole pixels of the
/// device, so that they are sharp at every scale.
/// Thread: main.
#pragma once

#include <QColor>
#include <QFont>
#include <QPainter>
#include <vector>

#include "platform/canvas.h"

namespace zelvo::platform::qt {

[[nodiscard]] QColor shown(const Colour& colour);
[[nodiscard]] Colour plain(const QColor& colour);
/// The font of some text; the program's own without one. A point is one logical pixel.
/// Decision: controls, A point is one logical pixel
[[nodiscard]] QFont fontOf(const TextAttributes& attributes);

class QtCanvas final : public Canvas {
 public:
  /// Draws with `painter`, which must outlive it and gets its state back.
  explicit QtCanvas(QPainter& painter) : painter_(painter) {}

  void saveState() override { saved_.push_back(colours_); }
  void restoreState() override;
  void setFillColour(const Colour& colour) override { colours_.fill = colour; }
  void setStrokeColour(const Colour& colour) override { colours_.stroke = colour; }
  void fillRect(const Rect& rect) override;
  void strokeRectWithWidth(const Rect& rect, double width) override;
  [[nodiscard]] Size sizeWithAttributes(std::string_view text, const TextAttributes& attributes) override;
  void drawInRect(std::string_view text, const Rect& rect, const TextAttributes& attributes) override;
  void drawImage(const Image& image, const Rect& rect, const Rect& fromRect, CompositeOperation operation,
                 double fraction) override;

  /// For hosts that draw the element's own look.
  [[nodiscard]] QPainter& painter() const { return painter_; }

 private:
  struct Colours {
    Colour fill = kBlack;
    Colour stroke = kBlack;
  };

  /// `rect` with its edges moved to whole pixels of the device, in pixels of the device.
  [[nodiscard]] QRectF snapped(const Rect& rect) const;
  /// Fills a rectangle given in pixels of the device.
  void fillPixels(const QRectF& pixels, const Colour& colour);

  QPainter& painter_;
  Colours colours_;
  std::vector<Colours> saved_;
};

}  // namespace zelvo::platform::qt
