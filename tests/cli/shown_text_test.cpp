#include "cli/shown_text.h"

#include <gtest/gtest.h>

#include <span>
#include <string_view>

namespace zelvo::tests {
namespace {

using cli::counted;
using cli::printable;
using cli::quotedForShell;
using cli::shortened;
using cli::shownCode;
using cli::shownHex;
using cli::shownNumber;
using cli::shownSeconds;
using cli::shownSize;

TEST(ShownText, ControlCharactersAreSpelledOut) {
  EXPECT_EQ(printable("a\033[1m\n\x7f"), "a\\x1b[1m\\x0a\\x7f");
  EXPECT_EQ(printable("\xc2\x9b"
                      "1m"),
            "\\u009b1m")
      << "U+009B begins a terminal's command";
  EXPECT_EQ(printable("\x9b"
                      "1m"),
            "\\x9b1m")
      << "so does its byte alone";
}

TEST(ShownText, DirectionsAreSpelledOut) { EXPECT_EQ(printable("a\xe2\x80\xaeiva.exe"), "a\\u202eiva.exe"); }

TEST(ShownText, OtherCharactersStay) { EXPECT_EQ(printable("Grüße \xc2\xa0 日本"), "Grüße \xc2\xa0 日本"); }

TEST(QuotedForShell, QuotesAndDashesAreSafe) {
  EXPECT_EQ(quotedForShell("a b"), "'a b'");
  EXPECT_EQ(quotedForShell("it's"), "'it'\\''s'");
  EXPECT_EQ(quotedForShell("-x"), "'./-x'");
}

TEST(ShownSize, UnitFitsTheSize) {
  EXPECT_EQ(shownSize(0), "0 bytes");
  EXPECT_EQ(shownSize(1), "1 byte");
  EXPECT_EQ(shownSize(999), "999 bytes");
  EXPECT_EQ(shownSize(1000), "1.0 kB");
  EXPECT_EQ(shownSize(999949), "999.9 kB");
  EXPECT_EQ(shownSize(999950), "1.0 MB");
  EXPECT_EQ(shownSize(48400000), "48.4 MB");
  EXPECT_EQ(shownSize(999949999), "999.9 MB");
  EXPECT_EQ(shownSize(999950000), "1.00 GB");
  EXPECT_EQ(shownSize(999994999999), "999.99 GB");
  EXPECT_EQ(shownSize(999995000000), "1.00 TB");
  EXPECT_EQ(shownSize(18000207937536), "18.00 TB");
  EXPECT_EQ(shownSize(0xffffffffffffffff), "18446744.07 TB");
}

TEST(ShownNumber, ThousandsAreSet) {
  EXPECT_EQ(shownNumber(0), "0");
  EXPECT_EQ(shownNumber(999), "999");
  EXPECT_EQ(shownNumber(1000), "1,000");
  EXPECT_EQ(shownNumber(1234567), "1,234,567");
}

TEST(Counted, OneIsSingular) {
  EXPECT_EQ(counted(1, "chunk"), "1 chunk");
  EXPECT_EQ(counted(0, "chunk"), "0 chunks");
  EXPECT_EQ(counted(1500, "chunk"), "1,500 chunks");
}

TEST(ShownSeconds, MinutesComeWithSixtySeconds) {
  EXPECT_EQ(shownSeconds(0.421), "0.42 s");
  EXPECT_EQ(shownSeconds(59.99), "59.99 s");
  EXPECT_EQ(shownSeconds(60), "1 min 0 s");
  EXPECT_EQ(shownSeconds(185), "3 min 5 s");
}

TEST(ShownHex, HasSoManyDigitsAtLeast) {
  EXPECT_EQ(shownHex(0x1f, 2), "0x1f");
  EXPECT_EQ(shownHex(0x1f, 4), "0x001f");
  EXPECT_EQ(shownHex(0x12345, 4), "0x12345");
}

TEST(Shortened, NoCharacterIsCutInTwo) {
  EXPECT_EQ(shortened("longer", 4), "l...");
  EXPECT_EQ(shortened("longer", 3), "...");
  EXPECT_EQ(shortened("longer", 0), "...");
  EXPECT_EQ(shortened("short", 5), "short");
  EXPECT_EQ(shortened("longer text", 8), "longe...");
  EXPECT_EQ(shortened("aaaä-long", 7), "aaa...");
}

TEST(ShownCode, BytesThatAreNotPrintableAreShownByTheirNumbers) {
  const auto code = [](std::string_view text) { return avi::FourCC::at(std::as_bytes(std::span(text))); };
  EXPECT_EQ(shownCode(code(" ~\x1f\x7f")), " ~\\x1f\\x7f");
  EXPECT_EQ(shownCode(code("\x80\xff\x01z")), "\\x80\\xff\\x01z");
}

}  // namespace
}  // namespace zelvo::tests
