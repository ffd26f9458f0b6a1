// The sample scan: which chunks are recorded.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "engine/repair_file.h"
#include "tests/support/avi_builder.h"
#include "tests/support/byte_text.h"
#include "tests/support/engine_bench.h"

namespace zelvo::tests {
namespace {

using Chunks = std::vector<std::pair<std::uint64_t, std::uint64_t>>;

/// `size` bytes without a chunk code; the "AVI " at the start lets the validity check pass.
platform::Bytes blank(std::size_t size) {
  platform::Bytes bytes(size, std::byte{0x20});
  overwrite(bytes, 0, "AVI ");
  return bytes;
}

/// A code and a size field.
void putHeader(platform::Bytes& bytes, std::size_t offset, std::string_view code, std::uint32_t size) {
  platform::Bytes header = bytesOf(code);
  appendNumber(header, size);
  overwrite(bytes, offset, textAt(header, 0, 8));
}

class SampleScan : public testing::Test {
 protected:
  void scan(platform::Bytes bytes) {
    bench.choose(std::move(bytes));
    prepare();
    bench.job->scanSamples();
  }
  /// Up to the scan, without a harvest: it takes nothing from the headers.
  void prepare() {
    bench.begin();
    static_cast<void>(bench.job->fileValidityCheck());
    bench.job->videosamplecount = bench.job->audiosamplecount = 0;
    bench.events.clear();
    bench.relay.values.clear();
    bench.relay.shown.clear();
  }

  EngineBench bench;
};

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

/// A chunk that is accepted at 500, so that the buffer holds "00dc" and two zero bytes.
platform::Bytes withAcceptedChunk(std::size_t size) {
  platform::Bytes bytes = blank(size);
  putHeader(bytes, 500, "00dc", 60);
  overwrite(bytes, 568, {"00dc\0\0", 6});
  return bytes;
}

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

// ---- Progress and stopping ----

TEST_F(SampleScan, TellsProgressOnceABlock) {
  scan(blank(4 * 1024 + 1));
  EXPECT_EQ(bench.relay.values, (std::vector{20.0, 40.0, 60.0, 80.0, 100.0}));
  EXPECT_EQ(bench.relay.shown, bench.relay.values);
  EXPECT_EQ(bench.events.lines(),
            std::vector<std::string>(5, "textfield.setStringValue(Retrieving audio/ video data forks..)"));
  EXPECT_EQ(bench.job->sector, 5U);
}

TEST_F(SampleScan, StopLeavesTheTablesAsFarAsTheyGot) {
  platform::Bytes bytes = blank(10 * 1024 + 1);
  for (std::size_t block = 0; block < 10; ++block) {
    putHeader(bytes, block * 1024 + 500, "00dc", 60);
    overwrite(bytes, block * 1024 + 568, "01wb");
  }
  bench.relay.onValue = [](double value) {
    if (value == 3 * 100.0 / 11) engine::stopflag = true;  // in block 3, which is still scanned
  };
  scan(std::move(bytes));
  EXPECT_EQ(bench.video(), (Chunks{{500, 60}, {1524, 60}, {2548, 60}}));
  EXPECT_EQ(bench.relay.values.size(), 3U);
  EXPECT_EQ(bench.job->sector, 11U);  // the loop runs out without work
}

TEST_F(SampleScan, SetStopflagSkipsIt) {
  bench.choose(withAcceptedChunk(5001));
  prepare();
  const std::uint64_t reads = bench.files.at("/in.avi").reads;
  engine::stopflag = true;
  bench.job->scanSamples();
  EXPECT_EQ(bench.files.at("/in.avi").reads, reads);
  EXPECT_TRUE(bench.relay.values.empty());
  EXPECT_TRUE(bench.video().empty());
}

TEST_F(SampleScan, ClearedStopflagNeverWakesACancelledScan) {
  bench.choose(blank(10 * 1024 + 1));
  prepare();
  bench.relay.onValue = [this](double) {
    bench.current->cancel->cancel();
    engine::stopflag = false;  // as when the next file is chosen
  };
  bench.job->scanSamples();
  EXPECT_EQ(bench.relay.values.size(), 1U);
}

TEST_F(SampleScan, LastSizeFieldReadStaysOnTheJobForVideoAndAudioAlike) {
  platform::Bytes bytes = blank(5001);
  putHeader(bytes, 500, "00dc", 60);
  putHeader(bytes, 568, "01wb", 33);
  overwrite(bytes, 609, "00db\x01\x02\x03\x04");  // rejected by its size
  scan(std::move(bytes));
  EXPECT_EQ(bench.job->videosamplesize, 0x04030201U);
}

// ---- Damage while reading ----

TEST_F(SampleScan, FileThatIsShorterThanClaimedYieldsWhatItHolds) {
  bench.choose(withAcceptedChunk(3000));
  bench.chooseClaiming(100001);
  prepare();
  bench.job->scanSamples();
  EXPECT_EQ(bench.video(), (Chunks{{500, 60}}));
  EXPECT_EQ(bench.job->sector, 98U);
}

TEST_F(SampleScan, BlocksAfterAReadErrorAreStillScanned) {
  platform::Bytes bytes = blank(30 * 1024 + 1);
  for (const std::size_t block : {1UL, 10UL, 20UL}) {
    putHeader(bytes, block * 1024 + 500, "00dc", 60);
    overwrite(bytes, block * 1024 + 568, "01wb");
  }
  MemoryFile& input = bench.choose(std::move(bytes));
  prepare();
  input.badReadStart = 10 * 1024;
  input.badReadEnd = 11 * 1024;
  input.readError = std::make_error_code(std::errc::io_error);

  bench.job->scanSamples();

  EXPECT_EQ(bench.video(), (Chunks{{1524, 60}, {20 * 1024 + 500, 60}}));
  EXPECT_EQ(bench.job->inputfilehandle->failures().firstOffset, 10U * 1024);
}

}  // namespace
}  // namespace zelvo::tests
