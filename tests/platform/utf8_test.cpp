#include "platform/utf8.h"

#include <gtest/gtest.h>

namespace zelvo::tests {
namespace {

using platform::Utf8Character;
using platform::utf8CharacterAt;

void expectCharacter(std::string_view text, char32_t value, std::size_t length) {
  const Utf8Character found = utf8CharacterAt(text);
  EXPECT_EQ(found.value, value) << text;
  EXPECT_EQ(found.length, length) << text;
}

TEST(Utf8CharacterAt, EachLengthIsKnownToItsLimits) {
  expectCharacter(std::string_view("\0b", 2), 0, 1);
  expectCharacter("\x7f", 0x7f, 1);
  expectCharacter("\xc2\x80z", 0x80, 2);
  expectCharacter("\xdf\xbf", 0x7ff, 2);
  expectCharacter("\xe0\xa0\x80", 0x800, 3);
  expectCharacter("\xed\x9f\xbf", 0xd7ff, 3);
  expectCharacter("\xee\x80\x80", 0xe000, 3);
  expectCharacter("\xef\xbf\xbf", 0xffff, 3);
  expectCharacter("\xf0\x90\x80\x80", 0x10000, 4);
  expectCharacter("\xf4\x8f\xbf\xbf", 0x10ffff, 4);
}

TEST(Utf8CharacterAt, WhatIsNoCharacterHasNoLength) {
  for (const std::string_view text : {"", "\x80", "\xbf", "\xc2", "\xc2z", "\xc0\x80", "\xc1\xbf", "\xe0\x9f\xbf",
                                      "\xe2\x80", "\xe2z\x80", "\xed\xa0\x80", "\xed\xbf\xbf", "\xf0\x8f\xbf\xbf",
                                      "\xf0\x90\x80", "\xf4\x90\x80\x80", "\xf8\x88\x80\x80\x80", "\xfe", "\xff"}) {
    EXPECT_EQ(utf8CharacterAt(text).length, 0U) << testing::PrintToString(text);
    EXPECT_EQ(utf8CharacterAt(text).value, 0U) << testing::PrintToString(text);
  }
}

}  // namespace
}  // namespace zelvo::tests
