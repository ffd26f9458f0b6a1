#include "avi/codec_text.h"

#include <algorithm>
#include <string_view>

#include "platform/utf8.h"

namespace zelvo::avi {

std::string codecText(std::span<const std::byte> code) {
  code = code.first(static_cast<std::size_t>(std::find(code.begin(), code.end(), std::byte{0}) - code.begin()));
  std::string bytes;
  for (const std::byte byte : code) bytes += static_cast<char>(byte);
  std::string text;
  for (std::string_view left = bytes; !left.empty();) {
    const std::size_t length = platform::utf8CharacterAt(left).length;
    text += length == 0 ? "\xEF\xBF\xBD" : left.substr(0, length);
    left.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return text;
}

}  // namespace zelvo::avi
