#include "cli/batch_lines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zelvo::cli {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::SizeIs;

TEST(BatchLines, EachRunningFilmHasOneAndAllHaveOne) {
  salvage::BatchProgress progress{.running = {{0, "a: writing"}, {1, ""}, {2, "c: searching"}},
                                  .ended = 3,
                                  .films = 60,
                                  .endedBytes = 5'000'000,
                                  .bytes = 100'000'000,
                                  .secondsLeft = {}};
  EXPECT_THAT(batchProgressLines(progress),
              ElementsAre("a: writing", "c: searching", "3 of 60 films done, 5.0 MB of 100.0 MB"));
  for (const auto& [seconds, words] : {std::pair(12.5, "13 s left"), {300.0, "6 min left"}, {7200.0, "2.0 h left"}}) {
    progress.secondsLeft = seconds;
    EXPECT_THAT(batchProgressLines(progress).back(), EndsWith(words));
  }
}

TEST(BatchLines, ManyFilmsDoNotFillTheTerminal) {
  salvage::BatchProgress progress;
  for (std::size_t i = 0; i < 50; ++i) progress.running.push_back({i, "film"});
  EXPECT_THAT(batchProgressLines(progress), SizeIs(18));
}

}  // namespace
}  // namespace zelvo::cli
