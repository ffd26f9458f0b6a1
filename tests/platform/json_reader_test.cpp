#include "platform/json_reader.h"

#include <gtest/gtest.h>

#include "platform/json_writer.h"

namespace zelvo::platform {
namespace {

TEST(JsonReader, ReadsEveryKindOfValue) {
  const auto value = readJson(R"( {"a": [1, -2.5e3, true, false, null, "x"], "b": {}} )");
  ASSERT_TRUE(value && value->isObject());
  const auto& items = value->member("a")->items();
  ASSERT_EQ(items.size(), 6U);
  EXPECT_EQ(items[0].count(), 1U);
  EXPECT_EQ(items[1].number(), -2500);
  EXPECT_EQ(items[2].boolean(), true);
  EXPECT_EQ(items[3].boolean(), false);
  EXPECT_TRUE(items[4].isNull());
  EXPECT_EQ(items[5].text(), "x");
  EXPECT_TRUE(value->member("b")->isObject());
  EXPECT_EQ(value->member("c"), nullptr);
}

TEST(JsonReader, RefusesWhatIsNoJson) {
  for (const char* text : {"",
                           "{",
                           "}",
                           "[1,]",
                           "{\"a\":1,}",
                           "{\"a\"}",
                           "{a:1}",
                           "01",
                           "1.",
                           ".5",
                           "+1",
                           "1e",
                           "-",
                           "nul",
                           "truex",
                           "\"a",
                           "\"\x01\"",
                           "\"\\q\"",
                           "\"\\u12\"",
                           "\"\\ud800\"",
                           "\"\\udc00\"",
                           "\"\\ud800\\u0041\"",
                           "\"\xff\"",
                           "1 2",
                           "[1 2]",
                           "NaN",
                           "Infinity"}) {
    EXPECT_FALSE(readJson(text)) << text;
  }
}

TEST(JsonReader, EscapesBecomeTheirCharacters) {
  EXPECT_EQ(readJson(R"("\u0041\u00e9\u20ac\ud83d\ude00\n\t\"\\\/")")->text(),
            "A\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\n\t\"\\/");
  EXPECT_EQ(readJson(R"("a\u0000b")")->text(), std::string("a\0b", 3));
}

TEST(JsonReader, DeepNestingIsRefusedInsteadOfFollowed) {
  EXPECT_TRUE(readJson(std::string(16, '[') + std::string(16, ']')));
  EXPECT_FALSE(readJson(std::string(18, '[') + std::string(18, ']')));
  EXPECT_FALSE(readJson(std::string(1'000'000, '[')));
}

TEST(JsonReader, NumbersThatDoNotFitAreNone) {
  EXPECT_EQ(readJson("18446744073709551615")->count(), 18446744073709551615U);
  EXPECT_FALSE(readJson("18446744073709551616")->count());
  EXPECT_FALSE(readJson("-1")->count());
  EXPECT_EQ(readJson("-9223372036854775808")->integer(), INT64_MIN);
  EXPECT_FALSE(readJson("1.0")->count());
  EXPECT_FALSE(readJson("1e999")->number());
  EXPECT_FALSE(readJson("\"1\"")->number());
}

TEST(JsonReader, PathsComeBackWithTheirVeryBytes) {
  for (const std::string& path : {std::string("/a/\"b\n"), std::string("/a/\xff\xfe.avi"), std::string("/\xC3\xA9")}) {
    JsonWriter json;
    json.beginObject();
    json.pathMembers(path);
    json.endObject();
    EXPECT_EQ(readJson(json.take())->path(), path);
  }
  EXPECT_FALSE(readJson(R"({"path":"a","path_hex":"6"})")->path());
  EXPECT_FALSE(readJson(R"({"path":"a","path_hex":"6g"})")->path());
  EXPECT_FALSE(readJson(R"({"path":1})")->path());
}

TEST(JsonReader, TheFirstOfTwoMembersCounts) { EXPECT_EQ(readJson(R"({"a":1,"a":2})")->member("a")->count(), 1U); }

}  // namespace
}  // namespace zelvo::platform
