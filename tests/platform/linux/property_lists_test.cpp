#include "platform/linux/property_lists.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/trees.h"

namespace zelvo::tests {
namespace {

using platform::PropertyLists;
using platform::linux_::LinuxPropertyLists;

std::optional<PropertyValue> parsed(std::string_view text, std::size_t largest = PropertyLists::kLargestFromOutside) {
  LinuxPropertyLists lists;
  return lists.parse(std::as_bytes(std::span(text)), largest);
}

PropertyValue thereAndBack(const PropertyValue& tree) {
  LinuxPropertyLists lists;
  const auto read = parsed(lists.format(tree));
  EXPECT_TRUE(read.has_value());
  return read ? *read : PropertyValue(false);
}

std::string listOf(const std::string& content) { return "<plist version=\"1.0\">" + content + "</plist>"; }

TEST(PropertyLists, EveryKindComesBack) {
  const PropertyDictionary tree{{"flag", true},
                                {"number", std::uint64_t{1234567890123}},
                                {"real", 1.5},
                                {"text", " a <b> & \"c\"  \xC3\xA4 "},
                                {"data", platform::Bytes{std::byte{0}, std::byte{255}}},
                                {"date", platform::PropertyDate{86400}},
                                {"array", PropertyArray{"a", false}},
                                {"key & <more>", PropertyDictionary{}}};
  EXPECT_EQ(thereAndBack(tree), PropertyValue(tree));
}

TEST(PropertyLists, LargestNumberComesBack) {
  EXPECT_EQ(thereAndBack(std::uint64_t{0xFFFFFFFFFFFFFFFF}), PropertyValue(std::uint64_t{0xFFFFFFFFFFFFFFFF}));
}

TEST(PropertyLists, NarrowNumberComesBackWideAndANegativeOneAsText) {
  EXPECT_EQ(thereAndBack(std::int32_t{1}), PropertyValue(std::uint64_t{1}));
  EXPECT_EQ(thereAndBack(std::int32_t{-1}), PropertyValue("-1"));
}

TEST(PropertyLists, WhatXmlCannotHoldBecomesTheReplacementCharacter) {
  EXPECT_EQ(thereAndBack("a\x01"
                         "b\xFF"
                         "c\xED\xA0\x80"),
            PropertyValue("a\xEF\xBF\xBD"
                          "b\xEF\xBF\xBD"
                          "c\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"));
}

TEST(PropertyLists, WhatSteersATerminalIsWrittenAsReferencesAndComesBack) {
  const std::string hostile = "<&>\t\n\x7f\xC2\x80\xC2\x9B\xC2\x9F\xD8\x9C\xE2\x80\x8F\xE2\x80\xAE\xE2\x81\xA6.";
  const std::string references = "&lt;&amp;&gt;&#9;&#10;&#127;&#128;&#155;&#159;&#1564;&#8207;&#8238;&#8294;.";
  const PropertyDictionary tree{{hostile, hostile}, {"data", platform::Bytes(200, std::byte{0x9B})}};
  const std::string written = LinuxPropertyLists().format(tree);
  EXPECT_NE(written.find("\t<key>" + references + "</key>\n\t<string>" + references + "</string>\n"), std::string::npos)
      << written;
  EXPECT_EQ(thereAndBack(tree), PropertyValue(tree));
}

TEST(PropertyLists, OtherCharactersAreWrittenAsTheyAre) {
  const std::string text = "Grüße 日本 e\xCC\x81 😀 \xC2\xA0";
  EXPECT_NE(LinuxPropertyLists().format(text).find("<string>" + text + "</string>"), std::string::npos);
}

TEST(PropertyLists, ByteOrderMarkIsPassedOver) {
  EXPECT_EQ(parsed("\xEF\xBB\xBF" + listOf("<string>a</string>")), PropertyValue("a"));
  EXPECT_EQ(parsed("\xEF\xBB\xBF"), std::nullopt);
}

TEST(PropertyLists, BinaryFormIsTold) {
  // A binary list of one text: header, the text, the table of its place, and the trailer.
  std::string binary(
      "bplist00\x51"
      "a\x08",
      11);
  binary += std::string(6, '\0') + std::string("\x01\x01", 2) + std::string(7, '\0') + '\x01' + std::string(8, '\0') +
            std::string(7, '\0') + '\x0A';
  EXPECT_EQ(parsed(binary), PropertyValue("a"));
}

TEST(PropertyLists, WhatIsNoListIsNothing) {
  for (const char* text :
       {"", " ", "hello", "{\"a\": 1}", "<html><body>404</body></html>", "<plist><dict><key>a</key>"}) {
    EXPECT_EQ(parsed(text), std::nullopt) << text;
  }
  EXPECT_EQ(parsed(std::string(1000, '\0')), std::nullopt);
}

TEST(PropertyLists, ListOfTheLargestSizeIsReadAndOneByteMoreIsNot) {
  const std::string list = listOf("<string>a</string>");
  EXPECT_TRUE(parsed(list, list.size()).has_value());
  EXPECT_FALSE(parsed(list, list.size() - 1).has_value());
}

TEST(PropertyLists, LastOfTwoEqualKeysCounts) {
  const auto tree = parsed(listOf("<dict><key>a</key><string>1</string><key>a</key><string>2</string></dict>"));
  ASSERT_TRUE(tree.has_value());
  EXPECT_EQ(*tree->dictionary()->text("a"), "2");
}

std::string nested(std::size_t levels) {
  std::string list;
  for (std::size_t level = 0; level < levels; ++level) list += "<array>";
  for (std::size_t level = 0; level < levels; ++level) list += "</array>";
  return listOf(list);
}

TEST(PropertyLists, DeepestNestingIsReadAndOneLevelMoreIsNot) {
  EXPECT_TRUE(parsed(nested(256)).has_value());
  EXPECT_FALSE(parsed(nested(257)).has_value());
}

TEST(PropertyLists, EntityDeclarationsAreRefused) {
  EXPECT_EQ(parsed("<?xml version=\"1.0\"?><!DOCTYPE plist [<!ENTITY x SYSTEM \"file:///etc/hostname\">]>" +
                   listOf("<string>&x;</string>")),
            std::nullopt);
}

TEST(PropertyDictionary, NumberOfEitherWidthIsRead) {
  const PropertyDictionary numbers{
      {"a", std::int32_t{3}}, {"b", std::uint64_t{4}}, {"c", std::int32_t{-1}}, {"d", "5"}};
  EXPECT_EQ(numbers.number("a"), 3U);
  EXPECT_EQ(numbers.number("b"), 4U);
  EXPECT_EQ(numbers.number("c"), std::nullopt);
  EXPECT_EQ(numbers.number("d"), std::nullopt);
  EXPECT_EQ(numbers.number("e"), std::nullopt);
}

TEST(PropertyDictionary, SetReplacesAndSetIfAbsentDoesNot) {
  PropertyDictionary dictionary{{"b", "1"}};
  dictionary.set("a", "2");
  dictionary.set("b", "3");
  dictionary.setIfAbsent("b", "4");
  dictionary.setIfAbsent("c", "5");
  EXPECT_EQ(dictionary, (PropertyDictionary{{"a", "2"}, {"b", "3"}, {"c", "5"}}));
}

}  // namespace
}  // namespace zelvo::tests
