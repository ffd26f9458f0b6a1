/// A canvas that writes each operation down as a line of text, with coordinates in points and colours as fractions. Its
/// letters are all alike: half as wide as the font's size, on lines of 1.25 times that size.
/// Thread: main.
#pragma once

#include <string>
#include <utility>

#include "platform/canvas.h"
#include "platform/headless/events.h"

namespace zelvo::platform::headless {

/// A picture that is known by its name only.
class RecordingImage final : public Image {
 public:
  explicit RecordingImage(std::string name) : name_(std::move(name)) {}
  void setSize(const Size& size) override { size_ = size; }
  [[nodiscard]] const std::string& name() const { return name_; }
  [[nodiscard]] Size size() const { return size_; }

 private:
  std::string name_;
  Size size_;
};

/// Text is written as it would be read: a truncated one with its ellipsis.
class RecordingCanvas final : public Canvas {
 public:
  explicit RecordingCanvas(Events& events) : events_(events) {}

  void saveState() override;
  void restoreState() override;
  void setFillColour(const Colour& colour) override;
  void setStrokeColour(const Colour& colour) override;
  void fillRect(const Rect& rect) override;
  void strokeRectWithWidth(const Rect& rect, double width) override;
  [[nodiscard]] Size sizeWithAttributes(std::string_view text, const TextAttributes& attributes) override;
  void drawInRect(std::string_view text, const Rect& rect, const TextAttributes& attributes) override;
  void drawImage(const Image& image, const Rect& rect, const Rect& fromRect, CompositeOperation operation,
                 double fraction) override;

  /// States that are put aside and not brought back yet; below 0 when there was none to bring back.
  [[nodiscard]] int savedStates() const { return savedStates_; }

 private:
  Events& events_;
  int savedStates_ = 0;
};

/// "x, y, width, height", each with as few digits as it needs.
[[nodiscard]] std::string written(const Rect& rect);
/// "red, green, blue, alpha".
[[nodiscard]] std::string written(const Colour& colour);
[[nodiscard]] std::string written(double number);

}  // namespace zelvo::platform::headless
