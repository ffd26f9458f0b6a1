/// A language in which every text stands in brackets, so that a test sees what was translated. Until it is switched on
/// it is English.
#pragma once

#include <string>
#include <string_view>

#include "platform/translator.h"

namespace zelvo::tests {

class MarkedTranslator final : public platform::Translator {
 public:
  /// Before anything is said; thread: the test's.
  void switchOn() { isOn_ = true; }

  [[nodiscard]] std::string translated(std::string_view english) const override { return marked(std::string(english)); }
  [[nodiscard]] std::string counted(std::string_view english, std::uint64_t number) const override {
    return marked(platform::englishTranslator().counted(english, number));
  }
  [[nodiscard]] std::string number(std::uint64_t number) const override {
    return platform::englishTranslator().number(number);
  }
  /// With a comma, as many languages write it.
  [[nodiscard]] std::string fixedPoint(double number, int digits) const override {
    std::string text = platform::englishTranslator().fixedPoint(number, digits);
    if (const std::size_t point = text.find('.'); isOn_ && point != std::string::npos) text[point] = ',';
    return text;
  }

 private:
  [[nodiscard]] std::string marked(const std::string& text) const { return isOn_ ? "[" + text + "]" : text; }

  bool isOn_ = false;
};

}  // namespace zelvo::tests
