/// Texts in the language of whoever reads them. A text is named by itself in English.
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
};

/// Says everything in English.
[[nodiscard]] const Translator& englishTranslator();

/// The text with "%1", "%2" and so on, 9 at the most, replaced by the values in their order. What a value holds is
/// not looked at again.
[[nodiscard]] std::string filled(std::string_view text, std::initializer_list<std::string_view> values);

}  // namespace zelvo::platform
