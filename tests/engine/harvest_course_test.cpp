// The course of the header harvest: what it does in which order, where it leaves, and stops.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/engine/header_harvest_bench.h"

namespace zelvo::tests {
namespace {

TEST_F(HeaderHarvest, LeavesWithBreakAtTheFirstBlockWhereAllFiveFlagsAreTrue) {
  platform::Bytes bytes = blank(600000);
  putSections(bytes, 3 * kBlock + 100);  // all of it in block 4

  EXPECT_TRUE(harvest(std::move(bytes)));

  EXPECT_EQ(bench.job->sector, 4U);
  EXPECT_EQ(blocksHarvested(), 4U);
  EXPECT_EQ(bench.events.lines().back(), "log: Break");
  EXPECT_EQ(bench.relay.values.back(), 100.0);
}

TEST_F(HeaderHarvest, FileOf524288BytesIsNotSupportedAndRunsThroughAll50Blocks) {
  platform::Bytes bytes = blank(524288);
  putSections(bytes, 100);

  EXPECT_FALSE(harvest(std::move(bytes)));

  EXPECT_EQ(blocksHarvested(), 50U);
  EXPECT_EQ(bench.job->sector, 50U);
  EXPECT_EQ(eventCount("log: Break"), 0U);
  EXPECT_TRUE(bench.job->avihscaleratedatafound && bench.job->videocodecfound && bench.job->audiocodecfound &&
              bench.job->videostrfcodecfound && bench.job->audiostrfcodecfound);
}

TEST_F(HeaderHarvest, FileOf524289BytesIsSupported) {
  platform::Bytes bytes = blank(524289);
  putSections(bytes, 100);
  EXPECT_TRUE(harvest(std::move(bytes)));
}

TEST_F(HeaderHarvest, StopflagSetAtItsStartReadsNoBlock) {
  platform::Bytes bytes = blank(600000);
  putSections(bytes, 100);
  bench.choose(std::move(bytes));
  bench.begin();
  static_cast<void>(bench.job->fileValidityCheck());
  const std::uint64_t readsBefore = bench.files.at("/in.avi").reads;
  bench.relay.values.clear();
  engine::stopflag = true;

  EXPECT_FALSE(bench.job->harvestHeaders());

  EXPECT_EQ(bench.files.at("/in.avi").reads, readsBefore);
  EXPECT_TRUE(bench.relay.values.empty());
  EXPECT_FALSE(bench.job->avihscaleratedatafound || bench.job->videocodecfound || bench.job->audiocodecfound ||
               bench.job->videostrfcodecfound || bench.job->audiostrfcodecfound);
}

TEST_F(HeaderHarvest, StopflagSetAtItsStartShowsTheNotSupportedSheet) {
  bench.choose(AviBuilder().atLeast(600000).build());
  engine::stopflag = true;
  bench.run();
  EXPECT_EQ(bench.sheets.shown(), std::vector<std::string>{"filenotsupportedwindow"});
}

TEST_F(HeaderHarvest, StopInItsMiddleDecidesOnWhatWasFoundBefore) {
  platform::Bytes complete = blank(600000);
  putSections(complete, 2 * kBlock);
  std::size_t stores = 0;
  // The stop comes at the first position of block 3, whose 1024 positions are gone through all the same.
  bench.relay.onValue = [&](double) {
    if (++stores == 1 + 2 * kBlock + 1) engine::stopflag = true;  // the first store is the validity check's
  };
  EXPECT_TRUE(harvest(std::move(complete)));
}

TEST_F(HeaderHarvest, StopInItsMiddleSkipsTheBlocksThatRemain) {
  platform::Bytes bytes = blank(600000);
  putSections(bytes, 3 * kBlock);
  bench.relay.onValue = [](double value) {
    if (value == 4.0) engine::stopflag = true;  // block 2
  };

  EXPECT_FALSE(harvest(std::move(bytes)));

  EXPECT_EQ(blocksHarvested(), 2U);
  EXPECT_EQ(bench.job->sector, 50U);  // the loop runs out without work
}

TEST_F(HeaderHarvest, RunsOwnCancelMarkStopsItTheSameWay) {
  platform::Bytes bytes = blank(600000);
  putSections(bytes, 3 * kBlock);
  bench.relay.onValue = [this](double value) {
    if (value == 4.0) bench.current->cancel->cancel();
  };
  EXPECT_FALSE(harvest(std::move(bytes)));
  EXPECT_EQ(blocksHarvested(), 2U);
}

TEST_F(HeaderHarvest, StoresAndRequestsProgressAtEachOf1024PositionsOfABlock) {
  platform::Bytes bytes = blank(600000);
  putSections(bytes, kBlock + 100);

  harvest(std::move(bytes));

  std::vector<double> expected(kBlock, 2.0);
  expected.insert(expected.end(), kBlock, 4.0);
  EXPECT_EQ(bench.relay.shown, expected);
  expected.push_back(100.0);  // stored, not shown
  EXPECT_EQ(bench.relay.values, expected);
}

TEST_F(HeaderHarvest, BreakIsLoggedAfter100IsStored) {
  bench.relay.onValue = [this](double value) { bench.events.add(value == 100.0 ? "stored 100" : "stored"); };
  harvest(AviBuilder().atLeast(600000).build());
  const std::vector<std::string> lines = bench.events.lines();
  ASSERT_GE(lines.size(), 2U);
  EXPECT_EQ(lines[lines.size() - 2], "stored 100");
  EXPECT_EQ(lines.back(), "log: Break");
}

TEST_F(HeaderHarvest, SetsTheStatusTextOnceABlock) {
  platform::Bytes bytes = blank(600000);
  putSections(bytes, 2 * kBlock);
  harvest(std::move(bytes));
  EXPECT_EQ(eventCount("textfield.setStringValue(Analyzing the file..)"), 3U);
}

TEST_F(HeaderHarvest, ResetsTheCountersAndTheCursor) {
  bench.job->videosamplecount = bench.job->audiosamplecount = bench.job->videosamplesize = 7;
  bench.job->audiosamplesize = bench.job->videosampleoffset = bench.job->audiosampleoffset = 7;
  bench.job->nextHeader = true;
  bench.choose(blank(600001));
  bench.begin();
  static_cast<void>(bench.job->fileValidityCheck());
  engine::stopflag = true;

  bench.job->harvestHeaders();

  const engine::RepairFile& job = *bench.job;
  EXPECT_EQ(job.videosamplecount + job.audiosamplecount + job.videosamplesize + job.audiosamplesize +
                job.videosampleoffset + job.audiosampleoffset,
            0U);
  EXPECT_FALSE(job.nextHeader);
  EXPECT_EQ(job.sector, 1U);
  EXPECT_EQ(job.buffersize, 1024U);
  EXPECT_EQ(job.mod, 600001U % 1024);
  EXPECT_EQ(job.numberofsectors, 586U);
  EXPECT_EQ(job.currentoffset, 0U);
}

TEST_F(HeaderHarvest, FileThatVanishesAfterTheCheckIsNotSupported) {
  MemoryFile& input = bench.choose(AviBuilder().atLeast(600000).build());
  bench.begin();
  static_cast<void>(bench.job->fileValidityCheck());
  input.bytes.clear();
  input.size = 0;
  EXPECT_FALSE(bench.job->harvestHeaders());
}

/// The course of the reads, log lines and labels, without the progress of each position.
TEST_F(HeaderHarvest, ReadsLogsAndShowsInTheOrderOfItsSections) {
  AviBuilder avi;
  avi.avihSize = 65536;  // as if there were none
  MemoryFile& input = bench.choose(avi.atLeast(524000).build());
  bench.chooseClaiming(524288);
  input.onRead = [this](std::uint64_t offset, std::size_t size) {
    if (size < kBlock) bench.events.add("read " + std::to_string(offset) + "+" + std::to_string(size));
  };

  harvestChosen();

  std::vector<std::string> lines = bench.events.lines();
  std::erase(lines, "textfield.setStringValue(Analyzing the file..)");
  std::erase(lines, "read 50176+0");  // block 50, of which a multiple of 1024 leaves nothing
  EXPECT_EQ(lines, (std::vector<std::string>{
                       "log: Audio video samples called",
                       "read 28+20",
                       "log: NOT FOUND",
                       "read 52+36",
                       "read 112+4",
                       "videocodecfield.setStringValue(XVID)",
                       "log: videocodecstring=XVID",
                       "log: Video codec =S",
                       "read 128+8",
                       "read 136+4",
                       "read 168+4",
                       "read 172+40",
                       "read 188+4",
                       "read 236+4",
                       "log: Audio codec =S",
                       "read 252+8",
                       "read 260+4",
                       "read 292+4",
                       "read 296+30",
                       "read 312+4",
                   }));
}

TEST_F(HeaderHarvest, EachBlockIsReadBeforeTheStageIsTold) {
  MemoryFile& input = bench.choose(blank(600000));
  input.onRead = [this](std::uint64_t offset, std::size_t) { bench.events.add("read " + std::to_string(offset)); };

  harvestChosen();

  const std::vector<std::string> lines = bench.events.lines();
  ASSERT_GE(lines.size(), 5U);
  EXPECT_EQ(lines[1], "read 0");
  EXPECT_EQ(lines[2], "textfield.setStringValue(Analyzing the file..)");
  EXPECT_EQ(lines[3], "read 1024");
  EXPECT_EQ(lines[4], "textfield.setStringValue(Analyzing the file..)");
}

TEST_F(HeaderHarvest, OffsetOfTheBlockExaminedIsKept) {
  std::vector<std::uint64_t> offsets;
  bench.relay.onValue = [&](double) {
    if (offsets.empty() || offsets.back() != bench.job->currentoffset) offsets.push_back(bench.job->currentoffset);
  };
  platform::Bytes bytes = blank(600000);
  putSections(bytes, 2 * kBlock);
  harvest(std::move(bytes));
  EXPECT_EQ(offsets, (std::vector<std::uint64_t>{0, 1024, 2048}));
  EXPECT_EQ(bench.job->currentoffset, 2048U);
}

}  // namespace
}  // namespace zelvo::tests
