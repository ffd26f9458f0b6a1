#include "platform/shown_text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace zelvo::platform {

std::string fixedPoint(double number, int digits) {
  std::array<char, 64> text{};
  const int length = std::snprintf(text.data(), text.size(), "%.*f", digits, number);
  return {text.data(), static_cast<std::size_t>(length)};
}

std::string shownSize(std::uint64_t bytes) {
  if (bytes < 1000) return counted(bytes, "byte");
  const auto size = static_cast<double>(bytes);
  // The limits are those at which rounding would show "1000.0" or "1000.00".
  if (bytes < 999950) return fixedPoint(size / 1e3, 1) + " kB";
  if (bytes < 999950000) return fixedPoint(size / 1e6, 1) + " MB";
  if (bytes < 999995000000) return fixedPoint(size / 1e9, 2) + " GB";
  return fixedPoint(size / 1e12, 2) + " TB";
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

std::string shownSeconds(double seconds) {
  if (seconds < 60) return fixedPoint(seconds, 2) + " s";
  const auto whole = static_cast<std::uint64_t>(seconds);
  return std::to_string(whole / 60) + " min " + std::to_string(whole % 60) + " s";
}

std::string shownTime(double seconds) {
  const auto hundredths = static_cast<std::uint64_t>(std::llround(std::clamp(seconds, 0.0, 1e12) * 100));
  const auto two = [](std::uint64_t number) { return (number < 10 ? "0" : "") + std::to_string(number); };
  const std::uint64_t minutes = hundredths / 6000;
  const std::string rest = two(hundredths / 100 % 60) + "." + two(hundredths % 100);
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
