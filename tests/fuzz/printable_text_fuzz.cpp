// Text from outside on any bytes. What is made of it for a terminal
// - is UTF-8 (by the reading of codec names, which has a decoder of its own),
// - holds no byte of a control character and none of a character that sets a direction,
// - stays the same when it is made printable once more,
// - is the text itself when that was printable,
// - tells which bytes it was made of: each escape stands for those at its place.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>
#include <string_view>

#include "avi/codec_text.h"
#include "platform/printable_text.h"

namespace {

void require(bool holds, const char* claim, std::string_view text) {
  if (holds) return;
  std::fprintf(stderr, "not so: %s; of these %zu bytes:", claim, text.size());
  for (const char byte : text) std::fprintf(stderr, " %02x", static_cast<unsigned>(static_cast<unsigned char>(byte)));
  std::fputc('\n', stderr);
  std::abort();
}

bool isUtf8(std::string_view text) {
  return text.find('\0') == std::string_view::npos &&
         zelvo::avi::codecText(std::as_bytes(std::span(text.data(), text.size()))) == text;
}

/// Looks for the bytes of each such character, without a decoder.
bool steers(std::string_view text) {
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto byteAt = [&](std::size_t ahead) {
      return at + ahead < text.size() ? static_cast<unsigned char>(text[at + ahead]) : 0U;
    };
    if (byteAt(0) < 0x20 || byteAt(0) == 0x7f) return true;
    if (byteAt(0) == 0xc2 && byteAt(1) >= 0x80 && byteAt(1) < 0xa0) return true;
    if (byteAt(0) == 0xd8 && byteAt(1) == 0x9c) return true;
    if (byteAt(0) != 0xe2) continue;
    const unsigned last = byteAt(2);
    if (byteAt(1) == 0x80 && (last == 0x8e || last == 0x8f || (last >= 0xaa && last <= 0xae))) return true;
    if (byteAt(1) == 0x81 && last >= 0xa6 && last <= 0xa9) return true;
  }
  return false;
}

/// The bytes of a character below U+10000, but not below U+0080.
std::string inUtf8(unsigned long character) {
  const auto tail = [](unsigned long bits) { return static_cast<char>(0x80U | (bits & 0x3fU)); };
  if (character < 0x800) return {static_cast<char>(0xc0U | character >> 6U), tail(character)};
  return {static_cast<char>(0xe0U | character >> 12U), tail(character >> 6U), tail(character)};
}

/// What stands in `printable` for the beginning of `text` is taken off both; false when it is something else.
bool takeOff(std::string_view& printable, std::string_view& text) {
  std::string bytes(1, printable.front());
  std::size_t length = 1;
  if (printable.front() == '\\' && text.front() != '\\' && printable.size() >= 4) {
    const bool isByte = printable[1] == 'x';
    length = isByte ? 4 : 6;
    const unsigned long value = std::strtoul(std::string(printable.substr(2, length - 2)).c_str(), nullptr, 16);
    bytes = isByte ? std::string(1, static_cast<char>(value)) : inUtf8(value);
  }
  if (length > printable.size() || !text.starts_with(bytes)) return false;
  printable.remove_prefix(length);
  text.remove_prefix(bytes.size());
  return true;
}

bool tells(std::string_view printable, std::string_view text) {
  while (!printable.empty() && !text.empty()) {
    if (!takeOff(printable, text)) return false;
  }
  return printable.empty() && text.empty();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(data, data + size);
  const std::string printable = zelvo::platform::printableText(text);
  require(isUtf8(printable), "it is UTF-8", text);
  require(!steers(printable), "it steers no terminal", text);
  require(zelvo::platform::printableText(printable) == printable, "it stays the same", text);
  if (isUtf8(text) && !steers(text)) require(printable == text, "printable text stays as it is", text);
  require(tells(printable, text), "it tells which bytes it was made of", text);
  return 0;
}
