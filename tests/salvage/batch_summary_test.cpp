#include "salvage/batch_summary.h"

#include <gtest/gtest.h>

#include "tests/salvage/batch_lines.h"

namespace zelvo::salvage {
namespace {

BatchLine lineOf(const std::string& input, LineState state, double lost) {
  BatchLine line = tests::fullLine(input);
  line.state = state;
  line.isAdopted = false;
  line.figures = {{"seconds", 10}, {"seconds_lost", lost}};
  if (state == LineState::failed) line.exit = 3;
  return line;
}

TEST(CollectionSummaryTest, AddsUpWhatTheLastLinesSay) {
  CollectionSummary summary;
  summary.add(lineOf("/a", LineState::naming, 1));
  summary.add(lineOf("/a", LineState::done, 1));
  summary.add(lineOf("/b", LineState::failed, 0));
  summary.add(lineOf("/b", LineState::done, 2));
  summary.add(lineOf("/c", LineState::naming, 0));
  summary.add(lineOf("/d", LineState::failed, 0));
  const CollectionTotals totals = summary.totals();
  EXPECT_EQ(totals.films, 4U);
  EXPECT_EQ(totals.done, 2U);
  EXPECT_EQ(totals.failed, 1U);
  EXPECT_EQ(totals.unfinished, 1U);
  EXPECT_EQ(totals.verdicts.at("partial"), 3U);
  EXPECT_DOUBLE_EQ(totals.lostSeconds, 3);
  EXPECT_DOUBLE_EQ(totals.workSeconds, 4.5);
  EXPECT_EQ(totals.inputBytes, 20'000'000'000U);
}

TEST(CollectionSummaryTest, FilmThatIsDoneStaysDone) {
  CollectionSummary summary;
  summary.add(lineOf("/a", LineState::done, 1));
  summary.add(lineOf("/a", LineState::failed, 0));
  summary.add(lineOf("/a", LineState::naming, 0));
  EXPECT_EQ(summary.totals().done, 1U);
}

TEST(CollectionSummaryTest, CommandsAreCountedApart) {
  CollectionSummary summary;
  summary.add(lineOf("/a", LineState::done, 1));
  BatchLine verified = lineOf("/a", LineState::done, 0);
  verified.command = "verify";
  summary.add(verified);
  EXPECT_EQ(summary.totals().films, 2U);
}

TEST(CollectionSummaryTest, WorstFilmsComeFirst) {
  CollectionSummary summary;
  for (const auto& [path, lost] : {std::pair("/a", 1.0), {"/b", 5.0}, {"/c", 5.0}, {"/d", 0.0}}) {
    summary.add(lineOf(path, LineState::done, lost));
  }
  summary.add(lineOf("/e", LineState::failed, 0));
  std::string order;
  for (const BatchLine* line : summary.worst()) order += line->input;
  EXPECT_EQ(order, "/e/b/c/a/d");
}

TEST(CollectionSummaryTest, ShareIsBoundedWhateverALineClaims) {
  EXPECT_EQ(lostShare(lineOf("/a", LineState::done, 1e300)), 1);
  EXPECT_EQ(lostShare(lineOf("/a", LineState::done, -1)), 0);
  BatchLine none = tests::fullLine();
  none.figures = {};
  EXPECT_EQ(lostShare(none), 0);
  none.exit = 1;
  none.outcome = "not-supported";
  EXPECT_EQ(lostShare(none), 1);
}

TEST(CollectionSummaryTest, FaultsOfAFilmThatPlaysAreNoLoss) {
  BatchLine line = tests::fullLine();
  line.command = "verify";
  line.outcome = "faults";
  line.exit = 1;
  line.figures = {{"seconds", 10}, {"errors", 5}};
  EXPECT_EQ(lostShare(line), 0);
  CollectionSummary summary;
  summary.add(line);
  EXPECT_EQ(summary.totals().filmSeconds, 0);
}

}  // namespace
}  // namespace zelvo::salvage
