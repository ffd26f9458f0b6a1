#include "controls/filled_button.h"

#include <cmath>

namespace zelvo::controls {

namespace {

constexpr platform::Colour kEnabledFill{0.0627, 0.5373, 0.8353, 1.0};
constexpr platform::Colour kHoverFrame{0.2314, 0.7412, 0.9333, 1.0};
constexpr platform::Colour kEnabledCaption = platform::kWhite;
constexpr platform::Colour kDisabledFill = platform::kGrey;
constexpr platform::Colour kDisabledCaption = platform::blendedColour(platform::kWhite, 0.25, platform::kGrey);
constexpr double kHoverFrameWidth = 3.0;
constexpr double kCaptionInset = 2.0;
constexpr double kCaptionPoints = 13.0;

/// In the middle of `bounds`, on one line that loses its end when it is too long.
void drawCaption(platform::Canvas& canvas, const std::string& caption, const platform::Rect& bounds,
                 const platform::Colour& colour) {
  const platform::Rect room = platform::insetRect(bounds, kCaptionInset, kCaptionInset);
  platform::TextAttributes attributes;
  attributes.foreground = colour;
  attributes.font = platform::Font{platform::kSystemFont, kCaptionPoints};
  attributes.paragraph =
      platform::ParagraphStyle{platform::LineBreakMode::truncatingTail, platform::TextAlignment::centre};
  const double height = canvas.sizeWithAttributes(caption, attributes).height;
  const double y = std::round(room.y + room.height / 2 - height / 2);
  canvas.drawInRect(caption, {room.x, y, room.width, height}, attributes);
}

}  // namespace

void FilledButton::setDisabled(bool disabled) {
  base().setEnabled(!disabled);
  disabled_ = disabled;
  host().setNeedsDisplay();
}

void FilledButton::drawRect(platform::Canvas& canvas, const platform::Rect& rect) {
  drawnCaption_ = caption();
  HoveringButton::drawRect(canvas, rect);
}

void FilledButton::drawLook(platform::Canvas& canvas) {
  const platform::Rect bounds = host().bounds();
  canvas.setFillColour(disabled_ ? kDisabledFill : kEnabledFill);
  canvas.fillRect(bounds);
  if (hovering() && !disabled_) strokeInnerFrame(canvas, bounds, kHoverFrameWidth, kHoverFrame);
  if (drawnCaption_) drawCaption(canvas, *drawnCaption_, bounds, disabled_ ? kDisabledCaption : kEnabledCaption);
}

}  // namespace zelvo::controls
