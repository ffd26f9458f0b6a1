#include "avi/chunk_codes.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

namespace zelvo::avi {

namespace {

std::array<char, 4> characters(FourCC code) {
  std::array<char, 4> text{};
  for (std::size_t i = 0; i < 4; ++i) text[i] = static_cast<char>(code.bytes()[i]);
  return text;
}

bool isDigit(char character) { return character >= '0' && character <= '9'; }

bool isVideo(const std::array<char, 4>& text) { return text[2] == 'd' && (text[3] == 'b' || text[3] == 'c'); }

}  // namespace

bool isPrintable(FourCC code) {
  const auto text = characters(code);
  return std::all_of(text.begin(), text.end(), [](char character) { return character >= 0x20 && character < 0x7f; });
}

bool isStreamData(FourCC code) {
  constexpr std::array<std::string_view, 7> kKinds = {"db", "dc", "pc", "wb", "tx", "sb", "__"};
  const auto text = characters(code);
  return isDigit(text[0]) && isDigit(text[1]) &&
         std::find(kKinds.begin(), kKinds.end(), std::string_view(text.data() + 2, 2)) != kKinds.end();
}

bool isStandardIndex(FourCC code) {
  const auto text = characters(code);
  return text[0] == 'i' && text[1] == 'x' && isDigit(text[2]) && isDigit(text[3]);
}

bool beginsChunkForSure(FourCC code) {
  return isStreamData(code) || isStandardIndex(code) || code == kList || code == kRiff || code == kJunk ||
         code == kIdx1;
}

bool namesSameData(FourCC one, FourCC other) {
  if (one == other) return true;
  const auto left = characters(one);
  const auto right = characters(other);
  return left[0] == right[0] && left[1] == right[1] && isVideo(left) && isVideo(right);
}

}  // namespace zelvo::avi
