#include "storage/device_name.h"

namespace zelvo::storage {

namespace {

unsigned byteAt(std::string_view text, std::size_t at) {
  return at < text.size() ? static_cast<unsigned char>(text[at]) : 0U;
}

bool isContinuation(unsigned byte) { return (byte & 0xC0U) == 0x80U; }

/// Bytes of the UTF-8 character that `text` starts with; 0 when it starts with none.
std::size_t characterLength(std::string_view text) {
  const unsigned first = byteAt(text, 0);
  const unsigned second = byteAt(text, 1);
  if (first < 0x80) return 1;
  if (first < 0xC2 || first > 0xF4) return 0;
  const bool overlong = (first == 0xE0 && second < 0xA0) || (first == 0xF0 && second < 0x90);
  const bool beyond = (first == 0xED && second >= 0xA0) || (first == 0xF4 && second >= 0x90);
  if (overlong || beyond) return 0;
  const std::size_t length = first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
  for (std::size_t at = 1; at < length; ++at) {
    if (!isContinuation(byteAt(text, at))) return 0;
  }
  return length;
}

}  // namespace

std::size_t positionOfCharacter(std::string_view text, std::size_t characters) {
  std::size_t position = 0;
  for (; characters > 0 && position < text.size(); --characters) {
    ++position;
    while (isContinuation(byteAt(text, position))) ++position;
  }
  return position;
}

bool isUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = characterLength(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

std::string hexOf(std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string hex;
  for (const char byte : bytes) {
    hex += kDigits[static_cast<unsigned char>(byte) >> 4U];
    hex += kDigits[static_cast<unsigned char>(byte) & 15U];
  }
  return hex;
}

bool fitsCString(std::string_view text, std::size_t capacity) {
  return text.size() < capacity && text.find('\0') == std::string_view::npos && isUtf8(text);
}

std::string_view afterLastSlash(std::string_view path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

}  // namespace zelvo::storage
