#include "platform/translator.h"

#include "platform/shown_text.h"

namespace zelvo::platform {

namespace {

class English final : public Translator {
 public:
  [[nodiscard]] std::string translated(std::string_view english) const override { return std::string(english); }
  [[nodiscard]] std::string counted(std::string_view english, std::uint64_t number) const override {
    constexpr std::string_view kNumber = "%n";
    constexpr std::string_view kPlural = "(s)";
    std::string text(english);
    if (const std::size_t at = text.find(kPlural); at != std::string::npos) {
      text.replace(at, kPlural.size(), number == 1 ? "" : "s");
    }
    if (const std::size_t at = text.find(kNumber); at != std::string::npos) {
      text.replace(at, kNumber.size(), shownNumber(number));
    }
    return text;
  }
  [[nodiscard]] std::string number(std::uint64_t number) const override { return shownNumber(number); }
  [[nodiscard]] std::string fixedPoint(double number, int digits) const override {
    return platform::fixedPoint(number, digits);
  }
};

}  // namespace

const Translator& englishTranslator() {
  static const English english;
  return english;
}

std::string filled(std::string_view text, std::initializer_list<std::string_view> values) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::size_t number = i + 1 < text.size() && text[i] == '%' ? static_cast<std::size_t>(text[i + 1] - '0') : 0;
    if (number >= 1 && number <= values.size() && number <= 9) {
      out += values.begin()[number - 1];
      ++i;
    } else {
      out += text[i];
    }
  }
  return out;
}

}  // namespace zelvo::platform
