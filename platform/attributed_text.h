/// Text with attributes for its looks. Colours are fractions, 0 to 1; sizes are in points.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace zelvo::platform {

/// Device RGB.
struct Colour {
  double red = 0;
  double green = 0;
  double blue = 0;
  double alpha = 1;
  [[nodiscard]] bool operator==(const Colour&) const = default;
};

// Fractions of device RGB and no named colours of a toolkit, whose grey may be another shade. Blends are made of them
// component by component, and nothing is rounded to bytes before the canvas does it.
inline constexpr Colour kBlue{0, 0, 1, 1};
inline constexpr Colour kWhite{1, 1, 1, 1};
inline constexpr Colour kGrey{0.5, 0.5, 0.5, 1};
inline constexpr Colour kBlack{0, 0, 0, 1};

/// `colour` with `fraction` (0 to 1) of the way gone toward `ofColour`.
[[nodiscard]] constexpr Colour blendedColour(const Colour& colour, double fraction, const Colour& ofColour) {
  const auto blend = [fraction](double from, double to) { return from * (1 - fraction) + to * fraction; };
  return {blend(colour.red, ofColour.red), blend(colour.green, ofColour.green), blend(colour.blue, ofColour.blue),
          blend(colour.alpha, ofColour.alpha)};
}

/// Names that stand for the platform's own fonts instead of a family.
inline constexpr const char* kSystemFont = "system";
inline constexpr const char* kBoldSystemFont = "bold system";

struct Font {
  std::string name;  ///< a family, or one of the two names above
  double points = 0;
  [[nodiscard]] bool operator==(const Font&) const = default;
};

enum class UnderlineStyle { none = 0, single = 1 };

/// How a line ends that is longer than its rectangle.
enum class LineBreakMode { byWordWrapping = 0, truncatingTail = 4 };
enum class TextAlignment { left = 0, centre = 2 };

struct ParagraphStyle {
  LineBreakMode lineBreakMode = LineBreakMode::byWordWrapping;
  TextAlignment alignment = TextAlignment::left;
  [[nodiscard]] bool operator==(const ParagraphStyle&) const = default;
};

struct TextAttributes {
  std::optional<std::string> link;  ///< the address that the text leads to
  std::optional<Font> font;
  std::optional<Colour> foreground;
  UnderlineStyle underline = UnderlineStyle::none;
  std::optional<ParagraphStyle> paragraph = std::nullopt;
  [[nodiscard]] bool operator==(const TextAttributes&) const = default;
};

/// A piece of text that looks the same over its whole length.
struct TextRun {
  std::string text;
  TextAttributes attributes;
  [[nodiscard]] bool operator==(const TextRun&) const = default;
};

/// Runs one after the other.
struct AttributedText {
  std::vector<TextRun> runs;

  void append(const AttributedText& other) { runs.insert(runs.end(), other.runs.begin(), other.runs.end()); }
  /// The text without its looks.
  [[nodiscard]] std::string text() const {
    std::string whole;
    for (const TextRun& run : runs) whole += run.text;
    return whole;
  }
  [[nodiscard]] bool operator==(const AttributedText&) const = default;
};

}  // namespace zelvo::platform
