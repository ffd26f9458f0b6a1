#include "platform/qt/language.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QXmlStreamReader>
#include <string>

#include "platform/qt/damage/damage_paints.h"
#include "platform/qt/drawing/text.h"
#include "platform/qt/texts.h"
#include "platform/qt/window/film_texts.h"
#include "platform/shown_text.h"

namespace zelvo::tests {
namespace {

using platform::qt::knownLanguage;
using platform::qt::Language;
using platform::qt::QtTranslator;
namespace texts = platform::qt::texts;

std::string inBytes(const QString& text) { return text.toStdString(); }

/// No-break spaces, as translations have them between a number and its unit.
const std::string kSpace = "\u00a0";
const std::string kNarrowSpace = "\u202f";

/// The window's language for a list such as "de-AT en"; empty for English.
std::string languageFor(const char* languages) {
  return inBytes(
      knownLanguage(QString::fromLatin1(languages).split(QLatin1Char(' '), Qt::SkipEmptyParts)).value_or(QString()));
}

TEST(KnownLanguage, TheFirstThatTheWindowKnowsIsTaken) {
  EXPECT_EQ(languageFor("de-AT en"), "de");
  EXPECT_EQ(languageFor("ja-JP fr-CA"), "fr");
  EXPECT_EQ(languageFor("fr de"), "fr");
}

TEST(KnownLanguage, EnglishIsNoneOfThem) {
  EXPECT_EQ(languageFor("en-GB de"), "");
  EXPECT_EQ(languageFor("C de"), "");
  EXPECT_EQ(languageFor("ja"), "");
  EXPECT_EQ(languageFor(""), "");
}

TEST(Language, WithoutOneEverythingIsEnglish) {
  EXPECT_EQ(inBytes(texts::home()), "Home");
  EXPECT_EQ(inBytes(texts::moreHere(1234)), "1,234 more here");
  EXPECT_EQ(inBytes(texts::pointAtDamage(1)), "1 damaged place. Point at it to see what happened there.");
  EXPECT_EQ(inBytes(texts::pointAtDamage(2)), "2 damaged places. Point at one to see what happened there.");
  EXPECT_EQ(QtTranslator().counted("%n picture(s) lost", 1), "1 picture lost");
  EXPECT_EQ(QtTranslator().number(1234567), "1,234,567");
  EXPECT_EQ(QtTranslator().fixedPoint(1234.56, 1), "1234.6");
}

TEST(Language, GermanIsSpokenWhileItIsThere) {
  {
    const Language german(QStringLiteral("de"));
    EXPECT_EQ(inBytes(texts::repair()), "Reparieren");
    EXPECT_EQ(inBytes(texts::noSuchFile(QStringLiteral("film.avi"))), "Es gibt keine Datei \u201efilm.avi\u201c.");
    EXPECT_EQ(inBytes(platform::qt::nameOf(platform::DamagePaint::lost)), "verloren");
    EXPECT_EQ(QtTranslator().translated("Cancel"), "Abbrechen");
  }
  EXPECT_EQ(inBytes(texts::repair()), "Repair");
}

TEST(Language, NumbersAreWrittenAsTheLanguageDoes) {
  const Language german(QStringLiteral("de"));
  EXPECT_EQ(inBytes(texts::megabytes(4294967296)), "4.295,0" + kSpace + "MB");
  EXPECT_EQ(QtTranslator().number(1234567), "1.234.567");
  EXPECT_EQ(QtTranslator().fixedPoint(1234.56, 1), "1234,6");
  EXPECT_EQ(platform::shownTime(123.45, QtTranslator()), "2:03,45");
}

TEST(Language, CountedTextsHaveTheFormOfTheNumber) {
  const Language german(QStringLiteral("de"));
  EXPECT_EQ(QtTranslator().counted("%n picture(s) lost", 1), "1" + kSpace + "Bild verloren");
  EXPECT_EQ(QtTranslator().counted("%n picture(s) lost", 0), "0" + kSpace + "Bilder verloren");
  EXPECT_EQ(QtTranslator().counted("%n picture(s) lost", 1234567), "1.234.567" + kSpace + "Bilder verloren");
  // More than the toolkit's own number can hold.
  EXPECT_EQ(QtTranslator().counted("%n byte(s)", 10000000000), "10.000.000.000" + kSpace + "Bytes");
}

TEST(Language, FrenchCountsNoneAsOne) {
  const Language french(QStringLiteral("fr"));
  EXPECT_EQ(QtTranslator().counted("%n picture(s) lost", 0), "0" + kNarrowSpace + "image perdue");
  EXPECT_EQ(QtTranslator().counted("%n picture(s) lost", 1), "1" + kNarrowSpace + "image perdue");
  EXPECT_EQ(QtTranslator().counted("%n picture(s) lost", 2), "2" + kNarrowSpace + "images perdues");
  EXPECT_EQ(platform::shownSize(48400000, QtTranslator()), "48,4" + kNarrowSpace + "Mo");
}

TEST(Language, ATextThatNobodyTranslatedStaysEnglish) {
  const Language german(QStringLiteral("de"));
  EXPECT_EQ(QtTranslator().translated("No such text"), "No such text");
  EXPECT_EQ(QtTranslator().counted("%n such text(s)", 2), "2 such texts");
}

TEST(Language, TheProductsNameIsOneInAll) {
  const Language german(QStringLiteral("de"));
  EXPECT_EQ(inBytes(texts::productName()), "Zelvo AVI Repair");
  EXPECT_EQ(inBytes(texts::clickHere()), "click here") << "part of a sentence that is not translated";
}

/// Every translation is in the program as it stands in its source.
class WholeLanguage : public testing::TestWithParam<const char*> {};

TEST_P(WholeLanguage, TheProgramSaysWhatTheSourceSays) {
  const QString name = QString::fromLatin1(GetParam());
  const Language language(name);
  QFile file(QStringLiteral(ZELVO_TRANSLATIONS "/zelvo_%1.ts").arg(name));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  QXmlStreamReader source(&file);
  QString english;
  int texts = 0;
  while (!source.atEnd()) {
    if (source.readNext() != QXmlStreamReader::StartElement) continue;
    if (source.name() == QLatin1String("source")) english = source.readElementText();
    if (source.name() != QLatin1String("translation") || english.contains(QLatin1String("%n"))) continue;
    const QString expected = source.readElementText();
    EXPECT_EQ(platform::qt::translated(inBytes(english)), expected) << inBytes(english);
    ++texts;
  }
  EXPECT_FALSE(source.hasError());
  EXPECT_GT(texts, 200);
}

INSTANTIATE_TEST_SUITE_P(All, WholeLanguage, testing::Values("de", "fr"), [](const auto& one) { return one.param; });

}  // namespace
}  // namespace zelvo::tests
