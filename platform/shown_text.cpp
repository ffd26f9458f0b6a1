#include "platform/shown_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace zelvo::platform {

std::string fixedPoint(double number, int digits) {
  std::array<char, 400> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed, digits);
  return {text.data(), end.ptr};
}

std::string shownSize(std::uint64_t bytes, const Translator& translator) {
  if (bytes < 1000) return translator.counted("%n byte(s)", bytes);
  const auto shown = [&](std::string_view unit, double scale, int digits) {
    return filled(translator.translated(unit), {translator.fixedPoint(static_cast<double>(bytes) / scale, digits)});
  };
  // The limits are those at which rounding would show "1000.0" or "1000.00".
  if (bytes < 999950) return shown(translatable("%1 kB"), 1e3, 1);
  if (bytes < 999950000) return shown(translatable("%1 MB"), 1e6, 1);
  if (bytes < 999995000000) return shown(translatable("%1 GB"), 1e9, 2);
  return shown(translatable("%1 TB"), 1e12, 2);
}

std::string shownNumber(std::uint64_t number) {
  std::string digits = std::to_string(number);
  for (std::size_t at = digits.size(); at > 3;) {
    at -= 3;
    digits.insert(at, ",");
  }
  return digits;
}

std::string counted(std::uint64_t number, std::string_view noun) {
  std::string text = shownNumber(number) + " " + std::string(noun);
  if (number != 1) text += 's';
  return text;
}

std::string shownSeconds(double seconds, const Translator& translator) {
  if (seconds < 60) return filled(translator.translated("%1 s"), {translator.fixedPoint(seconds, 2)});
  const auto whole = static_cast<std::uint64_t>(seconds);
  return filled(translator.translated("%1 min %2 s"), {std::to_string(whole / 60), std::to_string(whole % 60)});
}

std::string shownTime(double seconds, const Translator& translator) {
  const auto hundredths = static_cast<std::uint64_t>(std::llround(std::clamp(seconds, 0.0, 1e12) * 100));
  const auto two = [](std::uint64_t number) { return (number < 10 ? "0" : "") + std::to_string(number); };
  const std::uint64_t minutes = hundredths / 6000;
  const std::uint64_t left = hundredths % 6000;
  const std::string rest = (left < 1000 ? "0" : "") + translator.fixedPoint(static_cast<double>(left) / 100, 2);
  if (minutes < 60) return std::to_string(minutes) + ":" + rest;
  return std::to_string(minutes / 60) + ":" + two(minutes % 60) + ":" + rest;
}

std::string shownHex(std::uint64_t number, int digits) {
  std::array<char, 32> text{};
  const int length =
      std::snprintf(text.data(), text.size(), "0x%0*llx", digits, static_cast<unsigned long long>(number));
  return {text.data(), static_cast<std::size_t>(length)};
}

std::string shortened(std::string text, std::size_t limit) {
  if (text.size() <= limit) return text;
  std::size_t end = limit > 3 ? limit - 3 : 0;
  // Never in the middle of a UTF-8 character.
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xc0U) == 0x80) --end;
  return text.substr(0, end) + "...";
}

}  // namespace zelvo::platform
