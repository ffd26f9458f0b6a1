// A whole run, from the damaged bytes to the report.
#include "salvage/deep_repair.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/salvage/salvage_bench.h"
#include "tests/salvage/scanned_film.h"
#include "tests/support/avi_builder.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using salvage::SalvageEnd;
using salvage::SalvageReport;
using salvage::SalvageStage;
using salvage::SalvageVerdict;
using testing::ElementsAre;

AviBuilder tenPictures() { return AviBuilder().interleaved(10, 300, 101); }

using Bench = SalvageBench;

TEST(DeepRepair, AWholeFilmIsCleanAndWrittenWhole) {
  Bench run(tenPictures().build());
  const SalvageReport report = run.perform();
  EXPECT_EQ(report.end, SalvageEnd::written);
  EXPECT_EQ(report.verdict, SalvageVerdict::clean);
  EXPECT_EQ(report.outputSize, run.files.content("/out.avi").size());
  EXPECT_EQ(run.asked, report.outputSize);
  EXPECT_EQ(report.streams.at(0).all().chunks, 10U);
  EXPECT_EQ(report.streams.at(1).all().bytes, 1010U);
  EXPECT_THAT(run.notes.stages, ElementsAre(SalvageStage::readingHeaders, SalvageStage::searching,
                                            SalvageStage::weighing, SalvageStage::writing));
  EXPECT_GE(run.notes.bytesRead, run.input.size());
}

TEST(DeepRepair, ItsOutputIsCleanAgainAndStaysTheSame) {
  Bench first(tenPictures().build());
  ASSERT_EQ(first.perform().end, SalvageEnd::written);
  Bench second(first.files.content("/out.avi"));
  EXPECT_EQ(second.perform().verdict, SalvageVerdict::clean);
  EXPECT_EQ(second.files.content("/out.avi"), first.files.content("/out.avi"));
}

TEST(DeepRepair, AFilmWithoutItsIndexIsRepaired) {
  AviBuilder builder = tenPictures();
  builder.withIndex = false;
  Bench run(builder.build());
  const SalvageReport report = run.perform();
  EXPECT_EQ(report.verdict, SalvageVerdict::repaired);
  EXPECT_EQ(report.streams.at(0).of(salvage::SlotState::whole).chunks, 10U);
}

TEST(DeepRepair, AFilmOfFewChunksOfOneSizeComesBack) {
  for (const bool withIndex : {true, false}) {
    AviBuilder builder;
    builder.interleaved(3, 300, 101);
    builder.withIndex = withIndex;
    Bench run(builder.build());
    EXPECT_EQ(run.perform().end, SalvageEnd::written);
  }
}

TEST(DeepRepair, ADryRunWritesNothing) {
  Bench run(tenPictures().build());
  run.isDry = true;
  const SalvageReport report = run.perform();
  EXPECT_EQ(report.end, SalvageEnd::planned);
  EXPECT_GT(report.outputSize, 0U);
  EXPECT_TRUE(run.files.content("/out.avi").empty());
}

TEST(DeepRepair, ARefusedOutputEndsIt) {
  Bench run(tenPictures().build());
  run.isRefused = true;
  EXPECT_EQ(run.perform().end, SalvageEnd::noOutput);
}

