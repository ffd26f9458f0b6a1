// What a plan comes to, in figures, and what the user's choices change in it.
#include "salvage/salvage_report.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "salvage/plan/plan_choices.h"
#include "tests/salvage/written_film.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using salvage::SalvageReport;
using salvage::SalvageVerdict;
using salvage::SlotState;
using salvage::SpanShare;
using testing::ElementsAre;

/// Ten pictures of 40 ms, each followed by sound of as long.
std::unique_ptr<WrittenFilmBench> reportedFilm() {
  auto bench = pictureAndSound();
  for (int i = 0; i < 10; ++i) {
    bench->add(0, Bytes(10));
    bench->add(1, Bytes(640));
  }
  for (auto& slot : bench->plan.slots) slot.isIndexed = true;
  bench->plan.indexedChunks = bench->plan.slots.size();
  bench->header.main = salvage::SurvivingMainHeader{.streams = 2};
  return bench;
}

salvage::PlanSpan span(std::uint64_t begin, std::uint64_t end, std::uint32_t firstSlot, std::uint32_t slots) {
  salvage::PlanSpan made;
  made.begin = begin;
  made.end = end;
  made.firstSlot = firstSlot;
  made.slots = slots;
  return made;
}

SalvageReport reportOf(const WrittenFilmBench& bench) {
  SalvageReport report;
  report.hasMainHeader = bench.header.main.has_value();
  report.headersClaimed = bench.header.main ? bench.header.main->streams : 0;
  salvage::describePlan(report, bench.plan, bench.header);
  return report;
}

TEST(SalvageReport, AFilmWithoutFaultIsClean) {
  const SalvageReport report = reportOf(*reportedFilm());
  EXPECT_EQ(report.verdict, SalvageVerdict::clean);
  ASSERT_EQ(report.streams.size(), 2U);
  EXPECT_EQ(report.streams[0].all().chunks, 10U);
  EXPECT_NEAR(report.streams[0].all().seconds, 0.4, 1e-9);
  EXPECT_NEAR(report.streams[1].all().seconds, 0.4, 1e-9);
  EXPECT_EQ(report.streams[1].all().bytes, 6400U);
  EXPECT_EQ(report.syncBefore, 0);
}

TEST(SalvageReport, WhatWasMendedIsRepaired) {
  const auto sizes = reportedFilm();
  sizes->plan.slots[3].state = SlotState::sizeMended;
  EXPECT_EQ(reportOf(*sizes).verdict, SalvageVerdict::repaired);
  const auto index = reportedFilm();
  index->plan.indexedChunks = 3;
  EXPECT_EQ(reportOf(*index).verdict, SalvageVerdict::repaired);
  const auto header = reportedFilm();
  header->header.streams[1].origin = salvage::HeaderOrigin::donor;
  EXPECT_EQ(reportOf(*header).verdict, SalvageVerdict::repaired);
  SalvageReport undone;
  undone.hasMainHeader = true;
  undone.headersClaimed = 2;
  undone.returnsLeftOut = 1;
  const auto sent = reportedFilm();
  salvage::describePlan(undone, sent->plan, sent->header);
  EXPECT_EQ(undone.verdict, SalvageVerdict::repaired);
  const auto main = reportedFilm();
  main->header.main.reset();
  EXPECT_EQ(reportOf(*main).verdict, SalvageVerdict::repaired);
  const auto hurt = reportedFilm();
  hurt->plan.spans.push_back(span(1, 2, 0, 0));
  EXPECT_EQ(reportOf(*hurt).verdict, SalvageVerdict::repaired);
}

TEST(SalvageReport, AStreamThatIsLeftOutIsALoss) {
  const auto bench = reportedFilm();
  SalvageReport report;
  report.streamsWithoutHeader = 1;
  salvage::describePlan(report, bench->plan, bench->header);
  EXPECT_EQ(report.verdict, SalvageVerdict::partial);
}

TEST(SalvageReport, WhatIsLostOrHurtIsPartial) {
  for (const SlotState state :
       {SlotState::damaged, SlotState::torn, SlotState::cut, SlotState::lost, SlotState::refilled}) {
    const auto bench = reportedFilm();
    bench->plan.slots[4].state = state;
    const SalvageReport report = reportOf(*bench);
    EXPECT_EQ(report.verdict, SalvageVerdict::partial);
    EXPECT_EQ(report.streams[0].of(state).chunks, 1U);
    EXPECT_EQ(report.streams[0].notWhole().chunks, 1U);
    EXPECT_EQ(report.streams[1].notWhole().chunks, 0U);
  }
}

TEST(SalvageReport, SyncIsWhatTheLostWouldHaveCost) {
  const auto bench = reportedFilm();
  for (const std::size_t slot : {4U, 6U, 8U}) bench->plan.slots[slot].state = SlotState::lost;
  EXPECT_NEAR(reportOf(*bench).syncBefore, 0.12, 1e-9);
  bench->plan.slots[5].state = SlotState::lost;
  EXPECT_NEAR(reportOf(*bench).syncBefore, 0.08, 1e-9);
}

