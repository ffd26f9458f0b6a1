// The sample scan: which chunks are recorded.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>

#include "tests/engine/sample_scan_bench.h"

namespace zelvo::tests {
namespace {

TEST_F(SampleScan, ChunkOf9999999BytesIsRecorded) {
  platform::Bytes bytes = blank(10100001);
  putHeader(bytes, 500, "00dc", 9999999);
  overwrite(bytes, 500 + 8 + 9999999, "00dc");
  scan(std::move(bytes));
  EXPECT_EQ(bench.video(), (Chunks{{500, 9999999}}));
}

TEST_F(SampleScan, ChunkOf10000000BytesIsNot) {
  platform::Bytes bytes = blank(10100001);
  putHeader(bytes, 500, "00dc", 10000000);
  overwrite(bytes, 500 + 8 + 10000000, "00dc");
  scan(std::move(bytes));
  EXPECT_TRUE(bench.video().empty());
}

TEST_F(SampleScan, ChunkOfSizeZeroIsNot) {
  platform::Bytes bytes = blank(5001);
  putHeader(bytes, 500, "00dc", 0);
  overwrite(bytes, 508, "01wb");
  scan(std::move(bytes));
  EXPECT_TRUE(bench.video().empty());
}

TEST_F(SampleScan, OddChunkIsFoundThroughItsPadByte) {
  platform::Bytes bytes = blank(5001);
  putHeader(bytes, 500, "00dc", 5);
  overwrite(bytes, 500 + 8 + 5 + 1, "01wb");
  scan(std::move(bytes));
  EXPECT_EQ(bench.video(), (Chunks{{500, 5}}));
}

TEST_F(SampleScan, LastChunkBeforeTheIndexIsNotRecorded) {
  platform::Bytes bytes = blank(5001);
  putHeader(bytes, 500, "00dc", 100);
  putHeader(bytes, 608, "00dc", 100);
  putHeader(bytes, 716, "idx1", 32);
  scan(std::move(bytes));
  EXPECT_EQ(bench.video(), (Chunks{{500, 100}}));
}

TEST_F(SampleScan, Last1024BytesOfAFileWhoseSizeIsAMultipleAreNeverScanned) {
  platform::Bytes bytes = blank(8 * 1024);
  for (const std::size_t offset : {6 * 1024UL, 7 * 1024UL, 7 * 1024UL + 500}) {
    putHeader(bytes, offset, "00dc", 50);
    overwrite(bytes, offset + 58, "01wb");
  }
  scan(bytes);
  EXPECT_EQ(bench.video(), (Chunks{{6 * 1024, 50}}));

  bytes.push_back(std::byte{0x20});  // now block 8 is not the last one
  scan(std::move(bytes));
  EXPECT_EQ(bench.video(), (Chunks{{6 * 1024, 50}, {7 * 1024, 50}, {7 * 1024 + 500, 50}}));
}

TEST_F(SampleScan, CodeStartingBeforeTheLastBlockOfAMultipleIsFoundAndItsValuesReadFromIt) {
  for (const std::size_t position : {1021U, 1022U, 1023U}) {
    platform::Bytes bytes = blank(8 * 1024);
    const std::size_t offset = 6 * 1024 + position;
    putHeader(bytes, offset, "00dc", 50);
    overwrite(bytes, offset + 58, "01wb");
    scan(std::move(bytes));
    EXPECT_EQ(bench.video(), (Chunks{{offset, 50}}));
  }
}

TEST_F(SampleScan, AudioAndVideoFillTheirTablesInFileOrder) {
  platform::Bytes bytes = blank(20001);
  putHeader(bytes, 500, "00db", 10);
  putHeader(bytes, 518, "01wb", 20);
  putHeader(bytes, 546, "00dc", 30);
  putHeader(bytes, 584, "01wb", 40);
  putHeader(bytes, 632, "00db", 50);
  putHeader(bytes, 690, "JUNK", 50);
  scan(std::move(bytes));
  EXPECT_EQ(bench.video(), (Chunks{{500, 10}, {546, 30}, {632, 50}}));
  EXPECT_EQ(bench.audio(), (Chunks{{518, 20}, {584, 40}}));
}

class LookAheadPosition : public SampleScan, public testing::WithParamInterface<std::size_t> {};

TEST_P(LookAheadPosition, IsSearchedUpToTwo) {
  platform::Bytes bytes = blank(5001);
  putHeader(bytes, 500, "00dc", 60);
  overwrite(bytes, 568 + GetParam(), "00db");
  scan(std::move(bytes));
  EXPECT_EQ(bench.video().size(), GetParam() <= 2 ? 1U : 0U);
}

INSTANTIATE_TEST_SUITE_P(Positions, LookAheadPosition, testing::Values(0, 1, 2, 3, 4),
                         testing::PrintToStringParamName());

class LookAheadCode : public SampleScan, public testing::WithParamInterface<std::pair<const char*, bool>> {};

TEST_P(LookAheadCode, Decides) {
  platform::Bytes bytes = blank(5001);
  putHeader(bytes, 500, "01wb", 60);
  overwrite(bytes, 568, GetParam().first);
  scan(std::move(bytes));
  EXPECT_EQ(bench.audio().size(), GetParam().second ? 1U : 0U);
}

INSTANTIATE_TEST_SUITE_P(Codes, LookAheadCode,
                         testing::Values(std::pair{"00db", true}, std::pair{"00dc", true}, std::pair{"01wb", true},
                                         std::pair{"JUNK", true}, std::pair{"LIST", false}, std::pair{"RIFF", false},
                                         std::pair{"idx1", false}, std::pair{"ix00", false}, std::pair{"ix01", false},
                                         std::pair{"00wb", false}, std::pair{"junk", false}),
                         [](const auto& named) { return std::string(named.param.first); });

class UnknownStream : public SampleScan, public testing::WithParamInterface<const char*> {};

TEST_P(UnknownStream, IsNeverRecorded) {
  platform::Bytes bytes = blank(5001);
  putHeader(bytes, 500, GetParam(), 60);
  overwrite(bytes, 568, "01wb");
  scan(std::move(bytes));
  EXPECT_TRUE(bench.video().empty());
  EXPECT_TRUE(bench.audio().empty());
}

INSTANTIATE_TEST_SUITE_P(Codes, UnknownStream, testing::Values("00wb", "01dc", "01db", "02wb", "00DC", "0odc"),
                         [](const auto& named) { return std::string(named.param); });

TEST_F(SampleScan, CodesInsideAPayloadAreJudgedToo) {
  platform::Bytes bytes = blank(5001);
  putHeader(bytes, 500, "00dc", 200);
  putHeader(bytes, 550, "01wb", 20);
  overwrite(bytes, 578, "00dc");
  overwrite(bytes, 708, "01wb");
  scan(std::move(bytes));
  EXPECT_EQ(bench.video(), (Chunks{{500, 200}}));
  EXPECT_EQ(bench.audio(), (Chunks{{550, 20}}));
}

TEST_F(SampleScan, PicksUpAgainBehindADamagedStretch) {
  AviBuilder avi;
  avi.interleaved(100, 1000, 100);
  platform::Bytes bytes = avi.build();
  std::fill(bytes.begin() + 30000, bytes.begin() + 50000, std::byte{0});
  scan(std::move(bytes));
  const Chunks chunks = bench.video();
  ASSERT_FALSE(chunks.empty());
  EXPECT_LT(chunks.front().first, 30000U);
  EXPECT_GT(chunks.back().first, 100000U);
  EXPECT_TRUE(std::none_of(chunks.begin(), chunks.end(),
                           [](const auto& chunk) { return chunk.first >= 30000 && chunk.first < 50000; }));
}

// ---- The look-ahead buffer ----

TEST_F(SampleScan, ChunkThatEndsWithTheFileIsAcceptedThroughTheStaleBuffer) {
  platform::Bytes bytes = withAcceptedChunk(5001);
  putHeader(bytes, 4001, "00dc", 992);
  scan(std::move(bytes));
  EXPECT_EQ(bench.video(), (Chunks{{500, 60}, {4001, 992}}));
}

TEST_F(SampleScan, BufferIsSixZeroBytesAtTheStartOfEveryRun) {
  platform::Bytes last = blank(5001);
  putHeader(last, 4001, "00dc", 992);
  scan(last);
  EXPECT_TRUE(bench.video().empty());
  scan(withAcceptedChunk(5001));
  ASSERT_EQ(bench.video().size(), 1U);

  scan(std::move(last));

  EXPECT_TRUE(bench.video().empty());
}

TEST_F(SampleScan, ShortReadOverwritesOnlyTheFrontOfTheBuffer) {
  platform::Bytes same = withAcceptedChunk(5001);
  putHeader(same, 4001, "00dc", 990);
  overwrite(same, 4999, "00");  // the two bytes that can be read; "dc" is stale
  scan(std::move(same));
  EXPECT_EQ(bench.video(), (Chunks{{500, 60}, {4001, 990}}));

  platform::Bytes other = withAcceptedChunk(5001);
  putHeader(other, 4001, "00dc", 990);
  overwrite(other, 4999, "0x");
  scan(std::move(other));
  EXPECT_EQ(bench.video(), (Chunks{{500, 60}}));
}

TEST_F(SampleScan, CandidateRejectedByItsSizeLeavesTheBufferAlone) {
  platform::Bytes bytes = withAcceptedChunk(5001);
  putHeader(bytes, 2000, "00dc", 0);
  putHeader(bytes, 2100, "00dc", 10000000);
  putHeader(bytes, 4001, "00dc", 992);
  scan(std::move(bytes));
  EXPECT_EQ(bench.video(), (Chunks{{500, 60}, {4001, 992}}));
}

TEST_F(SampleScan, CandidateRejectedByItsLookAheadHasChangedTheBuffer) {
  platform::Bytes bytes = withAcceptedChunk(5001);
  putHeader(bytes, 2000, "00dc", 100);  // followed by blanks
  putHeader(bytes, 4001, "00dc", 992);
  scan(std::move(bytes));
  EXPECT_EQ(bench.video(), (Chunks{{500, 60}}));
}

// ---- Size fields cut short by the end of the file ----

TEST_F(SampleScan, SizeFieldCutShortCountsItsMissingBytesAsZero) {
  for (const std::size_t held : {1U, 2U, 3U}) {
    platform::Bytes bytes = withAcceptedChunk(5001);
    overwrite(bytes, 5001 - 4 - held, std::string("00dc\x07\0\0", 4 + held));
    scan(std::move(bytes));
    EXPECT_EQ(bench.video(), (Chunks{{500, 60}, {5001 - 4 - held, 7}})) << held;
  }
}

TEST_F(SampleScan, SizeFieldCutShortIsRejectedWithoutAStaleCode) {
  platform::Bytes bytes = blank(5001);
  overwrite(bytes, 4996, "00dc\x07");
  scan(std::move(bytes));
  EXPECT_TRUE(bench.video().empty());
}

TEST_F(SampleScan, CodeInTheLastFourBytesHasSizeZeroAndIsRejected) {
  platform::Bytes bytes = withAcceptedChunk(5001);
  overwrite(bytes, 4997, "00dc");
  scan(std::move(bytes));
  EXPECT_EQ(bench.video(), (Chunks{{500, 60}}));
  EXPECT_EQ(bench.job->videosamplesize, 0U);
}

TEST_F(SampleScan, CodeCutShortByTheEndIsNoCandidate) {
  platform::Bytes bytes = withAcceptedChunk(5001);
  overwrite(bytes, 4998, "00d");
  scan(std::move(bytes));
  EXPECT_EQ(bench.video(), (Chunks{{500, 60}}));
}

TEST_F(SampleScan, BytesBehindTheClaimedEndAreNotScanned) {
  platform::Bytes bytes = withAcceptedChunk(9000);
  putHeader(bytes, 5001, "00dc", 60);
  overwrite(bytes, 5069, "00dc");
  bench.choose(std::move(bytes));
  bench.chooseClaiming(5001);
  prepare();
  bench.job->scanSamples();
  EXPECT_EQ(bench.video(), (Chunks{{500, 60}}));
}

TEST_F(SampleScan, CodeAtEveryPositionOfTheLastPartialBlockIsFound) {
  for (std::size_t offset = 4096; offset <= 4096 + 904 - 76; offset += 7) {
    platform::Bytes bytes = blank(5000);
    putHeader(bytes, offset, "00dc", 60);
    overwrite(bytes, offset + 68, "01wb");
    scan(std::move(bytes));
    EXPECT_EQ(bench.video(), (Chunks{{offset, 60}}));
  }
}

// ---- Full tables ----

TEST_F(SampleScan, FullTableRecordsNoMoreOfItsKindAndSaysSoOnce) {
  platform::Bytes bytes = blank(5001);
  putHeader(bytes, 500, "00dc", 10);
  putHeader(bytes, 518, "01wb", 10);
  putHeader(bytes, 536, "00dc", 10);
  putHeader(bytes, 554, "01wb", 10);
  putHeader(bytes, 572, "00dc", 10);
  putHeader(bytes, 590, "01wb", 10);
  bench.choose(std::move(bytes));
  prepare();
  bench.job->videosamplecount = engine::kLargestSampleCount - 1;

  bench.job->scanSamples();

  EXPECT_EQ(bench.job->videosamplecount, engine::kLargestSampleCount);
  EXPECT_EQ(bench.job->videosampleoffsetarray[engine::kLargestSampleCount], 500U);
  EXPECT_EQ(bench.audio(), (Chunks{{518, 10}, {554, 10}}));
  const auto lines = bench.events.lines();
  EXPECT_EQ(std::count(lines.begin(), lines.end(), "log: Table full, no more video chunks are recorded"), 1);
  EXPECT_EQ(bench.job->samplesleftout, 2U);
}

TEST_F(SampleScan, TableThatIsJustFullLeavesNothingOut) {
  platform::Bytes bytes = blank(5001);
  putHeader(bytes, 500, "00dc", 10);
  putHeader(bytes, 518, "01wb", 10);
  bench.choose(std::move(bytes));
  prepare();
  bench.job->videosamplecount = engine::kLargestSampleCount - 1;

  bench.job->scanSamples();

  EXPECT_EQ(bench.job->videosamplecount, engine::kLargestSampleCount);
  EXPECT_EQ(bench.job->samplesleftout, 0U);
}

TEST_F(SampleScan, NextRunCountsAnewWhatItLeavesOut) {
  bench.choose(AviBuilder().interleaved(60, 10000, 1001).build());
  bench.begin();
  ASSERT_TRUE(bench.job->fileValidityCheck());
  bench.job->samplesleftout = 5;

  ASSERT_TRUE(bench.job->harvestHeaders());

  EXPECT_EQ(bench.job->samplesleftout, 0U);
}

TEST_F(SampleScan, CandidateBeyondAFullTableStillChangesTheLookAheadBuffer) {
  platform::Bytes bytes = blank(5001);
  putHeader(bytes, 2000, "00dc", 60);  // accepted by its look-ahead, but beyond the limit
  overwrite(bytes, 2068, {"01wb\0\0", 6});
  putHeader(bytes, 4001, "01wb", 992);  // accepted through what that left
  bench.choose(std::move(bytes));
  prepare();
  bench.job->videosamplecount = engine::kLargestSampleCount;

  bench.job->scanSamples();

  EXPECT_EQ(bench.audio(), (Chunks{{4001, 992}}));
}

TEST_F(SampleScan, FullAudioTableLeavesVideoGoing) {
  platform::Bytes bytes = blank(5001);
  putHeader(bytes, 500, "01wb", 10);
  putHeader(bytes, 518, "00dc", 10);
  putHeader(bytes, 536, "01wb", 10);
  bench.choose(std::move(bytes));
  prepare();
  bench.job->audiosamplecount = engine::kLargestSampleCount;

  bench.job->scanSamples();

  EXPECT_EQ(bench.job->audiosamplecount, engine::kLargestSampleCount);
  EXPECT_EQ(bench.video(), (Chunks{{518, 10}}));
}

}  // namespace
}  // namespace zelvo::tests
