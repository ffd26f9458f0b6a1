#include "platform/json_writer.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>

#include "platform/printable_text.h"
#include "platform/utf8.h"

namespace zelvo::platform {

namespace {

constexpr std::string_view kJsonHexDigits = "0123456789abcdef";

/// The bytes as UTF-8, up to the first zero byte; what is not UTF-8 becomes U+FFFD.
std::string asUtf8(std::string_view bytes) {
  std::string text;
  for (bytes = bytes.substr(0, bytes.find('\0')); !bytes.empty();) {
    const std::size_t length = utf8CharacterAt(bytes).length;
    text += length == 0 ? "\xEF\xBF\xBD" : bytes.substr(0, length);
    bytes.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return text;
}

bool isPlain(char character) { return character >= 0x20 && character < 0x7f && character != '"' && character != '\\'; }

/// What JSON does not allow as it is, and what would steer a terminal that the object is printed to.
void appendEscaped(std::string& out, std::string_view utf8) {
  for (;;) {
    // Nearly all texts are plain from end to end.
    const auto plain = static_cast<std::size_t>(std::ranges::find_if_not(utf8, isPlain) - utf8.begin());
    out += utf8.substr(0, plain);
    utf8.remove_prefix(plain);
    if (utf8.empty()) return;
    const Utf8Character character = utf8CharacterAt(utf8);
    if (steersTerminal(character.value)) {
      out += "\\u";
      for (unsigned shift = 16; shift > 0; shift -= 4) out += kJsonHexDigits[character.value >> (shift - 4) & 15U];
    } else {
      if (character.value == '"' || character.value == '\\') out += '\\';
      out += utf8.substr(0, character.length);
    }
    utf8.remove_prefix(std::max<std::size_t>(character.length, 1));
  }
}

}  // namespace

void JsonWriter::separate() {
  if (needsComma_) out_ += ',';
  needsComma_ = true;
}

void JsonWriter::open(char bracket) {
  separate();
  out_ += bracket;
  needsComma_ = false;
}

void JsonWriter::close(char bracket) {
  out_ += bracket;
  needsComma_ = true;
}

void JsonWriter::raw(std::string_view value) {
  separate();
  out_ += value;
}

void JsonWriter::key(std::string_view name) {
  text(name);
  out_ += ':';
  needsComma_ = false;
}

void JsonWriter::text(std::string_view value) {
  separate();
  out_ += '"';
  // A text may hold zero bytes, which end a code's text: each stretch between them is taken by itself.
  for (;;) {
    const std::size_t zero = value.find('\0');
    appendEscaped(out_, asUtf8(value.substr(0, zero)));
    if (zero == std::string_view::npos) break;
    out_ += "\\u0000";
    value.remove_prefix(zero + 1);
  }
  out_ += '"';
}

void JsonWriter::seconds(double value) {
  std::array<char, 400> digits{};  // of the largest number
  const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(),
                                          std::isfinite(value) ? value : 0.0, std::chars_format::fixed, 3);
  raw(std::string_view(digits.data(), static_cast<std::size_t>(end - digits.data())));
}

void JsonWriter::pathMembers(std::string_view path) {
  member("path", path);
  if (asUtf8(path) == path) return;
  std::string hex;
  for (const char character : path) {
    hex += kJsonHexDigits[static_cast<unsigned char>(character) >> 4U];
    hex += kJsonHexDigits[static_cast<unsigned char>(character) & 15U];
  }
  member("path_hex", hex);
}

std::string JsonWriter::take() { return std::exchange(out_, {}); }

}  // namespace zelvo::platform
