#include "cli/outcome.h"

#include <gtest/gtest.h>

namespace zelvo::tests {
namespace {

using cli::Exit;
using cli::exitOf;
using cli::inJson;
using cli::inWords;
using cli::nameOf;
using cli::Outcome;
using cli::summary;
using cli::Verdict;

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

/// A repair with all that can be told of it.
Outcome wholeOutcome() {
  Outcome outcome;
  outcome.command = "repair";
  outcome.inputPath = "in.avi";
  outcome.inputSize = 700000;
  outcome.verdict = Verdict::repaired;
  outcome.outputPath = "-out.avi";
  outcome.outputSize = 665300;
  outcome.streams = {{engine::StreamKind::video, "MJPG", std::nullopt, 150, 600000},
                     {engine::StreamKind::audio, "Unknown", 1, 1, 400}};
  outcome.readFailures.count = 3;
  outcome.warnings = {"one.", "two."};
  outcome.seconds = 1.5;
  return outcome;
}

TEST(Outcome, RepairIsToldInWords) {
  EXPECT_EQ(inWords(wholeOutcome()),
            "in.avi: repaired.\n"
            "  Video:     MJPG, 150 chunks, 600.0 kB\n"
            "  Audio:     PCM, 1 chunk, 400 bytes\n"
            "  Written:   -out.avi (665.3 kB, in 1.50 s)\n"
            "  To play:   open it with any video player, for instance: mpv './-out.avi'\n"
            "  Unchanged: in.avi\n");
}

TEST(Outcome, CheckIsToldInWords) {
  Outcome outcome = wholeOutcome();
  outcome.verdict = Verdict::repairable;
  outcome.streams.pop_back();
  outcome.streams.front().codec = "";
  EXPECT_EQ(inWords(outcome),
            "in.avi: can be repaired.\n"
            "  Video:     codec not named, 150 chunks, 600.0 kB\n"
            "  Output:    665.3 kB would be written\n"
            "  To repair: zelvo-avi repair 'in.avi'\n");
}

TEST(Outcome, WhatIsNoSuccessHasNoWordsButItsReason) {
  for (const Verdict verdict : {Verdict::notSupported, Verdict::invalid, Verdict::stopped, Verdict::failed}) {
    EXPECT_EQ(inWords(outcomeWith(verdict)), "");
  }
}

TEST(Outcome, RepairIsToldAsJson) {
  EXPECT_EQ(inJson(wholeOutcome()),
            R"({"version":1,"command":"repair","input":{"path":"in.avi","size":700000},"outcome":"repaired",)"
            R"("reason":null,"output":{"path":"-out.avi","size":665300},)"
            R"("video":{"codec":"MJPG","chunks":150,"bytes":600000},)"
            R"("audio":{"codec":"Unknown","format_tag":1,"chunks":1,"bytes":400},)"
            R"("streams":[{"kind":"video","codec":"MJPG","chunks":150,"bytes":600000},)"
            R"({"kind":"audio","codec":"Unknown","format_tag":1,"chunks":1,"bytes":400}],)"
            R"("read_errors":3,"warnings":["one.","two."],"seconds":1.500})"
            "\n");
}

TEST(Outcome, WhatIsNotKnownIsNullInJson) {
  Outcome outcome = wholeOutcome();
  outcome.verdict = Verdict::repairable;
  outcome.outputPath.reset();
  outcome.streams.clear();
  outcome.inputSize.reset();
  outcome.readFailures.count = 0;
  outcome.warnings.clear();
  EXPECT_EQ(inJson(outcome),
            R"({"version":1,"command":"repair","input":{"path":"in.avi","size":null},"outcome":"repairable",)"
            R"("reason":null,"output":{"path":null,"size":665300},"video":null,"audio":null,"streams":[],)"
            R"("read_errors":0,"warnings":[],"seconds":1.500})"
            "\n");

  outcome.outputSize.reset();
  outcome.verdict = Verdict::failed;
  outcome.reason = "why.";
  EXPECT_EQ(inJson(outcome),
            R"({"version":1,"command":"repair","input":{"path":"in.avi","size":null},"outcome":"failed",)"
            R"("reason":"why.","output":null,"video":null,"audio":null,"streams":[],)"
            R"("read_errors":0,"warnings":[],"seconds":1.500})"
            "\n");
}

TEST(Outcome, EachVerdictHasItsName) {
  EXPECT_EQ(nameOf(Verdict::repaired), "repaired");
  EXPECT_EQ(nameOf(Verdict::repairable), "repairable");
  EXPECT_EQ(nameOf(Verdict::notSupported), "not-supported");
  EXPECT_EQ(nameOf(Verdict::invalid), "invalid");
  EXPECT_EQ(nameOf(Verdict::stopped), "stopped");
  EXPECT_EQ(nameOf(Verdict::failed), "failed");
}

TEST(Outcome, SummaryNamesEachShare) {
  EXPECT_EQ(summary({Verdict::stopped, Verdict::failed, Verdict::invalid, Verdict::notSupported, Verdict::repairable,
                     Verdict::repaired},
                    0),
            "6 inputs: 1 repaired, 1 can be repaired, 1 cannot be repaired, 1 not an AVI file, 1 failed, 1 stopped.\n");
  EXPECT_EQ(summary({}, 1), "1 input: 1 not started.\n");
}

}  // namespace
}  // namespace zelvo::tests
