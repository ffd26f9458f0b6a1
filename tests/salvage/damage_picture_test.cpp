#include "salvage/damage_picture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "avi/chunk_codes.h"
#include "salvage/salvage_words.h"

namespace zelvo::tests {
namespace {

using platform::DamageBar;
using platform::DamageMark;
using platform::DamagePaint;
using platform::DamagePicture;
using salvage::LossCause;
using salvage::SalvagedSpan;
using salvage::SalvagedStream;
using salvage::SalvageReport;
using salvage::SlotState;
using salvage::SpanShare;

SalvagedStream tenSecondsOf(avi::FourCC type) {
  SalvagedStream stream;
  stream.type = type;
  stream.slots[static_cast<std::size_t>(SlotState::whole)] = {250, 100000, 10.0};
  return stream;
}

SalvagedSpan damage(LossCause cause, std::uint64_t begin, std::uint64_t end, double from, double to,
                    std::vector<SpanShare> streams = {}) {
  return {.span = {.begin = begin, .end = end, .originalBegin = {}, .originalEnd = {}, .cause = cause},
          .begin = from,
          .end = to,
          .streams = std::move(streams)};
}

SalvageReport film(std::vector<SalvagedSpan> spans) {
  SalvageReport report;
  report.inputSize = 1'000'000;
  report.verdict = salvage::SalvageVerdict::partial;
  report.headerEnd = 2048;
  report.streams = {tenSecondsOf(avi::kVids), tenSecondsOf(avi::kAuds)};
  report.indexes = {{.offset = 900'000, .entries = 500, .belonging = {}, .entrySize = 16},
                    {.offset = 5'000, .entries = 100, .belonging = {}, .entrySize = 8}};
  report.spans = std::move(spans);
  return report;
}

std::vector<DamageMark> damageIn(const DamageBar& bar) {
  std::vector<DamageMark> marks;
  for (const DamageMark& mark : bar.marks) {
    if (mark.loss != DamageMark::kNoLoss) marks.push_back(mark);
  }
  return marks;
}

TEST(SalvageDamagePicture, TheFileHasABarByByteAndEachStreamOneByTime) {
  const DamagePicture picture = salvage::damagePicture(film({}));
  ASSERT_EQ(picture.bars.size(), 3U);
  EXPECT_FALSE(picture.bars[0].isTime);
  EXPECT_EQ(picture.bars[0].extent, 1'000'000);
  EXPECT_EQ(picture.bars[0].length, "1.0 MB");
  EXPECT_TRUE(picture.bars[1].isTime);
  EXPECT_EQ(picture.bars[1].extent, 10);
  EXPECT_EQ(picture.bars[1].length, "0:10.00");
  EXPECT_THAT(picture.bars[1].name, testing::StartsWith("video, "));
  EXPECT_THAT(picture.bars[2].name, testing::StartsWith("sound, "));
  EXPECT_TRUE(picture.losses.empty());
}

TEST(SalvageDamagePicture, HeaderAndIndexesAreWhereTheyLieInTheFile) {
  const DamagePicture picture = salvage::damagePicture(film({}));
  EXPECT_THAT(picture.bars[0].marks,
              testing::ElementsAre(DamageMark{0, 2048, DamagePaint::header, DamageMark::kNoLoss},
                                   DamageMark{900'000, 908'000, DamagePaint::index, DamageMark::kNoLoss},
                                   DamageMark{5'000, 5'800, DamagePaint::index, DamageMark::kNoLoss}));
  EXPECT_TRUE(picture.bars[1].marks.empty());
}

TEST(SalvageDamagePicture, EveryLossHasItsPlaceInTheFileAndInTheStreamsThatItTouches) {
  const SalvageReport report = film(
      {damage(LossCause::zeroed, 10'000, 20'000, 1, 2, {{.stream = 0, .gone = 25}}),
       damage(LossCause::overwritten, 30'000, 31'000, 3, 3.04, {{.stream = 0, .hurt = 1}, {.stream = 1, .hurt = 1}})});
  const DamagePicture picture = salvage::damagePicture(report);
  ASSERT_EQ(picture.losses.size(), 2U);
  EXPECT_EQ(picture.losses[0].words, salvage::lossWords(report.spans[0], report));
  EXPECT_EQ(picture.losses[1].seconds, 3);
  EXPECT_THAT(damageIn(picture.bars[0]), testing::ElementsAre(DamageMark{10'000, 20'000, DamagePaint::lost, 0},
                                                              DamageMark{30'000, 31'000, DamagePaint::lost, 1}));
  EXPECT_THAT(picture.bars[1].marks,
              testing::ElementsAre(DamageMark{1, 2, DamagePaint::lost, 0}, DamageMark{3, 3.04, DamagePaint::hurt, 1}));
  EXPECT_THAT(picture.bars[2].marks, testing::ElementsAre(DamageMark{3, 3.04, DamagePaint::hurt, 1}));
}

TEST(SalvageDamagePicture, EachCauseHasItsPaint) {
  const auto paintOf = [](LossCause cause) {
    return damageIn(salvage::damagePicture(film({damage(cause, 10, 20, 0, 0)})).bars[0]).at(0).paint;
  };
  for (const LossCause cause :
       {LossCause::overwritten, LossCause::zeroed, LossCause::unreadable, LossCause::missing, LossCause::cut})
    EXPECT_EQ(paintOf(cause), DamagePaint::lost);
  for (const LossCause cause : {LossCause::sizeField, LossCause::code, LossCause::moved})
    EXPECT_EQ(paintOf(cause), DamagePaint::mended);
  for (const LossCause cause : {LossCause::inserted, LossCause::foreign})
    EXPECT_EQ(paintOf(cause), DamagePaint::foreign);
  EXPECT_EQ(paintOf(LossCause::doubled), DamagePaint::doubled);
}

TEST(SalvageDamagePicture, WhatIsMendedIsSoInItsStreamToo) {
  const DamagePicture picture =
      salvage::damagePicture(film({damage(LossCause::sizeField, 10, 20, 1, 1.04, {{.stream = 1}})}));
  EXPECT_TRUE(picture.bars[1].marks.empty());
  EXPECT_THAT(picture.bars[2].marks, testing::ElementsAre(DamageMark{1, 1.04, DamagePaint::mended, 0}));
}

TEST(SalvageDamagePicture, BytesThatATransferPutInAreNoPartOfTheFilesBar) {
  SalvageReport report = film({});
  report.returnsLeftOut = 1000;
  EXPECT_EQ(salvage::damagePicture(report).bars[0].extent, 999'000);
}

TEST(SalvageDamagePicture, AFileThatNothingCanBeBroughtBackFromIsLost) {
  SalvageReport report;
  report.inputSize = 5000;
  const DamagePicture picture = salvage::damagePicture(report);
  ASSERT_EQ(picture.bars.size(), 1U);
  EXPECT_THAT(picture.bars[0].marks, testing::ElementsAre(DamageMark{0, 5000, DamagePaint::lost, DamageMark::kNoLoss}));
}

TEST(SalvageDamagePicture, AHeaderThatIsLostIsNotShown) {
  SalvageReport report = film({});
  report.headerEnd = 0;
  report.indexes.clear();
  EXPECT_TRUE(salvage::damagePicture(report).bars[0].marks.empty());
}

TEST(SalvageWords, ALossTellsWhatIsGoneAndWhatGoesOn) {
  const auto words = [](SalvagedSpan span) {
    const SalvageReport report = film({});
    return salvage::lossWords(span, report);
  };
  EXPECT_EQ(words(damage(LossCause::zeroed, 0, 9, 133, 135, {{.stream = 0, .gone = 50}})),
            "2:13.00 to 2:15.00: 50 pictures lost, the sound goes on (zeroed)");
  EXPECT_EQ(words(damage(LossCause::missing, 0, 9, 1, 1, {{.stream = 1, .gone = 1}})),
            "0:01.00: 1 sound chunk lost, the pictures go on (missing)");
  EXPECT_EQ(words(damage(LossCause::overwritten, 0, 9, 1, 2,
                         {{.stream = 0, .gone = 2, .hurt = 1}, {.stream = 1, .hurt = 3}})),
            "0:01.00 to 0:02.00: 2 pictures lost, 1 picture hurt, 3 sound chunks hurt (overwritten)");
  EXPECT_EQ(words(damage(LossCause::sizeField, 0, 9, 1, 1, {{.stream = 0}})),
            "0:01.00: wrong size; the size is mended");
  EXPECT_EQ(words(damage(LossCause::foreign, 0, 9, 1, 1)), "0:01.00: foreign; left out");
}

TEST(SalvageWords, NothingIsSaidOfSoundThatAFilmDoesNotHave) {
  SalvageReport report = film({});
  report.streams.pop_back();
  EXPECT_EQ(salvage::lossWords(damage(LossCause::zeroed, 0, 9, 1, 2, {{.stream = 0, .gone = 25}}), report),
            "0:01.00 to 0:02.00: 25 pictures lost (zeroed)");
}

}  // namespace
}  // namespace zelvo::tests
