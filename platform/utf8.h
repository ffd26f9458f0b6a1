/// UTF-8, one character at a time.
#pragma once

#include <cstddef>
#include <string_view>

namespace zelvo::platform {

struct Utf8Character {
  char32_t value = 0;
  std::size_t length = 0;  ///< bytes; 0 when the text starts with no character
};

/// The character that `text` starts with. None is what is cut short, longer than need be, a surrogate, or beyond
/// U+10FFFF.
/// Thread: any.
[[nodiscard]] Utf8Character utf8CharacterAt(std::string_view text);

}  // namespace zelvo::platform