TEST(DeepRepair, WhatIsNoFilmIsHopeless) {
  for (const Bytes& bytes : {Bytes{}, Bytes(100), Bytes(100'000, std::byte{'x'}), tenPictures().headers()}) {
    Bench run(bytes);
    const SalvageReport report = run.perform();
    EXPECT_EQ(report.end, SalvageEnd::noMedia);
    EXPECT_EQ(report.verdict, SalvageVerdict::hopeless);
    EXPECT_TRUE(run.files.content("/out.avi").empty());
  }
}

TEST(DeepRepair, AStopAtAnyStageEndsIt) {
  for (const SalvageStage stop :
       {SalvageStage::readingHeaders, SalvageStage::searching, SalvageStage::weighing, SalvageStage::writing}) {
    Bench run(tenPictures().build());
    run.notes.onStage = [&](SalvageStage stage) {
      if (stage == stop) run.cancel.abandon();
    };
    EXPECT_EQ(run.perform().end, SalvageEnd::stopped);
    EXPECT_EQ(run.notes.stages.back(), stop);
  }
}

TEST(DeepRepair, AWriteThatFailsIsToldWithItsPlace) {
  for (const unsigned processors : {1U, 2U}) {
    AviBuilder builder;
    builder.interleaved(100, 20'000, 1000);
    Bench run(builder.build());
    run.workers.setProcessors(processors);
    run.onOutput = [](MemoryFile& file) {
      file.badWriteFrom = 1'200'000;
      file.writeError = std::make_error_code(std::errc::no_space_on_device);
    };
    const SalvageReport report = run.perform();
    ASSERT_TRUE(report.writeFailure.has_value());
    EXPECT_EQ(report.writeFailure->offset, 1'200'000U);
    EXPECT_EQ(report.writeFailure->cause, std::errc::no_space_on_device);
  }
}

TEST(DeepRepair, AHelperChangesNoByte) {
  AviBuilder builder;
  builder.interleaved(300, 20'000, 1001);
  std::vector<Bytes> outputs;
  for (const unsigned processors : {1U, 2U}) {
    Bench run(builder.build());
    run.workers.setProcessors(processors);
    EXPECT_FALSE(run.perform().writeFailure.has_value());
    outputs.push_back(run.files.content("/out.avi"));
  }
  EXPECT_EQ(outputs[0], outputs[1]);
}

TEST(DeepRepair, AFilmSentAsTextIsWholeAgainAndTold) {
  AviBuilder builder;
  builder.interleaved(40, 300, 101);
  Bytes original = builder.build();
  for (const std::uint64_t header : chunkOffsets(builder)) {
    for (std::size_t i = 10; i < 100; i += 30) original[static_cast<std::size_t>(header) + i] = std::byte{0x0a};
  }
  Bytes sent;
  for (const std::byte byte : original) {
    if (byte == std::byte{0x0a}) sent.push_back(std::byte{0x0d});
    sent.push_back(byte);
  }
  Bench whole(original);
  EXPECT_EQ(whole.perform().returnsLeftOut, 0U);
  Bench run(sent);
  const SalvageReport report = run.perform();
  EXPECT_EQ(report.returnsLeftOut, sent.size() - original.size());
  EXPECT_EQ(report.verdict, SalvageVerdict::repaired);
  EXPECT_EQ(run.files.content("/out.avi"), whole.files.content("/out.avi"));
}

TEST(DeepRepair, ChunksThatFindNoRoomAreTold) {
  AviBuilder many;
  many.withIndex = false;
  many.interleaved(80'000, 4, 4);
  AviBuilder fewer;
  fewer.withIndex = false;
  fewer.interleaved(30'000, 4, 4);
  const SalvageReport report = Bench(many.build()).perform();
  const std::size_t kept = salvage::ScanLimits().candidatesOf(many.build().size());
  EXPECT_NEAR(static_cast<double>(report.chunksLeftOut), 160'000.0 - static_cast<double>(kept), 16);
  EXPECT_EQ(report.verdict, SalvageVerdict::partial);
  EXPECT_EQ(Bench(fewer.build()).perform().chunksLeftOut, 0U);
}

TEST(DeepRepair, ReadsThatFailAreToldAndZerosStandThere) {
  AviBuilder builder;
  builder.interleaved(10, 20'000, 1000);
  Bench run(builder.build());
  run.onInput = [](MemoryFile& file) {
    file.badReadStart = 30'000;
    file.badReadEnd = 30'001;
    file.readError = std::make_error_code(std::errc::io_error);
  };
  const SalvageReport report = run.perform();
  EXPECT_EQ(report.end, SalvageEnd::written);
  EXPECT_GT(report.readFailures.count, 0U);
  EXPECT_GT(report.unreadable, 0U);
  EXPECT_EQ(report.streams.at(0).all().chunks, 10U);
}

}  // namespace
}  // namespace zelvo::tests
