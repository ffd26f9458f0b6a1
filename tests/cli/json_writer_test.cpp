#include "cli/json_writer.h"

#include <gtest/gtest.h>

namespace zelvo::tests {
namespace {

using cli::JsonWriter;

std::string textOf(std::string_view value) {
  JsonWriter json;
  json.text(value);
  return json.take();
}

TEST(JsonWriter, CommasStandBetweenMembersAndElements) {
  JsonWriter json;
  json.beginObject();
  json.member("a", std::uint64_t{1});
  json.key("b");
  json.beginArray();
  json.number(1);
  json.null();
  json.boolean(true);
  json.beginObject();
  json.endObject();
  json.integer(-5);
  json.endArray();
  json.key("c");
  json.seconds(1.5);
  json.endObject();

  EXPECT_EQ(json.written(), R"({"a":1,"b":[1,null,true,{},-5],"c":1.500})");
}

TEST(JsonWriter, QuotesAndControlCharactersAreEscaped) {
  EXPECT_EQ(textOf("a\"b\\c\n\x01\x7f"), R"("a\"b\\c\u000a\u0001\u007f")");
}

TEST(JsonWriter, WhatSteersATerminalIsEscapedAndKeepsItsValue) {
  EXPECT_EQ(textOf("\xc2\x80\xc2\x9b\xc2\x9f\xc2\xa0"), "\"\\u0080\\u009b\\u009f\xc2\xa0\"");
  EXPECT_EQ(textOf("\xd8\x9c\xe2\x80\x8e\xe2\x80\xae\xe2\x81\xa9"), R"("\u061c\u200e\u202e\u2069")");
  EXPECT_EQ(textOf("\x9b"), "\"\xEF\xBF\xBD\"") << "a lone byte is no character and becomes U+FFFD";
}

TEST(JsonWriter, WhatSteersATerminalIsEscapedInKeysToo) {
  JsonWriter json;
  json.beginObject();
  json.member("\xc2\x9b", std::uint64_t{1});
  json.endObject();

  EXPECT_EQ(json.written(), R"({"\u009b":1})");
}

TEST(JsonWriter, OtherCharactersStay) {
  const std::string text = "Grüße 日本 e\xcc\x81 😀";
  EXPECT_EQ(textOf(text), "\"" + text + "\"");
}

TEST(JsonWriter, ZeroBytesAreKept) { EXPECT_EQ(textOf(std::string_view("a\0b\0", 4)), R"("a\u0000b\u0000")"); }

TEST(JsonWriter, BytesThatAreNoUtf8BecomeReplacements) {
  EXPECT_EQ(textOf("a\xff"
                   "b"),
            "\"a\xEF\xBF\xBD"
            "b\"");
}

TEST(JsonWriter, PathThatIsNoUtf8ComesInHexToo) {
  JsonWriter json;
  json.beginObject();
  json.pathMembers("a\xff");
  json.endObject();

  EXPECT_EQ(json.written(), "{\"path\":\"a\xEF\xBF\xBD\",\"path_hex\":\"61ff\"}");
}

TEST(JsonWriter, PathThatIsUtf8ComesOnce) {
  JsonWriter json;
  json.beginObject();
  json.pathMembers("ä");
  json.endObject();

  EXPECT_EQ(json.written(), "{\"path\":\"ä\"}");
}

TEST(JsonWriter, TakenTextIsGoneAndTheRestFits) {
  JsonWriter json;
  json.beginArray();
  json.number(1);
  const std::string first = json.take();
  json.number(2);
  json.endArray();

  EXPECT_EQ(first + json.take(), "[1,2]");
}

}  // namespace
}  // namespace zelvo::tests
