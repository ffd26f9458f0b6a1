#include "avi/codec_text.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/byte_text.h"

namespace zelvo::tests {
namespace {

constexpr const char* kReplacement = "\uFFFD";

std::string text(std::string_view bytes) { return avi::codecText(bytesOf(bytes)); }

TEST(CodecText, FourCharactersWithoutAZeroByteAreExactlyFour) { EXPECT_EQ(text("XVID"), "XVID"); }

TEST(CodecText, EndsAtTheFirstZeroByte) {
  EXPECT_EQ(text({"AB\0D", 4}), "AB");
  EXPECT_EQ(text({"\0BCD", 4}), "");
  EXPECT_EQ(text({"\0\0\0\0", 4}), "");
}

TEST(CodecText, OfFewerBytesIsWhatThereIs) {
  EXPECT_EQ(text("AB"), "AB");
  EXPECT_EQ(text(""), "");
}

TEST(CodecText, TakesCharactersOfTwoThreeAndFourBytes) {
  EXPECT_EQ(text("\xc3\xa9"
                 "AB"),
            "\u00e9AB");
  EXPECT_EQ(text("\xe2\x82\xac!"), "\u20ac!");
  EXPECT_EQ(text("\xf0\x9f\x8e\xac"), "\U0001F3AC");
}

TEST(CodecText, ShowsOneReplacementForEachByteThatNoCharacterCanBeMadeOf) {
  EXPECT_EQ(text("\xff\xfe\x80\x81"), std::string(kReplacement) + kReplacement + kReplacement + kReplacement);
  EXPECT_EQ(text("A\xffZ\xc0"), "A" + std::string(kReplacement) + "Z" + kReplacement);
}

TEST(CodecText, CharacterCutShortByTheFourthByteIsReplaced) {
  EXPECT_EQ(text("AB\xe2\x82"), "AB" + std::string(kReplacement) + kReplacement);
  EXPECT_EQ(text("ABC\xc3"), "ABC" + std::string(kReplacement));
}

TEST(CodecText, CharacterCutShortByAZeroByteIsReplaced) {
  EXPECT_EQ(text({"\xe2\x82\0A", 4}), std::string(kReplacement) + kReplacement);
}

TEST(CodecText, OverlongFormsAreNoCharacters) {
  EXPECT_EQ(text("\xc0\xaf"), std::string(kReplacement) + kReplacement);
  EXPECT_EQ(text("\xe0\x80\xaf"), std::string(kReplacement) + kReplacement + kReplacement);
  EXPECT_EQ(text("\xf0\x80\x80\xaf"), std::string(kReplacement) + kReplacement + kReplacement + kReplacement);
}

TEST(CodecText, SurrogatesAreNoCharacters) {
  EXPECT_EQ(text("\xed\xa0\x80"), std::string(kReplacement) + kReplacement + kReplacement);
  EXPECT_EQ(text("\xed\xbf\xbf"), std::string(kReplacement) + kReplacement + kReplacement);
  EXPECT_EQ(text("\xed\x9f\xbf"), "\uD7FF");  // the last character before them
}

TEST(CodecText, NothingAbove10FFFFIsACharacter) {
  EXPECT_EQ(text("\xf4\x8f\xbf\xbf"), "\U0010FFFF");
  EXPECT_EQ(text("\xf4\x90\x80\x80"), std::string(kReplacement) + kReplacement + kReplacement + kReplacement);
  EXPECT_EQ(text("\xf8\x88\x80\x80"), std::string(kReplacement) + kReplacement + kReplacement + kReplacement);
}

TEST(CodecText, ControlCharactersStayAsTheyAre) { EXPECT_EQ(text("\x01\x1b[m"), "\x01\x1b[m"); }

}  // namespace
}  // namespace zelvo::tests
