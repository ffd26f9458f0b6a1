#include "deep/result_words.h"

#include "tests/deep/deep_bench.h"
#include "tests/support/marked_translator.h"

namespace zelvo::tests {

using platform::DeepLine;
using platform::DeepVerdict;

namespace {

platform::DeepResult english(const salvage::SalvageReport& report) {
  return deep::resultOf(report, "a.avi", platform::englishTranslator());
}

std::string wordsAbout(const platform::DeepResult& result, const std::string& about) {
  std::string words;
  for (const DeepLine& line : result.lines) {
    if (line.about == about) words += line.words + "|";
  }
  return words;
}

}  // namespace

TEST(ResultWords, EveryVerdictHasItsOwn) {
  salvage::SalvageReport report = hurtReport();
  EXPECT_EQ(english(report).verdict, DeepVerdict::partial);
  report.verdict = salvage::SalvageVerdict::repaired;
  EXPECT_EQ(english(report).verdict, DeepVerdict::repaired);
  report.verdict = salvage::SalvageVerdict::clean;
  EXPECT_EQ(english(report).verdict, DeepVerdict::clean);
  EXPECT_EQ(english(hopelessReport()).verdict, DeepVerdict::hopeless);
}

TEST(ResultWords, TheHeaderIsToldByWhereItCameFrom) {
  salvage::SalvageReport report = hurtReport();
  EXPECT_EQ(wordsAbout(english(report), "Header"), "the film's own|");
  report.hasMainHeader = false;
  EXPECT_EQ(wordsAbout(english(report), "Header"), "partly lost, and made again|");
  report.streams[0].origin = salvage::HeaderOrigin::donor;
  EXPECT_EQ(wordsAbout(english(report), "Header"), "the film's own: 1; another film's: 1|");
  EXPECT_EQ(wordsAbout(english(hopelessReport()), "Header"), "");
}

TEST(ResultWords, WhatIsUnsureLeftOutOrUnreadableIsTold) {
  salvage::SalvageReport report = hurtReport();
  EXPECT_EQ(english(report).lines.size(), 3U);
  report.fields = {{0, "frame rate", "25", {"30", "24"}}, {0, "codec", "MJPG", {}}};
  report.isDonorUseless = true;
  report.streamsWithoutHeader = 2;
  report.chunksLeftOut = 7;
  report.returnsLeftOut = 1;
  report.unreadable = 512;
  report.lacksDecoder = true;
  const platform::DeepResult result = english(report);
  EXPECT_EQ(result.lines.size(), 10U);
  EXPECT_EQ(wordsAbout(result, "Chosen"), "frame rate 25; it might also be 30, 24|");
  EXPECT_EQ(wordsAbout(result, "Other film"), "its header cannot be that of this film, and was not used|");
  EXPECT_EQ(
      wordsAbout(result, "Left out"),
      "2 streams whose header is lost: nothing tells what they hold|7 chunks more than are kept of a film of this "
      "size|");
  EXPECT_EQ(wordsAbout(result, "Transfer"), "sent as if it were text, which put 1 byte in; they are left out|");
  EXPECT_EQ(wordsAbout(result, "Unreadable"), "512 bytes could not be read; zeros stand in their place|");
  EXPECT_NE(wordsAbout(result, "Decoding"), "");
}

TEST(ResultWords, PlainTextTellsItAll) {
  salvage::SalvageReport report = hurtReport();
  report.spansLeftOut = 3;
  const platform::DeepResult result = english(report);
  const std::string text = deep::plainText(result, platform::englishTranslator());
  for (const DeepLine& line : result.lines) {
    EXPECT_NE(text.find("\n" + line.about + ": " + line.words + "\n"), std::string::npos);
  }
  EXPECT_TRUE(text.ends_with("\nand 3 places more\n")) << text;
}

TEST(ResultWords, AllOfItIsTranslated) {
  salvage::SalvageReport report = hurtReport();
  report.fields = {{0, "frame rate", "25", {"30"}}};
  report.lacksDecoder = true;
  MarkedTranslator marked;
  marked.switchOn();
  const platform::DeepResult result = deep::resultOf(report, "a.avi", marked);
  EXPECT_NE(result.sentence, english(report).sentence);
  const platform::DeepResult plain = english(report);
  ASSERT_EQ(result.lines.size(), plain.lines.size());
  for (std::size_t i = 0; i < plain.lines.size(); ++i) {
    EXPECT_NE(result.lines[i].about, plain.lines[i].about);
    EXPECT_NE(result.lines[i].words, plain.lines[i].words);
  }
  EXPECT_NE(result.picture.losses, plain.picture.losses);
}

}  // namespace zelvo::tests
