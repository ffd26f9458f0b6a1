/// Texts and numbers in the language of whoever reads them. A text is named by itself in English.
/// Decision: window, Texts are named by their English
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace zelvo::platform {

/// Thread: any.
class Translator {
 public:
  virtual ~Translator() = default;
  /// The text in the reader's language; as it is when there is no translation of it.
  [[nodiscard]] virtual std::string translated(std::string_view english) const = 0;
  /// The same for a text that tells a number, as "%n pictures": in the form that the language has for so many, with the
  /// number in its place. English says "1 picture" where the noun behind %n ends in "(s)": "%n picture(s)".
  [[nodiscard]] virtual std::string counted(std::string_view english, std::uint64_t number) const = 0;
  /// 1234567 as "1,234,567".
  [[nodiscard]] virtual std::string number(std::uint64_t number) const = 0;
  /// With `digits` places after the point, and no groups: "1234.5".
  [[nodiscard]] virtual std::string fixedPoint(double number, int digits) const = 0;
};

/// Says everything in English.
[[nodiscard]] const Translator& englishTranslator();

/// Marks a text as one that a Translator is given somewhere else, so that it is found by those who look for all of
/// them. A text that stands where it is translated needs no mark.
[[nodiscard]] constexpr std::string_view translatable(std::string_view english) { return english; }

/// The text with "%1", "%2" and so on, 9 at the most, replaced by the values in their order. What a value holds is
/// not looked at again.
[[nodiscard]] std::string filled(std::string_view text, std::initializer_list<std::string_view> values);

}  // namespace zelvo::platform
