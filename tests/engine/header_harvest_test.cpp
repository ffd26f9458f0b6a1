// The header harvest: which header bytes are kept, and which files can be repaired.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/engine/header_harvest_bench.h"

namespace zelvo::tests {
namespace {

TEST_F(HeaderHarvest, FindsHeadersInBlock49) {
  platform::Bytes bytes = blank(600000);
  putSections(bytes, 48 * kBlock + 10);
  EXPECT_TRUE(harvest(std::move(bytes)));
  EXPECT_EQ(bench.job->sector, 49U);
}

TEST_F(HeaderHarvest, VideoOnlyFileIsNotSupported) {
  AviBuilder avi;
  avi.withAudioStream = false;
  EXPECT_FALSE(harvest(avi.atLeast(600000).build()));
  EXPECT_FALSE(bench.job->audiocodecfound);
  EXPECT_TRUE(bench.job->videocodecfound);
}

TEST_F(HeaderHarvest, AvihWhoseSizeHasZeroLow16BitsLogsNotFoundAndIsNotSupported) {
  AviBuilder avi;
  avi.avihSize = 65536;

  EXPECT_FALSE(harvest(avi.atLeast(600000).build()));

  EXPECT_EQ(eventCount("log: NOT FOUND"), 1U);
  EXPECT_FALSE(bench.job->avihscaleratedatafound);
}

TEST_F(HeaderHarvest, AvihOfAnyOtherSizeCounts) {
  AviBuilder avi;
  avi.avihSize = 0x00010001;
  EXPECT_TRUE(harvest(avi.atLeast(600000).build()));
  EXPECT_EQ(eventCount("log: NOT FOUND"), 0U);
}

TEST_F(HeaderHarvest, Block50ReadsSizeModulo1024Bytes) {
  platform::Bytes bytes = blank(585 * kBlock + 300);
  putSection(bytes, kBlock50 + 200, true);
  MemoryFile& input = bench.choose(std::move(bytes));
  std::vector<std::size_t> sizes;
  input.onRead = [&](std::uint64_t offset, std::size_t size) {
    if (offset == kBlock50) sizes.push_back(size);
  };

  harvestChosen();

  EXPECT_EQ(sizes, std::vector<std::size_t>{300});
  EXPECT_TRUE(bench.job->videocodecfound);
}

TEST_F(HeaderHarvest, Block50OfASizeThatIsAMultipleOf1024ReadsNothing) {
  platform::Bytes bytes = blank(600 * kBlock);
  putSection(bytes, kBlock50 + 200, true);
  EXPECT_FALSE(harvest(std::move(bytes)));
  EXPECT_FALSE(bench.job->videocodecfound);
  EXPECT_EQ(blocksHarvested(), 50U);
}

TEST_F(HeaderHarvest, Block50FindsCodesOnlyInsideItsFirstModBytes) {
  platform::Bytes inside = blank(585 * kBlock + 300);
  putSection(inside, kBlock50 + 296, true);
  harvest(std::move(inside));
  EXPECT_TRUE(bench.job->videocodecfound);

  platform::Bytes across = blank(585 * kBlock + 300);
  putSection(across, kBlock50 + 297, true);
  harvest(std::move(across));
  EXPECT_FALSE(bench.job->videocodecfound);
}

TEST_F(HeaderHarvest, ValuesBehindACodeInBlock50AreReadWithoutThatLimit) {
  platform::Bytes bytes = blank(585 * kBlock + 300);
  putSections(bytes, 100);
  putSection(bytes, kBlock50 + 290, true);  // its values lie after the first 300 bytes
  bytes[kBlock50 + 290 + 20] = std::byte{77};
  // Not over 512 KiB as claimed, so that the harvest goes on to block 50.
  bench.choose(std::move(bytes));
  bench.chooseClaiming(500 * kBlock + 300);

  harvestChosen();

  EXPECT_EQ(numberAt(bench.job->videoscaleratedata, 0), 77U);
  EXPECT_EQ(textAt(bench.job->videostrfcodecdata, 0, 4), "XVID");
}

TEST_F(HeaderHarvest, KeepsTheByteRangesOfEverySection) {
  AviBuilder avi;
  avi.videoHandler = "DIVX";
  avi.audioHandler = "abcd";
  const platform::Bytes bytes = avi.atLeast(600000).build();
  const auto range = [&](std::size_t offset, std::size_t size) { return hexAt(bytes, offset, size); };

  ASSERT_TRUE(harvest(bytes));

  const engine::RepairFile& job = *bench.job;
  EXPECT_EQ(hexOf(job.avihdata1), range(kAvih + 4, 20));
  EXPECT_EQ(hexOf(job.avihdata2), range(kAvih + 28, 36));
  EXPECT_TRUE(job.avihscaleratedata.empty());
  EXPECT_EQ(hexOf(job.videocodec), range(kVids + 4, 4));
  EXPECT_EQ(hexOf(job.videoscaleratedata), range(kVids + 20, 8));
  EXPECT_EQ(hexOf(job.videoscaledata), range(kVids + 28, 4));
  EXPECT_EQ(job.videostrfsize, 40U);
  EXPECT_EQ(hexOf(job.videostrfdata.held), range(kVids + 64, 40));
  EXPECT_EQ(hexOf(job.videostrfcodecdata), range(kVids + 80, 4));
  EXPECT_EQ(hexOf(job.audiocodec), range(kAuds + 4, 4));
  EXPECT_EQ(hexOf(job.audioscaleratedata), range(kAuds + 20, 8));
  EXPECT_EQ(hexOf(job.audioscaledata), range(kAuds + 28, 4));
  EXPECT_EQ(job.audiostrfsize, 30U);
  EXPECT_EQ(hexOf(job.audiostrfdata.held), range(kAuds + 64, 30));
  EXPECT_EQ(hexOf(job.audiostrfcodecdata), range(kAuds + 80, 4));
}

TEST_F(HeaderHarvest, ShowsAndLogsTheVideoCodec) {
  AviBuilder avi;
  avi.videoHandler = "DIVX";
  harvest(avi.atLeast(600000).build());
  EXPECT_EQ(bench.screen.videocodecfield.stringValue(), "DIVX");
  const auto lines = bench.events.lines();
  const auto shown = std::find(lines.begin(), lines.end(), "videocodecfield.setStringValue(DIVX)");
  ASSERT_LE(3, std::distance(shown, lines.end()));
  EXPECT_EQ(shown[1], "log: videocodecstring=DIVX");
  EXPECT_EQ(shown[2], "log: Video codec =S");
}

TEST_F(HeaderHarvest, CodecTextEndsEarlyAtAZeroByte) {
  AviBuilder avi;
  avi.videoHandler = {"AB\0D", 4};
  harvest(avi.atLeast(600000).build());
  EXPECT_EQ(bench.screen.videocodecfield.stringValue(), "AB");
  EXPECT_EQ(textAt(bench.job->videocodec, 0, 4), std::string("AB\0D", 4));
}

TEST_F(HeaderHarvest, CodecThatIsNotUtf8ShowsReplacementsAndKeepsItsBytes) {
  AviBuilder avi;
  avi.videoHandler =
      "A\xff"
      "B\x80";
  harvest(avi.atLeast(600000).build());
  EXPECT_EQ(bench.screen.videocodecfield.stringValue(), "A\uFFFDB\uFFFD");
  EXPECT_EQ(hexOf(bench.job->videocodec), "41 ff 42 80");
}

TEST_F(HeaderHarvest, VideoHandlerOfZeroBytesIsNotFound) {
  AviBuilder avi;
  avi.videoHandler = {"\0\0\0\0", 4};
  EXPECT_FALSE(harvest(avi.atLeast(600000).build()));
  EXPECT_FALSE(bench.job->videocodecfound);
  EXPECT_EQ(eventCount("log: videocodecstring="), 1U);
  EXPECT_EQ(eventCount("log: Video codec =S"), 0U);
}

TEST_F(HeaderHarvest, AudioHandlerOfZeroBytesIsFoundAllTheSame) {
  AviBuilder avi;
  avi.audioHandler = {"\0\0\0\0", 4};
  EXPECT_TRUE(harvest(avi.atLeast(600000).build()));
  EXPECT_TRUE(bench.job->audiocodecfound);
  EXPECT_EQ(eventCount("log: Audio codec =S"), 1U);
}

TEST_F(HeaderHarvest, AudioHandlerIsShownNowhereYet) {
  harvest(AviBuilder().atLeast(600000).build());
  EXPECT_EQ(bench.screen.audiocodecfield.stringValue(), "");
  EXPECT_FALSE(bench.job->audiocodecstring.get().has_value());
}

TEST_F(HeaderHarvest, CompressionCodeOfZeroBytesIsNotSupported) {
  AviBuilder avi;
  avi.videoCompression = {"\0\0\0\0", 4};
  EXPECT_FALSE(harvest(avi.atLeast(600000).build()));
  EXPECT_FALSE(bench.job->videostrfcodecfound);
}

TEST_F(HeaderHarvest, OneByteOfACompressionCodeIsEnough) {
  AviBuilder avi;
  avi.videoCompression = {"\0\0\0\1", 4};
  EXPECT_TRUE(harvest(avi.atLeast(600000).build()));
}

TEST_F(HeaderHarvest, AudioFormatWithZeroBytesAtOffset16IsNotSupported) {
  platform::Bytes bytes = AviBuilder().atLeast(600000).build();
  overwrite(bytes, kAuds + 80, {"\0\0\0\0", 4});
  EXPECT_FALSE(harvest(std::move(bytes)));
  EXPECT_FALSE(bench.job->audiostrfcodecfound);
}

TEST_F(HeaderHarvest, LaterOccurrenceOverwritesAnEarlierOne) {
  platform::Bytes bytes = blank(600000);
  putSection(bytes, 100, true);
  putSection(bytes, 700, true);
  overwrite(bytes, 704, "LATE");
  harvest(std::move(bytes));
  EXPECT_EQ(textAt(bench.job->videocodec, 0, 4), "LATE");
}

TEST_F(HeaderHarvest, FlagsFollowTheLastOccurrence) {
  platform::Bytes bytes = blank(600000);
  putSections(bytes, 100);
  putSection(bytes, 700, true);
  overwrite(bytes, 704, {"\0\0\0\0", 4});
  EXPECT_FALSE(harvest(std::move(bytes)));
  EXPECT_FALSE(bench.job->videocodecfound);
}

class HeaderHarvestAcrossBlocks : public HeaderHarvest, public testing::WithParamInterface<std::size_t> {};

TEST_P(HeaderHarvestAcrossBlocks, CodeThatRunsIntoTheNextBlockIsFound) {
  platform::Bytes bytes = blank(600000);
  putSection(bytes, GetParam(), true);
  harvest(std::move(bytes));
  EXPECT_EQ(textAt(bench.job->videocodec, 0, 4), "XVID");
}

INSTANTIATE_TEST_SUITE_P(Positions, HeaderHarvestAcrossBlocks, testing::Values(1020, 1021, 1022, 1023, 1024),
                         testing::PrintToStringParamName());

TEST_F(HeaderHarvest, CodesAreComparedExactly) {
  platform::Bytes bytes = blank(600000);
  putSections(bytes, 100);
  overwrite(bytes, 100, "Avih");
  EXPECT_FALSE(harvest(std::move(bytes)));
}

TEST_F(HeaderHarvest, FormatOfGigabytesIsHeldAsARangeNotRead) {
  platform::Bytes bytes = blank(600000);
  putSections(bytes, 100);
  overwrite(bytes, 100 + kVids - kAvih + 60, "\xff\xff\xff\xff");
  MemoryFile& input = bench.choose(std::move(bytes));
  std::size_t largestRead = 0;
  input.onRead = [&](std::uint64_t, std::size_t size) { largestRead = std::max(largestRead, size); };

  EXPECT_TRUE(harvestChosen());

  EXPECT_EQ(bench.job->videostrfsize, 4294967295U);
  EXPECT_TRUE(bench.job->videostrfdata.held.empty());
  EXPECT_EQ(bench.job->videostrfdata.rangeOffset, 100 + kVids - kAvih + 64);
  EXPECT_EQ(bench.job->videostrfdata.rangeSize, 4294967295U);
  EXPECT_LE(largestRead, 3072U);
}

TEST_F(HeaderHarvest, FormatOf65536BytesIsStillHeldInMemory) {
  platform::Bytes bytes = blank(600000);
  putSections(bytes, 100);
  overwrite(bytes, 100 + kVids - kAvih + 60, {"\x00\x00\x01\x00", 4});
  harvest(std::move(bytes));
  EXPECT_EQ(bench.job->videostrfdata.held.size(), 65536U);
  EXPECT_EQ(bench.job->videostrfdata.rangeSize, 0U);
}

TEST_F(HeaderHarvest, HeaderAtTheEndOfTheFileKeepsWhatThereIs) {
  platform::Bytes bytes = blank(2000);
  overwrite(bytes, 1990, "vidsAB");  // the handler is cut short, everything after it is missing
  bytes.resize(1996);

  EXPECT_FALSE(harvest(std::move(bytes)));

  EXPECT_EQ(textAt(bench.job->videocodec, 0, 4), "AB");
  EXPECT_TRUE(bench.job->videocodecfound);
  EXPECT_TRUE(bench.job->videoscaleratedata.empty());
  EXPECT_EQ(bench.job->videostrfsize, 0U);
  EXPECT_FALSE(bench.job->videostrfcodecfound);
}

}  // namespace
}  // namespace zelvo::tests
