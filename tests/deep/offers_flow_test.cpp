#include "tests/deep/deep_bench.h"

namespace zelvo::tests {

using platform::FilmVerdict;

using OffersFlow = DeepTest;

TEST_F(OffersFlow, AFilmCanBeDeepRepairedWhileItIsChosen) {
  EXPECT_FALSE(screen.deeprepairbutton.isEnabled());
  deepRepair->filmChosen("/films/a.avi");
  EXPECT_TRUE(screen.deeprepairbutton.isEnabled());
  deepRepair->choiceCleared();
  EXPECT_FALSE(screen.deeprepairbutton.isEnabled());
}

TEST_F(OffersFlow, ARefusedFilmIsOfferedByNameUntilAnotherIsChosen) {
  deepRepair->filmRefused("/films/a.avi");
  EXPECT_EQ(screen.refusedoffer.sentence(), "A deep repair may still bring a.avi back.");
  deepRepair->filmChosen("/films/b.avi");
  EXPECT_FALSE(screen.refusedoffer.sentence());
}

TEST_F(OffersFlow, AResultThatIsNotGoodIsOfferedMore) {
  deepRepair->filmJudged("/films/a.avi", FilmVerdict::partly);
  EXPECT_TRUE(screen.partlyoffer.sentence());
  deepRepair->filmJudged("/films/a.avi", FilmVerdict::good);
  EXPECT_FALSE(screen.partlyoffer.sentence());
  deepRepair->filmJudged("/films/a.avi", FilmVerdict::nothing);
  EXPECT_TRUE(screen.partlyoffer.sentence());
  deepRepair->choiceCleared();
  EXPECT_FALSE(screen.partlyoffer.sentence());
}

}  // namespace zelvo::tests
