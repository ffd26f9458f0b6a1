// The words about films: units, lengths, verdicts, what could not be read.
#include "platform/qt/window/film_texts.h"

#include <gtest/gtest.h>

#include <set>

namespace zelvo::tests {
namespace {

namespace texts = platform::qt::texts;
using platform::FilmReport;
using platform::FilmVerdict;
using platform::RunStage;

std::string plain(const QString& text) { return text.toStdString(); }

FilmReport partly() {
  FilmReport report;
  report.verdict = FilmVerdict::partly;
  report.pictures = 2412;
  report.soundChunks = 100;
  report.pictureSeconds = 96.48;
  report.soundSeconds = 95;
  report.share = 0.879;
  return report;
}

TEST(FilmTexts, AMegabyteHasAMillionBytes) {
  EXPECT_EQ(plain(texts::megabytes(734000000)), "734.0 MB");
  EXPECT_EQ(plain(texts::megabytes(4294967296)), "4,295.0 MB");
  EXPECT_EQ(plain(texts::megabytes(524288)), "0.5 MB");
}

TEST(FilmTexts, LengthsAreToldInTheirOwnUnits) {
  EXPECT_EQ(plain(texts::length(0.04)), "1 s");
  EXPECT_EQ(plain(texts::length(4.2)), "4 s");
  EXPECT_EQ(plain(texts::length(59.7)), "1 min 0 s");
  EXPECT_EQ(plain(texts::length(96.48)), "1 min 36 s");
  EXPECT_EQ(plain(texts::length(3599.6)), "1 h 0 min");
  EXPECT_EQ(plain(texts::length(5520)), "1 h 32 min");
}

TEST(FilmTexts, TheCardTellsSizeAndLengthWhereItIsKnown) {
  EXPECT_EQ(plain(texts::chosenFacts(734000000, std::nullopt)), "734.0 MB");
  EXPECT_EQ(plain(texts::chosenFacts(734000000, 5520)), "734.0 MB \u00b7 1 h 32 min");
}

TEST(FilmTexts, ProgressTellsStageBytesAndTimeLeft) {
  EXPECT_EQ(plain(texts::progress({RunStage::searching, 121400000, 734000000}, 118.0)),
            "Reading the damaged film: 121.4 of 734.0 MB, about 2 minutes left");
  EXPECT_EQ(plain(texts::progress({RunStage::writing, 10000000, 20000000}, 42.0)),
            "Writing the repaired film: 10.0 of 20.0 MB, about 50 seconds left");
  EXPECT_EQ(plain(texts::progress({RunStage::writing, 30000000, 20000000}, std::nullopt)),
            "Writing the repaired film: 20.0 of 20.0 MB");
  EXPECT_EQ(plain(texts::progress({RunStage::searching, 5, 1000000}, 3.0)),
            "Reading the damaged film: 0.0 of 1.0 MB, a few seconds left");
  EXPECT_TRUE(texts::progress({}, 3.0).isEmpty());
  EXPECT_TRUE(texts::progress({RunStage::searching, 0, 0}, std::nullopt).isEmpty());
}

TEST(FilmTexts, EachVerdictHasItsOwnPictureAndWords) {
  std::set<std::string> pictures;
  std::set<std::string> titles;
  std::set<std::string> messages;
  for (const FilmVerdict verdict : {FilmVerdict::nothing, FilmVerdict::partly, FilmVerdict::good}) {
    pictures.insert(plain(texts::completedPicture(verdict)));
    titles.insert(plain(texts::completedTitle(verdict)));
    messages.insert(plain(texts::completedMessage(verdict)));
  }
  EXPECT_EQ(pictures, (std::set<std::string>{"sheet-done", "sheet-failed", "sheet-warning"}));
  EXPECT_EQ(titles.size(), 3U);
  EXPECT_EQ(messages.size(), 3U);
  EXPECT_EQ(plain(texts::completedPicture(FilmVerdict::good)), "sheet-done");
  EXPECT_EQ(plain(texts::completedPicture(FilmVerdict::nothing)), "sheet-failed");
}

TEST(FilmTexts, FiguresTellWhatWasKept) {
  EXPECT_EQ(plain(texts::keptPictures(partly())), "2,412 \u00b7 1 min 36 s");
  EXPECT_EQ(plain(texts::keptSound(partly())), "1 min 35 s");
  EXPECT_EQ(plain(texts::keptShare(partly())), "87 % of film data");
  FilmReport report = partly();
  report.share = 0.9996;
  EXPECT_EQ(plain(texts::keptShare(report)), "all film data");
  report.share = 0.9994;
  EXPECT_EQ(plain(texts::keptShare(report)), "99 % of film data");
  report.share = 0.001;
  EXPECT_EQ(plain(texts::keptShare(report)), "under 1 % of it");
  report = FilmReport();
  EXPECT_EQ(plain(texts::keptPictures(report)), "none");
  EXPECT_EQ(plain(texts::keptSound(report)), "none");
  EXPECT_EQ(plain(texts::keptShare(report)), "no film data");
}

TEST(FilmTexts, EmptyPicturesAreTold) {
  FilmReport report = partly();
  EXPECT_FALSE(texts::resultMessage(report).contains(QStringLiteral("zeros")));
  report.blankPictures = 1500;
  EXPECT_TRUE(texts::resultMessage(report).contains(QStringLiteral("Of 1,500 pictures, only zeros are left.")));
}

TEST(FilmTexts, NothingKeptSaysWhetherThereIsSound) {
  FilmReport report;
  EXPECT_TRUE(texts::resultMessage(report).contains(QStringLiteral("neither pictures nor sound")));
  report.soundChunks = 3;
  EXPECT_TRUE(texts::resultMessage(report).contains(QStringLiteral("the sound alone")));
}

TEST(FilmTexts, FailedReadsSayHowMuchWhereAndWhatItMeans) {
  FilmReport report = partly();
  EXPECT_TRUE(texts::unreadable(report).isEmpty());
  report.failedReads = 3;
  report.unreadableBytes = 12288;
  report.firstUnreadable = 1048576;
  const std::string told = plain(texts::unreadable(report));
  EXPECT_TRUE(told.starts_with("12,288 bytes of the damaged file could not be read, the first at byte 1,048,576."));
  EXPECT_NE(told.find("missing from the repaired film"), std::string::npos);
}

TEST(FilmTexts, EachRejectionNamesOneReasonOnly) {
  using platform::Rejection;
  std::set<std::string> reasons;
  for (const Rejection reason : {Rejection::headerLost, Rejection::unreadable, Rejection::noSound,
                                 Rejection::uncompressed, Rejection::tooSmall, Rejection::stopped}) {
    const std::string told = plain(texts::rejection(reason));
    EXPECT_TRUE(told.ends_with("Nothing was changed in your file.")) << told;
    reasons.insert(told);
  }
  EXPECT_EQ(reasons.size(), 6U);
  EXPECT_NE(plain(texts::rejection(Rejection::tooSmall)).find("524,288 bytes"), std::string::npos);
}

}  // namespace
}  // namespace zelvo::tests