TEST(SalvageReport, SyncIsMeasuredInTheFilmThatIsWritten) {
  const auto bench = reportedFilm();
  for (const std::size_t slot : {4U, 6U, 8U}) bench->plan.slots[slot].state = SlotState::lost;
  const auto syncOf = [&](bool closesGaps) {
    SalvageReport report;
    salvage::describePlan(report, bench->plan, bench->header, closesGaps);
    return report.syncAfter;
  };
  EXPECT_EQ(syncOf(false), 0);
  EXPECT_NEAR(syncOf(true), 0.12, 1e-9);
  // As much of the sound is lost, too, so that what comes after is in step again.
  for (const std::size_t slot : {5U, 7U, 9U}) bench->plan.slots[slot].state = SlotState::lost;
  EXPECT_NEAR(syncOf(true), 0, 1e-9);
  bench->plan.drift = 0.05;
  EXPECT_NEAR(syncOf(false), 0.05, 1e-9);
}

TEST(SalvageReport, SpansHaveTimesAndTheStreamsThatTheyTouch) {
  const auto bench = reportedFilm();
  bench->plan.slots[4].state = SlotState::lost;
  bench->plan.slots[5].state = SlotState::damaged;
  bench->plan.spans = {span(10, 20, 8, 4), span(100, 200, 4, 3), span(300, 301, 20, 0)};
  const SalvageReport report = reportOf(*bench);
  ASSERT_EQ(report.spans.size(), 3U);
  EXPECT_NEAR(report.spans[0].begin, 0.16, 1e-9);
  EXPECT_NEAR(report.spans[0].end, 0.24, 1e-9);
  EXPECT_TRUE(report.spans[0].streams.empty());
  EXPECT_NEAR(report.spans[1].begin, 0.08, 1e-9);
  EXPECT_NEAR(report.spans[1].end, 0.16, 1e-9);
  EXPECT_THAT(report.spans[1].streams,
              ElementsAre(SpanShare{.stream = 0, .gone = 1}, SpanShare{.stream = 1, .hurt = 1}));
  EXPECT_NEAR(report.spans[2].begin, 0.4, 1e-9);
  EXPECT_NEAR(report.spans[2].end, 0.4, 1e-9);
}

TEST(SalvageReport, NoMoreSpansThanThereIsRoomForAreTold) {
  const auto bench = reportedFilm();
  bench->plan.spans.resize(salvage::kMaxSpans + 7, span(1, 2, 0, 20));
  const SalvageReport report = reportOf(*bench);
  EXPECT_EQ(report.spans.size(), salvage::kMaxSpans);
  EXPECT_EQ(report.spansLeftOut, 7U);
}

TEST(PlanChoices, DamagedPicturesBecomeEmptyAndSoundStays) {
  const auto bench = reportedFilm();
  bench->plan.slots[2].state = SlotState::damaged;
  bench->plan.slots[3].state = SlotState::damaged;
  bench->plan.slots[4].state = SlotState::torn;
  bench->plan.slots[6].state = SlotState::cut;
  bench->plan.slots[8].state = SlotState::sizeMended;
  salvage::emptyDamagedPictures(bench->plan, bench->header);
  const auto stateOf = [&](std::size_t slot) { return bench->plan.slots[slot].state; };
  EXPECT_EQ(stateOf(2), SlotState::lost);
  EXPECT_EQ(bench->plan.slots[2].size, 0U);
  EXPECT_EQ(stateOf(3), SlotState::damaged);
  EXPECT_EQ(stateOf(4), SlotState::lost);
  EXPECT_EQ(stateOf(6), SlotState::lost);
  EXPECT_EQ(stateOf(8), SlotState::sizeMended);
}

TEST(PlanChoices, ClosedGapsMoveWhatFollowsUpAndSpansWithIt) {
  const auto bench = reportedFilm();
  for (const std::size_t slot : {1U, 4U, 5U}) bench->plan.slots[slot].state = SlotState::lost;
  bench->plan.slots[7].state = SlotState::refilled;
  bench->plan.spans = {span(1, 2, 0, 3), span(1, 2, 4, 4), span(1, 2, 99, 9)};
  salvage::closeGaps(bench->plan);
  EXPECT_EQ(bench->plan.slots.size(), 16U);
  EXPECT_EQ(bench->plan.spans[0].firstSlot, 0U);
  EXPECT_EQ(bench->plan.spans[0].slots, 2U);
  EXPECT_EQ(bench->plan.spans[1].firstSlot, 3U);
  EXPECT_EQ(bench->plan.spans[1].slots, 1U);
  EXPECT_EQ(bench->plan.spans[2].slots, 0U);
}

}  // namespace
}  // namespace zelvo::tests
