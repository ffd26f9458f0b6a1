// The plan of a film, from all that was found in it.
#include "salvage/plan/film_plan.h"

#include <gtest/gtest.h>

#include "tests/salvage/planned_film.h"

namespace zelvo::tests {
namespace {

AviBuilder plannedFilm() {
  AviBuilder builder;
  builder.interleaved(20, 1001, 200);
  return builder;
}

TEST(FilmPlan, OfAWholeFilmHasEveryChunkInItsPlace) {
  PlannedFilm planned(plannedFilm().build());
  EXPECT_EQ(planned.sources(), payloadOffsets(plannedFilm()));
  EXPECT_EQ(planned.plan.indexedChunks, plannedFilm().chunks.size());
  for (const auto& slot : planned.plan.slots) EXPECT_EQ(slot.state, salvage::SlotState::whole);
}

TEST(FilmPlan, OfAFilmWithoutAnIndexFollowsTheChain) {
  AviBuilder builder = plannedFilm();
  builder.withIndex = false;
  PlannedFilm planned(builder.build());
  EXPECT_EQ(planned.sources(), payloadOffsets(builder));
  EXPECT_EQ(planned.plan.indexedChunks, 0U);
}

}  // namespace
}  // namespace zelvo::tests
