// What a plan could not bring back, stretch by stretch.
#include "salvage/plan_spans.h"

#include <gtest/gtest.h>

#include "tests/salvage/made_film.h"

namespace zelvo::tests {
namespace {

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

}  // namespace
}  // namespace zelvo::tests
