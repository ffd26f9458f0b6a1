#include "platform/headless/recording_canvas.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace zelvo::platform::headless {

namespace {

constexpr double kLetterWidth = 0.5;
constexpr double kLineHeight = 1.25;
constexpr std::string_view kEllipsis = "\u2026";

double pointsOf(const TextAttributes& attributes) { return attributes.font ? attributes.font->points : 0; }

bool startsLetter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; }

double widthOf(std::string_view text, double points) {
  return static_cast<double>(std::count_if(text.begin(), text.end(), startsLetter)) * points * kLetterWidth;
}

/// What can be read of `text` on one line of `width` points.
std::string truncatedTail(std::string_view text, double width, double points) {
  if (widthOf(text, points) <= width) return std::string(text);
  std::string kept(text);
  while (!kept.empty() && widthOf(kept, points) + widthOf(kEllipsis, points) > width) {
    while (!kept.empty() && !startsLetter(kept.back())) kept.pop_back();
    if (!kept.empty()) kept.pop_back();
  }
  return widthOf(kEllipsis, points) <= width ? kept + std::string(kEllipsis) : std::string();
}

std::string looks(const TextAttributes& attributes) {
  std::string out;
  if (attributes.font) out += "; " + attributes.font->name + " " + written(attributes.font->points);
  if (attributes.foreground) out += "; " + written(*attributes.foreground);
  if (attributes.underline == UnderlineStyle::single) out += "; underlined";
  if (attributes.paragraph) {
    const bool truncates = attributes.paragraph->lineBreakMode == LineBreakMode::truncatingTail;
    out += truncates ? "; truncating tail" : "; wrapping";
    out += attributes.paragraph->alignment == TextAlignment::centre ? "; centred" : "; left";
  }
  return out;
}

std::string inQuotes(std::string_view text) { return '"' + std::string(text) + '"'; }

}  // namespace

std::string written(double number) {
  std::array<char, 32> digits{};
  const int length = std::snprintf(digits.data(), digits.size(), "%.6g", number);
  return {digits.data(), static_cast<std::size_t>(length)};
}

std::string written(const Rect& rect) {
  return written(rect.x) + ", " + written(rect.y) + ", " + written(rect.width) + ", " + written(rect.height);
}

std::string written(const Colour& colour) {
  return written(colour.red) + ", " + written(colour.green) + ", " + written(colour.blue) + ", " +
         written(colour.alpha);
}

void RecordingCanvas::saveState() {
  ++savedStates_;
  events_.add("saveState()");
}

void RecordingCanvas::restoreState() {
  --savedStates_;
  events_.add("restoreState()");
}

void RecordingCanvas::setFillColour(const Colour& colour) { events_.add("setFillColour(" + written(colour) + ")"); }

void RecordingCanvas::setStrokeColour(const Colour& colour) { events_.add("setStrokeColour(" + written(colour) + ")"); }

void RecordingCanvas::fillRect(const Rect& rect) { events_.add("fillRect(" + written(rect) + ")"); }

void RecordingCanvas::strokeRectWithWidth(const Rect& rect, double width) {
  events_.add("strokeRectWithWidth(" + written(rect) + "; " + written(width) + ")");
}

Size RecordingCanvas::sizeWithAttributes(std::string_view text, const TextAttributes& attributes) {
  events_.add("sizeWithAttributes(" + inQuotes(text) + looks(attributes) + ")");
  const double points = pointsOf(attributes);
  return {widthOf(text, points), points * kLineHeight};
}

void RecordingCanvas::drawInRect(std::string_view text, const Rect& rect, const TextAttributes& attributes) {
  const bool truncates = attributes.paragraph && attributes.paragraph->lineBreakMode == LineBreakMode::truncatingTail;
  const std::string read = truncates ? truncatedTail(text, rect.width, pointsOf(attributes)) : std::string(text);
  events_.add("drawInRect(" + inQuotes(read) + "; " + written(rect) + looks(attributes) + ")");
}

void RecordingCanvas::drawImage(const Image& image, const Rect& rect, const Rect& fromRect,
                                CompositeOperation operation, double fraction) {
  const auto& picture = dynamic_cast<const RecordingImage&>(image);
  events_.add("drawImage(" + picture.name() + " of " + written(picture.size().width) + " x " +
              written(picture.size().height) + "; " + written(rect) + "; from " +
              (fromRect == kWholeImage ? std::string("whole") : written(fromRect)) + "; operation " +
              std::to_string(static_cast<int>(operation)) + "; fraction " + written(fraction) + ")");
}

}  // namespace zelvo::platform::headless
