#include "cli/outcome.h"

#include <gtest/gtest.h>

namespace zelvo::cli {
namespace {

Outcome outcomeWith(Verdict verdict, std::uint64_t failedReads = 0) {
  Outcome outcome;
  outcome.verdict = verdict;
  outcome.readFailures.count = failedReads;
  return outcome;
}

TEST(Outcome, EachVerdictHasItsExit) {
  EXPECT_EQ(exitOf(outcomeWith(Verdict::repaired)), Exit::done);
  EXPECT_EQ(exitOf(outcomeWith(Verdict::repairable)), Exit::done);
  EXPECT_EQ(exitOf(outcomeWith(Verdict::notSupported)), Exit::unrepairable);
  EXPECT_EQ(exitOf(outcomeWith(Verdict::invalid)), Exit::unrepairable);
  EXPECT_EQ(exitOf(outcomeWith(Verdict::failed)), Exit::ioFailed);
  EXPECT_EQ(exitOf(outcomeWith(Verdict::stopped)), Exit::stopped);
}

TEST(Outcome, UnreadableBytesAreNoPlainSuccess) {
  EXPECT_EQ(exitOf(outcomeWith(Verdict::repaired, 1)), Exit::ioFailed);
  EXPECT_EQ(exitOf(outcomeWith(Verdict::repairable, 1)), Exit::ioFailed);
}

TEST(Outcome, SummaryCountsEachVerdict) {
  EXPECT_EQ(summary({Verdict::repaired, Verdict::failed, Verdict::repaired, Verdict::stopped}, 2),
            "6 inputs: 2 repaired, 1 failed, 1 stopped, 2 not started.\n");
}

TEST(Outcome, UnknownAudioFormatIsShownByItsNumber) {
  Outcome outcome = outcomeWith(Verdict::repairable);
  outcome.streams = {{engine::StreamKind::audio, "", 0x1234, 1, 2}};

  EXPECT_NE(inWords(outcome).find("Audio:     format 0x1234, 1 chunk, 2 bytes"), std::string::npos);
}

}  // namespace
}  // namespace zelvo::cli
