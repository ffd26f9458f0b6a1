#include "storage/device_name.h"

#include <gtest/gtest.h>

namespace zelvo::tests {
namespace {

using storage::afterLastSlash;
using storage::fitsCString;
using storage::hexOf;
using storage::isUtf8;
using storage::positionOfCharacter;

TEST(DeviceName, FirstAndLastCharacterOfEachLengthAreUtf8) {
  for (const char* text : {"", "\x01", "\x7F", "\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF", "\xEE\x80\x80",
                           "\xEF\xBF\xBF", "\xF0\x90\x80\x80", "\xF3\xBF\xBF\xBF", "\xF4\x8F\xBF\xBF"}) {
    EXPECT_TRUE(isUtf8(text)) << hexOf(text);
    EXPECT_TRUE(isUtf8(std::string("a") + text + "z")) << hexOf(text);
  }
}

TEST(DeviceName, OverlongCharactersAreNoUtf8) {
  for (const char* text :
       {"\xC0\xAF", "\xC1\xBF", "\xE0\x80\xAF", "\xE0\x9F\xBF", "\xF0\x80\x80\xAF", "\xF0\x8F\xBF\xBF"}) {
    EXPECT_FALSE(isUtf8(text)) << hexOf(text);
  }
}

TEST(DeviceName, SurrogatesAndWhatLiesBeyondTheLastCharacterAreNoUtf8) {
  for (const char* text : {"\xED\xA0\x80", "\xED\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF"}) {
    EXPECT_FALSE(isUtf8(text)) << hexOf(text);
  }
}

TEST(DeviceName, CharactersCutShortAreNoUtf8) {
  for (const char* text : {"\x80", "\xBF", "\xC2", "\xC2z", "\xC2\xC0", "\xE1\x80", "\xE1\x80z", "\xE1z\x80",
                           "\xF1\x80\x80", "\xF1\x80\x80z", "\xF1\x80z\x80", "\xF1z\x80\x80"}) {
    EXPECT_FALSE(isUtf8(text)) << hexOf(text);
    EXPECT_FALSE(isUtf8(std::string("a") + text)) << hexOf(text);
  }
}

TEST(DeviceName, CharactersAreCountedWhole) {
  const std::string text = "a\xC3\xA4\xE2\x82\xACz";
  EXPECT_EQ(positionOfCharacter(text, 0), 0U);
  EXPECT_EQ(positionOfCharacter(text, 1), 1U);
  EXPECT_EQ(positionOfCharacter(text, 2), 3U);
  EXPECT_EQ(positionOfCharacter(text, 3), 6U);
  EXPECT_EQ(positionOfCharacter(text, 4), 7U);
  EXPECT_EQ(positionOfCharacter(text, 5), 7U);
  EXPECT_EQ(positionOfCharacter("", 5), 0U);
}

TEST(DeviceName, BytesAreTwoHexadecimalDigitsEach) {
  EXPECT_EQ(hexOf(std::string_view("\x00\x0f\xf0\x9a", 4)), "000ff09a");
  EXPECT_EQ(hexOf(""), "");
}

TEST(DeviceName, TextFitsWithItsZeroByte) {
  EXPECT_TRUE(fitsCString("abc", 4));
  EXPECT_FALSE(fitsCString("abc", 3));
  EXPECT_TRUE(fitsCString("", 1));
  EXPECT_FALSE(fitsCString("", 0));
}

TEST(DeviceName, TextWithAZeroByteOrNoUtf8DoesNotFit) {
  EXPECT_FALSE(fitsCString(std::string_view("a\0b", 3), 10));
  EXPECT_FALSE(fitsCString("a\xFF", 10));
}

TEST(DeviceName, LastComponentIsWhatFollowsTheLastSlash) {
  EXPECT_EQ(afterLastSlash("/a/b"), "b");
  EXPECT_EQ(afterLastSlash("/a/"), "");
  EXPECT_EQ(afterLastSlash("/"), "");
  EXPECT_EQ(afterLastSlash("a"), "a");
  EXPECT_EQ(afterLastSlash(""), "");
}

}  // namespace
}  // namespace zelvo::tests
