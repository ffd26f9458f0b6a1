#include "storage/printed_form.h"

#include <gtest/gtest.h>

#include "tests/storage/trees.h"

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

TEST(PrintedForm, ControlCharactersOfADeviceCannotSteerATerminal) {
  EXPECT_EQ(storage::withVisibleControls("a\x1b[2J\n\x7f"), "a\\x1b[2J\\x0a\\x7f");
  EXPECT_EQ(storage::withVisibleControls("\xC2\x9B\xC3\xA4"), "\\x9b\xC3\xA4");
}

}  // namespace
}  // namespace zelvo::tests
