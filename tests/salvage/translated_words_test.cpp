// The words of a deep repair that a window shows, in another language: nothing of them is left in English.
#include <gtest/gtest.h>

#include <string>

#include "avi/chunk_codes.h"
#include "salvage/damage_picture.h"
#include "salvage/salvage_words.h"
#include "tests/support/marked_translator.h"

namespace zelvo::tests {
namespace {

using salvage::LossCause;
using salvage::SalvagedSpan;
using salvage::SalvagedStream;
using salvage::SalvageReport;
using salvage::SlotState;

SalvagedStream lossyStream(avi::FourCC type, double lost) {
  SalvagedStream stream;
  stream.type = type;
  stream.slots[static_cast<std::size_t>(SlotState::whole)] = {100, 100000, 4.0};
  if (lost > 0) stream.slots[static_cast<std::size_t>(SlotState::lost)] = {12, 1000, lost};
  return stream;
}

SalvageReport damagedFilm() {
  SalvageReport report;
  report.verdict = salvage::SalvageVerdict::partial;
  report.inputSize = 48400000;
  report.headerEnd = 2048;
  report.streams = {lossyStream(avi::kVids, 1.25), lossyStream(avi::kAuds, 0.02)};
  return report;
}

class TranslatedWords : public testing::Test {
 protected:
  TranslatedWords() { words_.switchOn(); }

  MarkedTranslator words_;
};

/// What stands outside of every bracket.
std::string untranslated(const std::string& text) {
  std::string outside;
  int depth = 0;
  for (const char one : text) {
    if (one == ']') --depth;
    if (depth == 0 && one != '[' && one != ']') outside += one;
    if (one == '[') ++depth;
  }
  return outside;
}

TEST_F(TranslatedWords, TheVerdictIsOneSentence) {
  SalvageReport report = damagedFilm();
  EXPECT_EQ(salvage::verdictSentence(report, words_),
            "[This film was damaged; [[1,2 s] of its pictures and [less than 0,1 s] of its sound are lost or hurt, the "
            "rest is there, in step].]");
  report.streamsWithoutHeader = 2;
  report.streams = {};
  EXPECT_EQ(salvage::verdictSentence(report, words_),
            "[This film was damaged; [2 streams of it cannot be recognised and are left out].]");
  using Verdict = salvage::SalvageVerdict;
  for (const Verdict verdict : {Verdict::clean, Verdict::repaired, Verdict::partial, Verdict::hopeless}) {
    report.verdict = verdict;
    EXPECT_EQ(untranslated(salvage::verdictSentence(report, words_)), "");
  }
}

TEST_F(TranslatedWords, StreamsAreTranslatedBitByBit) {
  EXPECT_EQ(salvage::streamWords(lossyStream(avi::kVids, 1.25), words_), "[112 chunks], [[12 lost] (1,25 s)]");
}

TEST_F(TranslatedWords, EveryCauseIsTranslated) {
  const SalvageReport report = damagedFilm();
  for (int cause = 0; cause <= static_cast<int>(LossCause::moved); ++cause) {
    SalvagedSpan span;
    span.span.cause = static_cast<LossCause>(cause);
    span.begin = 133;
    span.end = 135;
    EXPECT_EQ(untranslated(salvage::lossWords(span, report, words_)), "") << cause;
    span.streams = {{.stream = 0, .gone = 50, .hurt = 1}};
    EXPECT_EQ(untranslated(salvage::lossWords(span, report, words_)), "") << cause;
  }
}

TEST_F(TranslatedWords, ALossIsToldWithItsTimeAndWhatGoesOn) {
  SalvagedSpan span;
  span.span.cause = LossCause::zeroed;
  span.begin = 133;
  span.end = 135;
  span.streams = {{.stream = 0, .gone = 50, .hurt = 0}};
  EXPECT_EQ(salvage::lossWords(span, damagedFilm(), words_),
            "[[2:13,00 to 2:15,00]: [50 pictures lost], [the sound goes on] ([zeroed])]");
}

TEST_F(TranslatedWords, TextWithoutACodecIsPlain) {
  salvage::SalvagedStream text;
  text.type = avi::FourCC{"txts"};
  EXPECT_EQ(salvage::codecOf(text, words_), "[plain]");
  text.handler = avi::FourCC{"DXSB"};
  EXPECT_EQ(salvage::codecOf(text, words_), "DXSB");
}

TEST_F(TranslatedWords, BarsOfTheDamagePictureAreTranslated) {
  const platform::DamagePicture picture = salvage::damagePicture(damagedFilm(), words_);
  ASSERT_EQ(picture.bars.size(), 3U);
  EXPECT_EQ(picture.bars[0].name, "[The damaged file]");
  EXPECT_EQ(picture.bars[0].length, "[48,4 MB]");
  EXPECT_EQ(picture.bars[1].name, "[video], [uncompressed]");
  EXPECT_EQ(picture.bars[2].name.substr(0, 7), "[sound]");
}

}  // namespace
}  // namespace zelvo::tests
