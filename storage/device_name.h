/// Texts as the inventory takes them apart: device names, and texts that must be UTF-8 or fit a C string of a given
/// size.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zelvo::storage {

/// Characters of "/dev/".
constexpr std::size_t kDevicePrefixLength = 5;

/// Byte position of the character number `characters` (0 for the first); the text's size when it has fewer.
[[nodiscard]] std::size_t positionOfCharacter(std::string_view text, std::size_t characters);

[[nodiscard]] bool isUtf8(std::string_view text);

/// Each byte as two lower-case hexadecimal digits.
[[nodiscard]] std::string hexOf(std::string_view bytes);

/// True when the text is UTF-8 without a zero byte and fits, with the zero byte that ends it, into `capacity` bytes.
[[nodiscard]] bool fitsCString(std::string_view text, std::size_t capacity);

/// What follows the last "/"; the whole text when there is none.
[[nodiscard]] std::string_view afterLastSlash(std::string_view path);

}  // namespace zelvo::storage
