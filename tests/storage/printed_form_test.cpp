#include "storage/printed_form.h"

#include <gtest/gtest.h>

#include "tests/support/trees.h"

namespace zelvo::tests {
namespace {

TEST(PrintedForm, ShowsEveryKindOfValue) {
  const PropertyDictionary properties{{"array", PropertyArray{"a", 2}},
                                      {"data", platform::Bytes{std::byte{0x0A}, std::byte{0xFF}}},
                                      {"flag", true},
                                      {"inner", PropertyDictionary{{"x", std::uint64_t{1}}}},
                                      {"text", "t"}};
  EXPECT_EQ(storage::printedForm(properties),
            "{\n"
            "  \"array\" = (\"a\", 2)\n"
            "  \"data\" = <0aff>\n"
            "  \"flag\" = Yes\n"
            "  \"inner\" = {\n"
            "    \"x\" = 1\n"
            "  }\n"
            "  \"text\" = \"t\"\n"
            "}\n");
}

TEST(PrintedForm, ShowsDatesRealsAndNegativeNumbers) {
  EXPECT_EQ(storage::printedForm({{"date", platform::PropertyDate{-86400}}, {"negative", -7}, {"real", -1.5}}),
            "{\n"
            "  \"date\" = -86400 s since 2001\n"
            "  \"negative\" = -7\n"
            "  \"real\" = -1.500000\n"
            "}\n");
}

TEST(PrintedForm, ShowsTheFlagFalseAndWhatIsEmpty) {
  EXPECT_EQ(storage::printedForm({{"array", PropertyArray{}},
                                  {"data", platform::Bytes{}},
                                  {"flag", false},
                                  {"inner", PropertyDictionary{}},
                                  {"text", ""}}),
            "{\n"
            "  \"array\" = ()\n"
            "  \"data\" = <>\n"
            "  \"flag\" = No\n"
            "  \"inner\" = {\n"
            "  }\n"
            "  \"text\" = \"\"\n"
            "}\n");
}

TEST(PrintedForm, DictionaryWithinAnArrayIsIndentedLikeTheArray) {
  EXPECT_EQ(storage::printedForm({{"a", PropertyArray{PropertyDictionary{{"x", true}}, "t"}}}),
            "{\n"
            "  \"a\" = ({\n"
            "    \"x\" = Yes\n"
            "  }, \"t\")\n"
            "}\n");
}

TEST(PrintedForm, ControlCharactersOfAKeyAreVisibleToo) {
  EXPECT_EQ(storage::printedForm({{"k\x1b", "v\x1b"}}), "{\n  \"k\\x1b\" = \"v\\x1b\"\n}\n");
}

TEST(PrintedForm, BoundariesOfTheControlRanges) {
  EXPECT_EQ(storage::withVisibleControls("\x1f\x20\x7e\x7f"), "\\x1f\x20\x7e\\x7f");
  EXPECT_EQ(storage::withVisibleControls("\xC2\x80\xC2\x9F\xC2\xA0"), "\\x80\\x9f\xC2\xA0");
  EXPECT_EQ(storage::withVisibleControls("\xC2"), "\xC2");
  EXPECT_EQ(storage::withVisibleControls("\xC3\x9F"), "\xC3\x9F");
}

TEST(PrintedForm, ControlCharactersOfADeviceCannotSteerATerminal) {
  EXPECT_EQ(storage::withVisibleControls("a\x1b[2J\n\x7f"), "a\\x1b[2J\\x0a\\x7f");
  EXPECT_EQ(storage::withVisibleControls("\xC2\x9B\xC3\xA4"), "\\x9b\xC3\xA4");
}

}  // namespace
}  // namespace zelvo::tests
