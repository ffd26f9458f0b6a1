#include "cli/shown_text.h"

#include <algorithm>

#include "platform/printable_text.h"

namespace zelvo::cli {

std::string printable(std::string_view text) { return platform::printableText(text); }

std::string shownCode(avi::FourCC code) {
  std::string text;
  for (const std::byte byte : code.bytes()) {
    const auto value = std::to_integer<std::uint32_t>(byte);
    if (value >= 0x20 && value < 0x7f) {
      text += static_cast<char>(value);
    } else {
      text += "\\x" + shownHex(value, 2).substr(2);
    }
  }
  return text;
}

std::string labelledLine(std::string_view label, const std::string& text) {
  std::string padded = "  " + std::string(label) + ":";
  padded.resize(std::max<std::size_t>(padded.size() + 1, 13), ' ');
  return padded + text + "\n";
}

std::string quotedForShell(std::string_view path) {
  std::string quoted = "'";
  if (path.starts_with('-')) quoted += "./";
  for (const char character : path) {
    if (character == '\'') {
      quoted += "'\\''";
    } else {
      quoted += character;
    }
  }
  return quoted + "'";
}

}  // namespace zelvo::cli
