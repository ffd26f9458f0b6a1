#include "platform/utf8.h"

#include <array>

namespace zelvo::platform {

namespace {

/// How the first byte of a character looks, and what characters of that many bytes are for.
struct Shape {
  unsigned mask;
  unsigned mark;
  char32_t smallest;
};
constexpr std::array kShapes = {
    Shape{0x80, 0x00, 0},
    Shape{0xe0, 0xc0, 0x80},
    Shape{0xf0, 0xe0, 0x800},
    Shape{0xf8, 0xf0, 0x10000},
};

}  // namespace

Utf8Character utf8CharacterAt(std::string_view text) {
  if (text.empty()) return {};
  const auto byteAt = [text](std::size_t at) { return static_cast<unsigned>(static_cast<unsigned char>(text[at])); };
  std::size_t length = 1;
  for (const Shape& shape : kShapes) {
    if ((byteAt(0) & shape.mask) != shape.mark) {
      ++length;
      continue;
    }
    if (length > text.size()) return {};
    char32_t value = byteAt(0) & ~shape.mask & 0xffU;
    for (std::size_t at = 1; at < length; ++at) {
      if ((byteAt(at) & 0xc0U) != 0x80) return {};
      value = value << 6U | (byteAt(at) & 0x3fU);
    }
    const bool surrogate = value >= 0xd800 && value <= 0xdfff;
    if (value < shape.smallest || value > 0x10ffff || surrogate) return {};
    return {value, length};
  }
  return {};
}

}  // namespace zelvo::platform
