// What a plan could not bring back, stretch by stretch.
#include "salvage/plan/plan_spans.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "tests/salvage/made_film.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using salvage::LossCause;
using salvage::PlanSpan;

std::vector<PlanSpan> spansOf(const MadeFilm& film) { return PlannedFilm(film.bytes).plan.spans; }

TEST(PlanSpans, NeighboursWithOneFateShareASpan) {
  MadeFilm film;
  film.remove(film.headers[20] + 100, film.headers[25] + 50 - film.headers[20] - 100);
  const auto spans = spansOf(film);
  ASSERT_EQ(spans.size(), 1U);
  EXPECT_EQ(spans[0].cause, LossCause::missing);
  EXPECT_EQ(spans[0].firstSlot, 20U);
  EXPECT_EQ(spans[0].slots, 6U);
  EXPECT_EQ(spans[0].originalBegin, film.headers[20]);
  EXPECT_EQ(spans[0].originalEnd, film.headers[26]);
  EXPECT_EQ(spans[0].begin, film.headers[20]);
}

TEST(PlanSpans, MendedFieldsAreToldByThemselves) {
  MadeFilm film;
  film.fill(film.headers[20], 4);
  overwriteNumber(film.bytes, static_cast<std::size_t>(film.headers[30]) + 4, 70'000);
  const auto spans = spansOf(film);
  ASSERT_EQ(spans.size(), 2U);
  EXPECT_EQ(spans[0].cause, LossCause::code);
  EXPECT_EQ(spans[0].slots, 1U);
  EXPECT_EQ(spans[0].begin, film.headers[20]);
  EXPECT_EQ(spans[0].end, film.headers[20] + 8 + film.payloads[20].size());
  EXPECT_EQ(spans[1].cause, LossCause::sizeField);
  EXPECT_EQ(spans[1].firstSlot, 30U);
}

TEST(PlanSpans, OverwrittenHeaderIsToldWhereItStands) {
  MadeFilm film;
  film.fill(film.headers[20], 300, std::byte{0xee});
  const auto spans = spansOf(film);
  ASSERT_EQ(spans.size(), 1U);
  EXPECT_EQ(spans[0].cause, LossCause::overwritten);
  EXPECT_EQ(spans[0].originalBegin, film.headers[20]);
  EXPECT_EQ(spans[0].originalEnd, film.headers[21]);
}

TEST(PlanSpans, StretchThatBeginsInsideAChunkReachesToItsEnd) {
  MadeFilm film;
  film.fill(film.headers[20] + 100, film.headers[26] - film.headers[20] - 100);
  const auto spans = spansOf(film);
  ASSERT_EQ(spans.size(), 1U);
  EXPECT_EQ(spans[0].cause, LossCause::zeroed);
  EXPECT_EQ(spans[0].slots, 6U);
  EXPECT_EQ(spans[0].begin, film.headers[20]);
  EXPECT_EQ(spans[0].end, film.headers[26]);
}

TEST(PlanSpans, RefilledChunksCoverTheGap) {
  MadeFilm film(40, 1, false);
  film.fill(film.headers[20], film.headers[24] - film.headers[20], std::byte{0xee});
  const auto spans = spansOf(film);
  ASSERT_EQ(spans.size(), 1U);
  EXPECT_EQ(spans[0].firstSlot, 20U);
  EXPECT_EQ(spans[0].slots, 4U);
  EXPECT_EQ(spans[0].originalBegin, film.headers[20]);
  EXPECT_EQ(spans[0].originalEnd, film.headers[24]);
  EXPECT_EQ(spans[0].begin, film.headers[20]);
  EXPECT_EQ(spans[0].end, film.headers[24]);
}

TEST(PlanSpans, WhatIsBehindTheCutIsToldByTheListsSize) {
  MadeFilm film(40, 1, false);
  film.cut(film.headers[40]);
  const auto spans = spansOf(film);
  ASSERT_EQ(spans.size(), 1U);
  EXPECT_EQ(spans[0].cause, LossCause::cut);
  EXPECT_EQ(spans[0].slots, 0U);
  EXPECT_EQ(spans[0].originalBegin, film.headers[40]);
  EXPECT_EQ(spans[0].originalEnd, film.headers.back() + 8 + MadeFilm::kSound);
}

/// Where the original has what stands at the header of chunk `number`, as the one span of such a cause tells.
std::optional<std::uint64_t> originalOf(const std::vector<PlanSpan>& spans, LossCause cause) {
  const auto found = std::ranges::find(spans, cause, &PlanSpan::cause);
  return found == spans.end() ? std::nullopt : found->originalBegin;
}

TEST(PlanSpans, SizeThatOnlySeemedTornMovesNothing) {
  MadeFilm film(40, 1, false);
  overwriteNumber(film.bytes, static_cast<std::size_t>(film.headers[20]) + 4,
                  static_cast<std::uint32_t>(film.payloads[20].size() + 300));
  film.fill(film.headers[40], 4);
  const auto spans = spansOf(film);
  ASSERT_EQ(spans.size(), 2U);
  EXPECT_EQ(spans[0].cause, LossCause::sizeField);
  EXPECT_EQ(originalOf(spans, LossCause::code), film.headers[40]);
}

TEST(PlanSpans, WhatIsAfterMissingChunksIsToldAboutWhereItWas) {
  MadeFilm film(40, 1, false);
  const std::uint64_t place = film.headers[40];
  const std::uint64_t removed = film.headers[26] + 50 - film.headers[20] - 100;
  film.fill(place, 4);
  film.remove(film.headers[20] + 100, removed);
  const auto spans = spansOf(film);
  const auto told = originalOf(spans, LossCause::code);
  ASSERT_TRUE(told.has_value());
  EXPECT_NEAR(static_cast<double>(*told), static_cast<double>(place), 0.2 * static_cast<double>(removed));
}

TEST(PlanSpans, LaterFormsBeganWhereTheFirstOneEnded) {
  MadeFilm film;
  MadeFilm more(20, 2, false);
  const std::uint64_t form = film.bytes.size();
  const Bytes chunks = more.part(more.headers[0], more.bytes.size() - more.headers[0]);
  appendText(film.bytes, "RIFF");
  appendNumber(film.bytes, static_cast<std::uint32_t>(chunks.size() + 16));
  appendText(film.bytes, "AVIXLIST");
  appendNumber(film.bytes, static_cast<std::uint32_t>(chunks.size() + 4));
  appendText(film.bytes, "movi");
  film.bytes.insert(film.bytes.end(), chunks.begin(), chunks.end());
  const std::uint64_t place = form + 24 + more.headers[10] - more.headers[0];
  overwriteNumber(film.bytes, 4, static_cast<std::uint32_t>(form - 8));
  film.fill(place, 4);
  film.remove(film.indexBegin() - 8, form - film.indexBegin() + 8);
  const auto spans = spansOf(film);
  EXPECT_EQ(originalOf(spans, LossCause::code), place);
  film.cut(film.bytes.size() - 1000);
  const auto cut = spansOf(film);
  EXPECT_EQ(cut.back().cause, LossCause::cut);
  EXPECT_EQ(cut.back().originalEnd, form + 24 + chunks.size());
}

TEST(PlanSpans, PartsAtSeveralPlacesAreToldThoughNothingIsLost) {
  MadeFilm film(160);
  constexpr std::uint64_t kCluster = 4096;
  const auto clusterAt = [&](std::uint64_t number) {
    return film.bytes.begin() + static_cast<std::ptrdiff_t>(number * kCluster);
  };
  std::swap_ranges(clusterAt(8), clusterAt(9), clusterAt(20));
  std::swap_ranges(clusterAt(14), clusterAt(15), clusterAt(26));
  const PlannedFilm planned(film.bytes);
  EXPECT_EQ(fates(planned, film), allBut(320));
  ASSERT_FALSE(planned.plan.spans.empty());
  for (const PlanSpan& span : planned.plan.spans) {
    EXPECT_EQ(span.cause, LossCause::moved);
    for (std::uint32_t slot = span.firstSlot; slot < span.firstSlot + span.slots; ++slot)
      EXPECT_NE(planned.plan.slots[slot].pieces, salvage::Slot::kOnePiece);
  }
}

}  // namespace
}  // namespace zelvo::tests
