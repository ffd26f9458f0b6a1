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

inline constexpr Colour kBlue{0, 0, 1, 1};

struct Font {
  std::string name;
  double points = 0;
  [[nodiscard]] bool operator==(const Font&) const = default;
};

enum class UnderlineStyle { none = 0, single = 1 };

struct TextAttributes {
  std::optional<std::string> link;  ///< the address that the text leads to
  std::optional<Font> font;
  std::optional<Colour> foreground;
  UnderlineStyle underline = UnderlineStyle::none;
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
