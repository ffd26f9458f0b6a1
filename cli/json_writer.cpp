#include "cli/json_writer.h"

#include <span>
#include <utility>

#include "cli/shown_text.h"
#include "engine/codec_text.h"

namespace zelvo::cli {

namespace {

constexpr std::string_view kHexDigits = "0123456789abcdef";

/// The bytes as UTF-8, up to the first zero byte; what is not UTF-8 becomes U+FFFD.
std::string asUtf8(std::string_view bytes) { return engine::codecText(std::as_bytes(std::span(bytes))); }

void appendEscaped(std::string& out, std::string_view utf8) {
  for (const char character : utf8) {
    const auto value = static_cast<unsigned char>(character);
    if (character == '"' || character == '\\') {
      out += '\\';
      out += character;
    } else if (value < 0x20 || value == 0x7f) {
      out += "\\u00";
      out += kHexDigits[value >> 4U];
      out += kHexDigits[value & 15U];
    } else {
      out += character;
    }
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
