/// What a self-drawn control draws on. Units are points in the control's own coordinates (geometry.h), which may fall
/// between the pixels of a display: a canvas on one lets the edges of its filled and stroked rectangles fall on whole
/// pixels, so that frames stay sharp at every scale. Colours are device RGB.
/// Thread: main.
#pragma once

#include <string_view>

#include "platform/attributed_text.h"
#include "platform/geometry.h"

namespace zelvo::platform {

/// A picture that somebody else owns.
class Image {
 public:
  virtual ~Image() = default;
  /// The size, in points, at which the picture counts as drawn one to one. Its pixels stay as they are.
  virtual void setSize(const Size& size) = 0;
};

/// How drawn pixels meet those that are there.
enum class CompositeOperation { sourceOver = 2 };

/// A rectangle for `drawImage` that stands for the whole picture.
inline constexpr Rect kWholeImage{};

/// A rectangle whose width or height is not above 0 is never painted.
class Canvas {
 public:
  virtual ~Canvas() = default;

  /// Puts the colours aside; `restoreState` brings back those put aside last.
  virtual void saveState() = 0;
  virtual void restoreState() = 0;

  virtual void setFillColour(const Colour& colour) = 0;
  virtual void setStrokeColour(const Colour& colour) = 0;

  virtual void fillRect(const Rect& rect) = 0;
  /// Draws a frame of `width` points, half of it on each side of the rectangle's edge, with square corners.
  virtual void strokeRectWithWidth(const Rect& rect, double width) = 0;

  /// The room that `text` (UTF-8) takes on one line, however long.
  [[nodiscard]] virtual Size sizeWithAttributes(std::string_view text, const TextAttributes& attributes) = 0;
  /// Draws `text` into `rect`, from its upper edge on and not beyond it. With LineBreakMode::truncatingTail it stays on
  /// one line, and what does not fit the width gives way to an ellipsis at its end.
  virtual void drawInRect(std::string_view text, const Rect& rect, const TextAttributes& attributes) = 0;

  /// Draws the part `fromRect` of `image` (in points of the image's size; kWholeImage for all of it) scaled into
  /// `rect`, with `fraction` (0 to 1) of its opacity. Scaled pictures are smoothed.
  virtual void drawImage(const Image& image, const Rect& rect, const Rect& fromRect, CompositeOperation operation,
                         double fraction) = 0;
};

}  // namespace zelvo::platform
