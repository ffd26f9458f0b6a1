#include "avi/codec_text.h"

#include <algorithm>
#include <cstdint>

namespace zelvo::avi {

namespace {

/// Length of the UTF-8 character that `bytes` starts with; 0 when it starts with none.
std::size_t characterLength(std::span<const std::byte> bytes) {
  const auto at = [&](std::size_t i) { return std::to_integer<std::uint32_t>(bytes[i]); };
  const std::uint32_t first = at(0);
  if (first < 0x80) return 1;
  std::size_t length = 0;
  std::uint32_t character = 0;
  std::uint32_t smallest = 0;
  if ((first & 0xe0U) == 0xc0) {
    length = 2, character = first & 0x1fU, smallest = 0x80;
  } else if ((first & 0xf0U) == 0xe0) {
    length = 3, character = first & 0x0fU, smallest = 0x800;
  } else if ((first & 0xf8U) == 0xf0) {
    length = 4, character = first & 0x07U, smallest = 0x10000;
  }
  if (length == 0 || length > bytes.size()) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((at(i) & 0xc0U) != 0x80) return 0;
    character = character << 6U | (at(i) & 0x3fU);
  }
  const bool surrogate = character >= 0xd800 && character <= 0xdfff;
  return character < smallest || character > 0x10ffff || surrogate ? 0 : length;
}

}  // namespace

std::string codecText(std::span<const std::byte> code) {
  code = code.first(static_cast<std::size_t>(std::find(code.begin(), code.end(), std::byte{0}) - code.begin()));
  std::string text;
  while (!code.empty()) {
    const std::size_t length = characterLength(code);
    if (length == 0) {
      text += "\xEF\xBF\xBD";
      code = code.subspan(1);
      continue;
    }
    for (const std::byte byte : code.first(length)) text += static_cast<char>(byte);
    code = code.subspan(length);
  }
  return text;
}

}  // namespace zelvo::avi
