#include "platform/printable_text.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>

namespace zelvo::tests {
namespace {

using platform::printableText;
using platform::steersTerminal;

std::string inUtf8(char32_t character) {
  if (character < 0x80) return {static_cast<char>(character)};
  if (character < 0x800) {
    return {static_cast<char>(0xc0U | character >> 6U), static_cast<char>(0x80U | (character & 0x3fU))};
  }
  return {static_cast<char>(0xe0U | character >> 12U), static_cast<char>(0x80U | (character >> 6U & 0x3fU)),
          static_cast<char>(0x80U | (character & 0x3fU))};
}

std::string escape(const char* format, unsigned value) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), format, value);
  return text.data();
}

TEST(PrintableText, EveryControlCharacterIsSpelledOut) {
  for (unsigned value = 0; value < 0x20; ++value) {
    EXPECT_EQ(printableText(std::string(1, static_cast<char>(value))), escape("\\x%02x", value));
  }
  EXPECT_EQ(printableText("\x7f"), "\\x7f");
  for (char32_t value = 0x80; value < 0xa0; ++value) {
    EXPECT_EQ(printableText("a" + inUtf8(value) + "b"), "a" + escape("\\u%04x", value) + "b");
  }
}

TEST(PrintableText, EveryLoneByteIsSpelledOut) {
  for (unsigned value = 0x80; value < 0x100; ++value) {
    EXPECT_EQ(printableText("a" + std::string(1, static_cast<char>(value)) + "b"),
              "a" + escape("\\x%02x", value) + "b");
  }
  EXPECT_EQ(printableText("\xe2\x80"), "\\xe2\\x80") << "a character that is cut short";
  EXPECT_EQ(printableText("\xed\xa0\x80"), "\\xed\\xa0\\x80") << "a surrogate";
}

TEST(PrintableText, NothingReordersTheLine) {
  std::string all;
  for (char32_t value = 0xa0; value < 0xd800; ++value) {
    const bool isDirection = value == 0x61c || value == 0x200e || value == 0x200f ||
                             (value >= 0x202a && value <= 0x202e) || (value >= 0x2066 && value <= 0x2069);
    EXPECT_EQ(steersTerminal(value), isDirection) << std::hex << static_cast<unsigned>(value);
    EXPECT_EQ(printableText(inUtf8(value)), isDirection ? escape("\\u%04x", value) : inUtf8(value));
  }
}

TEST(PrintableText, OtherCharactersStay) {
  for (const std::string text : {"", "plain text, 100 % \\ \"quoted\"", "Grüße", "e\xcc\x81", "日本語", "\xc2\xa0",
                                 "שלום", "مرحبا", "👩‍🔧", "\xf4\x8f\xbf\xbf"}) {
    EXPECT_EQ(printableText(text), text);
  }
}

TEST(PrintableText, PrintableTextStaysTheSame) {
  const std::string once = printableText("\x1b]0;x\x07\xc2\x9b\x9b\xe2\x80\xae\n\\x1b");
  EXPECT_EQ(once, "\\x1b]0;x\\x07\\u009b\\x9b\\u202e\\x0a\\x1b");
  EXPECT_EQ(printableText(once), once);
}

}  // namespace
}  // namespace zelvo::tests
