// Inputs around and beyond 4 GiB, where 32-bit positions begin again, and inputs with more chunks than a table holds.
// The files are sparse: what no test has put there reads as zero and takes no room.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/avi_builder.h"
#include "tests/support/byte_text.h"
#include "tests/support/engine_bench.h"
#include "tests/support/literal_comparison.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;

constexpr std::uint64_t kFourGiB = std::uint64_t{1} << 32U;

Bytes header(std::string_view code, std::uint32_t size) {
  Bytes bytes;
  appendText(bytes, code);
  appendNumber(bytes, size);
  return bytes;
}

/// Headers and chunks for the start of a file.
Bytes startOfFile() {
  AviBuilder avi;
  avi.interleaved(60, 900, 101);
  return avi.build();
}

/// Tells the literal scan which blocks are known to be zero, so that it is done in this life.
void skipWhatIsZero(LiteralComparison& comparison) {
  const MemoryFile& content = comparison.files.at("/in.avi");
  comparison.knownZero = [&file = content, first = content.islands.begin()->first](std::uint32_t offset) {
    constexpr std::uint64_t kRead = 3072;
    if (offset < file.bytes.size()) return false;
    if (offset + kRead <= first) return true;  // nearly always, and there are four million blocks
    return std::ranges::none_of(file.islands, [&](const auto& island) {
      return island.first < offset + kRead && offset < island.first + island.second.size();
    });
  };
}

TEST(LargeInput, BeyondFourGiBTheStartIsScannedAgainAndPositionsWrap) {
  LiteralComparison comparison;
  MemoryFile& file = comparison.files.putSparse("/in.avi", kFourGiB + 300000);
  file.bytes = startOfFile();
  // The last chunk below 4 GiB: what follows its payload lies at the file's start, among the chunks there.
  const Bytes wanted = header("00dc", 900);
  const auto at = std::search(file.bytes.begin() + 400, file.bytes.end(), wanted.begin(), wanted.end());
  const auto target = static_cast<std::uint64_t>(at - file.bytes.begin());
  file.islands[kFourGiB - 100] = header("00dc", static_cast<std::uint32_t>(100 - 8 + target));
  // Its size field lies at the file's start; what follows its payload, too. The four bytes after it say otherwise.
  const auto size = static_cast<std::uint32_t>(target - 4);
  overwrite(file.bytes, 0, textAt(header("size", size), 4, 4));
  file.islands[kFourGiB - 4] = header("01wb", 10);
  // Never looked at: blocks after 4 GiB are those of the start.
  file.islands[kFourGiB + 200000] = header("00dc", 8);
  file.islands[kFourGiB + 200016] = header("00dc", 8);
  skipWhatIsZero(comparison);

  ASSERT_EQ(comparison.wholeRunOf(file.size), "");

  EXPECT_EQ(comparison.tables.video.count, 60U + 1U + 60U);
  EXPECT_EQ(comparison.tables.video.offsets[61], kFourGiB - 100);
  EXPECT_EQ(comparison.tables.video.offsets[62], comparison.tables.video.offsets[1]);
  const auto& offsets = comparison.tables.audio.offsets;
  const auto wrapped = std::ranges::find(offsets, kFourGiB - 4);
  ASSERT_NE(wrapped, offsets.end());
  EXPECT_EQ(comparison.tables.audio.sizes[static_cast<std::size_t>(wrapped - offsets.begin())], size);
  EXPECT_EQ(comparison.outputsCompared, 1U);
}

class LargeInputSize : public testing::TestWithParam<std::uint64_t> {};

TEST_P(LargeInputSize, AgreesWithTheTranscriptionOnChunksAroundTheEnd) {
#if defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "skipped: the thread sanitizer takes minutes for one input of 4 GiB, and has seen one already";
#endif
  LiteralComparison comparison;
  const std::uint64_t size = GetParam();
  MemoryFile& file = comparison.files.putSparse("/in.avi", size);
  file.bytes = startOfFile();
  const std::uint64_t end = std::min(size, kFourGiB);
  // Chunks whose payloads end before, at and after the end of the file or the place where positions begin again; what
  // the look-ahead of the last one cannot read is left from the one before it.
  file.islands[end - 3000] = header("01wb", 1492);
  file.islands[end - 1500] = header("00dc", 392);
  file.islands[end - 1100] = header("JUNK", 1000);
  file.islands[end - 200] = header("00dc", 192);
  file.islands[end - 60] = header("00dc", 49);
  file.islands[end - 20] = header("01wb", 12);
  skipWhatIsZero(comparison);

  ASSERT_EQ(comparison.wholeRunOf(size), "");

  EXPECT_GE(comparison.tables.video.count, 61U);
  EXPECT_EQ(comparison.outputsCompared, 1U);
}

