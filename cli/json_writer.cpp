#include "cli/json_writer.h"

#include <algorithm>
#include <span>
#include <utility>

#include "avi/codec_text.h"
#include "cli/shown_text.h"
#include "platform/printable_text.h"
#include "platform/utf8.h"

namespace zelvo::cli {

namespace {

constexpr std::string_view kHexDigits = "0123456789abcdef";

/// The bytes as UTF-8, up to the first zero byte; what is not UTF-8 becomes U+FFFD.
std::string asUtf8(std::string_view bytes) { return avi::codecText(std::as_bytes(std::span(bytes))); }

bool isPlain(char character) { return character >= 0x20 && character < 0x7f && character != '"' && character != '\\'; }

/// What JSON does not allow as it is, and what would steer a terminal that the object is printed to.
void appendEscaped(std::string& out, std::string_view utf8) {
  for (;;) {
    // Nearly all texts are plain from end to end.
    const auto plain = static_cast<std::size_t>(std::ranges::find_if_not(utf8, isPlain) - utf8.begin());
    out += utf8.substr(0, plain);
    utf8.remove_prefix(plain);
    if (utf8.empty()) return;
    const platform::Utf8Character character = platform::utf8CharacterAt(utf8);
    if (platform::steersTerminal(character.value)) {
      out += "\\u";
      for (unsigned shift = 16; shift > 0; shift -= 4) out += kHexDigits[character.value >> (shift - 4) & 15U];
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

void JsonWriter::seconds(double value) { raw(fixedPoint(value, 3)); }

void JsonWriter::pathMembers(std::string_view path) {
  member("path", path);
  if (asUtf8(path) == path) return;
  std::string hex;
  for (const char character : path) {
    hex += kHexDigits[static_cast<unsigned char>(character) >> 4U];
    hex += kHexDigits[static_cast<unsigned char>(character) & 15U];
  }
  member("path_hex", hex);
}

std::string JsonWriter::take() { return std::exchange(out_, {}); }

}  // namespace zelvo::cli
