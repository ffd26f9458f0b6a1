#include "platform/printable_text.h"

#include <cstdint>

#include "platform/utf8.h"

namespace zelvo::platform {

namespace {

void appendEscape(std::string& out, char kind, std::uint32_t value, unsigned digits) {
  constexpr std::string_view kHexDigits = "0123456789abcdef";
  out += '\\';
  out += kind;
  for (unsigned left = digits; left > 0; --left) out += kHexDigits[value >> 4U * (left - 1) & 15U];
}

}  // namespace

bool steersTerminal(char32_t character) {
  const auto isBetween = [character](char32_t first, char32_t last) { return character >= first && character <= last; };
  return character < 0x20 || isBetween(0x7f, 0x9f) || character == 0x61c || isBetween(0x200e, 0x200f) ||
         isBetween(0x202a, 0x202e) || isBetween(0x2066, 0x2069);
}

std::string printableText(std::string_view text) {
  std::string printable;
  printable.reserve(text.size());
  while (!text.empty()) {
    const Utf8Character character = utf8CharacterAt(text);
    if (character.length == 0) {
      appendEscape(printable, 'x', static_cast<unsigned char>(text.front()), 2);
      text.remove_prefix(1);
      continue;
    }
    if (!steersTerminal(character.value)) {
      printable += text.substr(0, character.length);
    } else if (character.value < 0x80) {
      appendEscape(printable, 'x', character.value, 2);
    } else {
      appendEscape(printable, 'u', character.value, 4);
    }
    text.remove_prefix(character.length);
  }
  return printable;
}

}  // namespace zelvo::platform