INSTANTIATE_TEST_SUITE_P(AroundFourGiB, LargeInputSize,
                         testing::Values(kFourGiB - 1024, kFourGiB - 1, kFourGiB, kFourGiB + 1, kFourGiB + 1500),
                         [](const auto& tested) { return "Size" + std::to_string(tested.param); });

TEST(LargeInput, MoreVideoChunksThanATableHoldsAreToldOfOnceAndAudioGoesOn) {
  AviBuilder avi;
  avi.withIndex = false;
  Bytes bytes = avi.build();
  const std::size_t first = bytes.size();
  constexpr std::size_t kChunks = literal::Table::kLargestCount + 40;
  for (std::size_t k = 0; k < kChunks; ++k) appendText(bytes, "00dc"), appendNumber(bytes, 8);
  for (std::size_t k = 0; k < 30; ++k) appendText(bytes, "01wb"), appendNumber(bytes, 8);
  EngineBench bench;
  bench.choose(bytes);
  bench.run();

  EXPECT_EQ(bench.job->videosamplecount, literal::Table::kLargestCount);
  EXPECT_EQ(bench.job->videosampleoffsetarray[literal::Table::kLargestCount],
            first + 8 * (literal::Table::kLargestCount - 1));
  // All of them: after the last two the file ends, so that the code found before still stands in the buffer.
  EXPECT_EQ(bench.job->audiosamplecount, 30U);
  const auto lines = bench.events.lines();
  EXPECT_EQ(std::ranges::count(lines, "log: Table full, no more video chunks are recorded"), 1);
  EXPECT_EQ(std::ranges::count(lines, "log: Table full, no more audio chunks are recorded"), 0);
}

/// Fills the audio table, then ends with a candidate after whose payload the file ends.
DamagedInput fullAudioTable(std::string_view lastButOne) {
  DamagedInput input;
  input.name = "full audio table";
  // Each looks at the next but one, so the last of them finds nothing.
  for (std::size_t k = 0; k <= literal::Table::kLargestCount; ++k) {
    appendText(input.bytes, "01wb");
    appendNumber(input.bytes, 8);
  }
  appendText(input.bytes, "01wb");
  appendNumber(input.bytes, 20);
  input.bytes.resize(input.bytes.size() + 20);
  appendText(input.bytes, lastButOne);
  appendNumber(input.bytes, 0);
  appendText(input.bytes, "00dc");
  appendNumber(input.bytes, 700);
  input.bytes.resize(input.bytes.size() + 100);
  input.size = input.claimedSize = input.bytes.size();
  return input;
}

TEST(LargeInput, CandidateThatAFullTableTurnsAwayStillChangesTheLookAheadBuffer) {
  LiteralComparison comparison;
  comparison.largestOutput = std::uint64_t{1} << 30U;
  ASSERT_EQ(comparison.scanAndWrite(fullAudioTable("JUNK")), "");
  EXPECT_EQ(comparison.tables.audio.count, literal::Table::kLargestCount);
  EXPECT_EQ(comparison.tables.audio.turnedAway, 1U);
  // The last chunk is kept through what the one turned away left in the buffer.
  EXPECT_EQ(comparison.tables.video.count, 1U);

  ASSERT_EQ(comparison.scanAndWrite(fullAudioTable("none")), "");
  EXPECT_EQ(comparison.tables.audio.turnedAway, 0U);
  EXPECT_EQ(comparison.tables.video.count, 0U);
}

TEST(LargeInput, FormatsThatClaimGigabytesAreNeverReadInOnePiece) {
  LiteralComparison comparison;
  MemoryFile& file = comparison.files.putSparse("/in.avi", 700000);
  file.bytes = startOfFile();
  for (std::size_t at = 0; at + 12 < file.bytes.size(); ++at) {
    if (literal::isCode(file.bytes, at, "strf")) overwrite(file.bytes, at + 4, std::string_view("\x00\x00\x00\xf0", 4));
  }
  ASSERT_EQ(comparison.wholeRunOf(file.size), "");
  EXPECT_EQ(comparison.outputsCompared, 1U);
  EXPECT_EQ(comparison.job->videostrfsize, 0xf0000000U);

  // Beyond 4 GiB the claim would be met; harvesting it takes no more than a block and its look-ahead, and the formats
  // that are held.
  EngineBench bench;
  MemoryFile& sparse = bench.files.putSparse("/in.avi", kFourGiB + 1000);
  sparse.bytes = file.bytes;
  bench.chooseClaiming(sparse.size);
  bench.begin();
  ASSERT_TRUE(bench.job->fileValidityCheck());
  ASSERT_TRUE(bench.job->harvestHeaders());
  EXPECT_LE(sparse.largestRead, engine::FormatPayload::kLargestHeld);
  EXPECT_LE(bench.job->videostrfdata.held.size(), engine::FormatPayload::kLargestHeld);
}

}  // namespace
}  // namespace zelvo::tests
