#include "storage/device_name.h"

#include "platform/utf8.h"

namespace zelvo::storage {

namespace {

unsigned byteAt(std::string_view text, std::size_t at) {
  return at < text.size() ? static_cast<unsigned char>(text[at]) : 0U;
}

bool isContinuation(unsigned byte) { return (byte & 0xC0U) == 0x80U; }

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
    const std::size_t length = platform::utf8CharacterAt(text).length;
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
