// The course of the sample scan: what it tells on its way, stops, and inputs that cannot be read.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/engine/sample_scan_bench.h"

namespace zelvo::tests {
namespace {

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

// ---- Where it is ----

TEST_F(SampleScan, OffsetOfTheBlockExaminedIsKept) {
  std::vector<std::uint64_t> offsets;
  bench.relay.onValue = [&](double) { offsets.push_back(bench.job->currentoffset); };
  bench.choose(blank(4 * 1024 + 1));
  prepare();
  offsets.clear();  // the check has told one too

  bench.job->scanSamples();

  EXPECT_EQ(offsets, (std::vector<std::uint64_t>{0, 1024, 2048, 3072, 4096}));
  EXPECT_EQ(bench.job->currentoffset, 4096U);
}

TEST_F(SampleScan, OffsetStaysWhereAStopLeftIt) {
  bench.relay.onValue = [](double value) {
    if (value == 40.0) engine::stopflag = true;  // block 2
  };
  scan(blank(4 * 1024 + 1));
  EXPECT_EQ(bench.job->currentoffset, 1024U);
}

}  // namespace
}  // namespace zelvo::tests
