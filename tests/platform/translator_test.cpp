#include "platform/translator.h"

#include <gtest/gtest.h>

#include <clocale>
#include <string>

#include "platform/shown_text.h"
#include "tests/support/marked_translator.h"

namespace zelvo::tests {
namespace {

using platform::englishTranslator;
using platform::filled;

TEST(EnglishTranslator, TextsStayAsTheyAre) { EXPECT_EQ(englishTranslator().translated("%1 of %2"), "%1 of %2"); }

TEST(EnglishTranslator, CountedNounsEndAsTheNumberAsks) {
  EXPECT_EQ(englishTranslator().counted("%n picture(s) lost", 1), "1 picture lost");
  EXPECT_EQ(englishTranslator().counted("%n picture(s) lost", 0), "0 pictures lost");
  EXPECT_EQ(englishTranslator().counted("%n picture(s) lost", 1234567), "1,234,567 pictures lost");
  EXPECT_EQ(englishTranslator().counted("%n lost", 2), "2 lost");
}

TEST(EnglishTranslator, NumbersHaveCommasAndPoints) {
  EXPECT_EQ(englishTranslator().number(1234567), "1,234,567");
  EXPECT_EQ(englishTranslator().fixedPoint(1234.56, 1), "1234.6");
}

TEST(Filled, ValuesStandInTheirPlacesAndAreNotLookedAtAgain) {
  EXPECT_EQ(filled("%2, %1", {"a", "b"}), "b, a");
  EXPECT_EQ(filled("%1 and %2", {"%2", "b"}), "%2 and b");
  EXPECT_EQ(filled("%1 %3 100 %", {"a", "b"}), "a %3 100 %");
  EXPECT_EQ(filled("%1%1", {"a"}), "aa");
}

TEST(ShownText, SizesAndTimesSpeakTheTranslatorsLanguage) {
  MarkedTranslator words;
  words.switchOn();
  EXPECT_EQ(platform::shownSize(1, words), "[1 byte]");
  EXPECT_EQ(platform::shownSize(4600, words), "[4,6 kB]");
  EXPECT_EQ(platform::shownSize(48400000, words), "[48,4 MB]");
  EXPECT_EQ(platform::shownSize(1250000000, words), "[1,25 GB]");
  EXPECT_EQ(platform::shownSize(2000000000000, words), "[2,00 TB]");
  EXPECT_EQ(platform::shownSeconds(0.42, words), "[0,42 s]");
  EXPECT_EQ(platform::shownSeconds(185, words), "[3 min 5 s]");
  EXPECT_EQ(platform::shownTime(123.45, words), "2:03,45");
  EXPECT_EQ(platform::shownTime(3723.456, words), "1:02:03,46");
}

TEST(ShownText, ThePointOfANumberIsNoneOfTheEnvironment) {
  const std::string before = std::setlocale(LC_NUMERIC, nullptr);
  // A language with a comma, where the machine has one; the answer is the same without.
  for (const char* language : {"de_DE.UTF-8", "fr_FR.UTF-8"}) {
    if (std::setlocale(LC_NUMERIC, language) != nullptr) break;
  }
  EXPECT_EQ(platform::fixedPoint(0.125, 2), "0.12");
  EXPECT_EQ(platform::fixedPoint(-1234.5, 1), "-1234.5");
  EXPECT_EQ(platform::fixedPoint(2, 0), "2");
  std::setlocale(LC_NUMERIC, before.c_str());
}

}  // namespace
}  // namespace zelvo::tests
