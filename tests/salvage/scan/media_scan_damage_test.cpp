// What a scan still finds of a damaged film: each case is named after the damage.
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <string_view>

#include "tests/salvage/scanned_film.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using Offsets = std::vector<std::uint64_t>;

AviBuilder damagedFilm(int pairs = 40) { return AviBuilder().interleaved(pairs, 1000, 101); }

/// Where its index begins.
std::size_t indexOf(const AviBuilder& film) { return static_cast<std::size_t>(chunkOffsets(film).back()) + 8 + 102; }

Offsets trustedOf(Bytes bytes) { return ScannedFilm(std::move(bytes)).run().trusted(); }

Offsets offsetsWithout(Offsets offsets, std::size_t first, std::size_t count = 1) {
  offsets.erase(offsets.begin() + static_cast<std::ptrdiff_t>(first),
                offsets.begin() + static_cast<std::ptrdiff_t>(first + count));
  return offsets;
}

Offsets shifted(Offsets offsets, std::size_t first, std::int64_t by) {
  for (std::size_t i = first; i < offsets.size(); ++i)
    offsets[i] = static_cast<std::uint64_t>(static_cast<std::int64_t>(offsets[i]) + by);
  return offsets;
}

std::ptrdiff_t at(std::uint64_t offset) { return static_cast<std::ptrdiff_t>(offset); }

TEST(DamagedFilm, CutShortKeepsWhatClosesBeforeTheCut) {
  const Offsets whole = chunkOffsets(damagedFilm());
  Bytes bytes = damagedFilm().build();
  bytes.resize(whole[30] + 500);
  ScannedFilm scanned(std::move(bytes));
  scanned.run();
  EXPECT_EQ(scanned.trusted(), Offsets(whole.begin(), whole.begin() + 30));
  EXPECT_TRUE(scanned.chain.is(scanned.numberAt(whole[30]), salvage::ChainFact::exceedsData));
}

TEST(DamagedFilm, NeverFinalisedIsFoundWithoutSizesAndIndex) {
  AviBuilder builder = damagedFilm();
  builder.withIndex = false;
  Bytes bytes = builder.build();
  overwriteNumber(bytes, 4, 0);
  overwriteNumber(bytes, builder.headers().size() + 4, 0);
  EXPECT_EQ(trustedOf(bytes), chunkOffsets(builder));
  bytes.resize(bytes.size() + 50000);  // room that was never used
  EXPECT_EQ(trustedOf(bytes), offsetsWithout(chunkOffsets(builder), 79));
}

TEST(DamagedFilm, IndexHeaderLostLeavesTheTableRecognised) {
  Bytes bytes = damagedFilm().build();
  overwrite(bytes, indexOf(damagedFilm()), "abcdefgh");
  ScannedFilm scanned(std::move(bytes));
  scanned.run();
  EXPECT_EQ(scanned.trusted(), chunkOffsets(damagedFilm()));
  EXPECT_EQ(scanned.chunks(), chunkOffsets(damagedFilm()));
  ASSERT_EQ(scanned.scan.tables.size(), 1U);
  EXPECT_FALSE(scanned.scan.tables[0].header.has_value());
}

TEST(DamagedFilm, FirstEntriesOfTheIndexLostAreNoCandidates) {
  Bytes bytes = damagedFilm().build();
  const std::size_t table = indexOf(damagedFilm()) + 8;
  overwrite(bytes, table, "abcdefgh");
  overwrite(bytes, table + 32, "abcdefgh");
  ScannedFilm scanned(std::move(bytes));
  scanned.run();
  EXPECT_EQ(scanned.chunks(), chunkOffsets(damagedFilm()));
  ASSERT_EQ(scanned.scan.tables.size(), 1U);
  EXPECT_EQ(scanned.scan.tables[0].begin, table + 48);
  EXPECT_EQ(scanned.scan.tables[0].header, table - 8);
}

TEST(DamagedFilm, ByteMissingFromTheIndexMakesTwoTables) {
  Bytes bytes = damagedFilm().build();
  const std::size_t table = indexOf(damagedFilm()) + 8;
  bytes.erase(bytes.begin() + at(table + 40 * 16 + 5));
  ScannedFilm scanned(std::move(bytes));
  scanned.run();
  EXPECT_EQ(scanned.chunks(), chunkOffsets(damagedFilm()));
  ASSERT_EQ(scanned.scan.tables.size(), 2U);
  EXPECT_EQ(scanned.scan.tables[0].end, table + 40 * 16);
  EXPECT_EQ(scanned.scan.tables[1].begin, table + 41 * 16 - 1);
  EXPECT_EQ(scanned.scan.tables[1].header, table - 8);
  EXPECT_EQ(scanned.scan.tables[1].end, table + 80 * 16 - 1);
}

TEST(DamagedFilm, BytesAddedToTheIndexMakeTwoTables) {
  Bytes bytes = damagedFilm().build();
  const std::size_t table = indexOf(damagedFilm()) + 8;
  bytes.insert(bytes.begin() + at(table + 40 * 16 + 5), 5, std::byte{0xaa});
  ScannedFilm scanned(std::move(bytes));
  scanned.run();
  EXPECT_EQ(scanned.chunks(), chunkOffsets(damagedFilm()));
  ASSERT_EQ(scanned.scan.tables.size(), 2U);
  EXPECT_EQ(scanned.scan.tables[1].begin, table + 41 * 16 + 5);
  EXPECT_EQ(scanned.scan.tables[1].header, table - 8);
}

TEST(DamagedFilm, WildSizeOfTheIndexHidesNothing) {
  Bytes bytes = damagedFilm().build();
  overwriteNumber(bytes, indexOf(damagedFilm()) + 4, 0xffffffff);
  const Bytes behind = damagedFilm().build();
  const std::size_t second = bytes.size();
  bytes.insert(bytes.end(), behind.begin(), behind.end());
  const Offsets trusted = trustedOf(bytes);
  EXPECT_EQ(trusted.size(), 160U);
  EXPECT_EQ(trusted[80], chunkOffsets(damagedFilm())[0] + second);
}

TEST(DamagedFilm, CodeOverwrittenCostsThatChunkAndTheOneBeforeItsProof) {
  Bytes bytes = damagedFilm().build();
  const Offsets whole = chunkOffsets(damagedFilm());
  overwrite(bytes, whole[20], "\xff\xfe\xfd\xfc");
  EXPECT_EQ(trustedOf(bytes), offsetsWithout(whole, 19, 2));
}

TEST(DamagedFilm, SizeFieldWrongCostsThatChunksProofAlone) {
  Bytes bytes = damagedFilm().build();
  const Offsets whole = chunkOffsets(damagedFilm());
  overwriteNumber(bytes, whole[20] + 4, 1002);
  ScannedFilm scanned(std::move(bytes));
  scanned.run();
  EXPECT_EQ(scanned.chunks(), whole);
  EXPECT_EQ(scanned.trusted(), offsetsWithout(whole, 20));
}

TEST(DamagedFilm, SectorsZeroedCostWhatTheyCover) {
  Bytes bytes = damagedFilm().build();
  const Offsets whole = chunkOffsets(damagedFilm());
  std::fill(bytes.begin() + at(whole[20] - 10), bytes.begin() + at(whole[23]), std::byte{0});
  EXPECT_EQ(trustedOf(bytes), offsetsWithout(whole, 19, 4));
}

TEST(DamagedFilm, OddCountOfBytesMissingShiftsWhatFollows) {
  Bytes bytes = damagedFilm().build();
  const Offsets whole = chunkOffsets(damagedFilm());
  bytes.erase(bytes.begin() + at(whole[20] + 100), bytes.begin() + at(whole[20] + 137));
  EXPECT_EQ(trustedOf(bytes), offsetsWithout(shifted(whole, 21, -37), 20));
}

TEST(DamagedFilm, OddCountOfBytesInsertedShiftsWhatFollows) {
  Bytes bytes = damagedFilm().build();
  const Offsets whole = chunkOffsets(damagedFilm());
  bytes.insert(bytes.begin() + at(whole[20] + 100), 333, std::byte{0xaa});
  EXPECT_EQ(trustedOf(bytes), offsetsWithout(shifted(whole, 21, 333), 20));
}

TEST(DamagedFilm, SpanDoubledIsFoundTwice) {
  Bytes bytes = damagedFilm().build();
  const Offsets whole = chunkOffsets(damagedFilm());
  const Bytes span(bytes.begin() + at(whole[10]), bytes.begin() + at(whole[20]));
  bytes.insert(bytes.begin() + at(whole[20]), span.begin(), span.end());
  EXPECT_EQ(trustedOf(bytes).size(), 90U);
}

TEST(DamagedFilm, PadByteMissingIsClosureWithoutPad) {
  Bytes bytes = damagedFilm().build();
  const Offsets whole = chunkOffsets(damagedFilm());
  bytes.erase(bytes.begin() + at(whole[21] + 8 + 101));
  ScannedFilm scanned(std::move(bytes));
  scanned.run();
  EXPECT_EQ(scanned.trusted(), offsetsWithout(shifted(whole, 22, -1), 21));
  const std::size_t number = scanned.numberAt(whole[21]);
  EXPECT_TRUE(scanned.chain.is(number, salvage::ChainFact::closesUnpadded));
  EXPECT_EQ(scanned.chain.next(number), number + 1);
}

TEST(DamagedFilm, ListSizesWildChangeNothing) {
  Bytes bytes = damagedFilm().build();
  overwriteNumber(bytes, damagedFilm().headers().size() + 4, 0x7fffffff);
  overwriteNumber(bytes, 4, 3);
  EXPECT_EQ(trustedOf(bytes), chunkOffsets(damagedFilm()));
}

TEST(DamagedFilm, FrontGoneIsScannedWithAnyStreamNumber) {
  Bytes bytes = damagedFilm().build();
  const Offsets whole = chunkOffsets(damagedFilm());
  const std::uint64_t cut = whole[6] + 300;
  bytes.erase(bytes.begin(), bytes.begin() + at(cut));
  ScannedFilm scanned(std::move(bytes));
  scanned.run();
  EXPECT_TRUE(scanned.headers.streams.empty());
  Offsets expected = shifted(whole, 0, -static_cast<std::int64_t>(cut));
  expected.erase(expected.begin(), expected.begin() + 7);
  EXPECT_EQ(scanned.trusted(), expected);
}

TEST(DamagedFilm, RecordListsAreEntered) {
  Bytes bytes = damagedFilm(1).headers();
  appendText(bytes, "LIST");
  appendNumber(bytes, 0);
  appendText(bytes, "movi");
  Offsets expected;
  for (int i = 0; i < 10; ++i) {
    appendText(bytes, "LIST");
    appendNumber(bytes, 4 + 108 + 60);
    appendText(bytes, "rec ");
    expected.push_back(bytes.size());
    appendChunk(bytes, "00dc", 100);
    expected.push_back(bytes.size());
    appendChunk(bytes, "01wb", 52);
  }
  EXPECT_EQ(trustedOf(bytes), expected);
}

TEST(DamagedFilm, UnreadableStretchIsSkippedAndRemembered) {
  ScannedFilm scanned(damagedFilm().build());
  const Offsets whole = chunkOffsets(damagedFilm());
  scanned.file().badReadStart = 9000;
  scanned.file().badReadEnd = 14000;
  scanned.file().readError = std::make_error_code(std::errc::io_error);
  scanned.run();
  EXPECT_EQ(scanned.scan.unreadable, (std::vector<salvage::ByteSpan>{{9000, 16384}}));
  EXPECT_EQ(scanned.scan.unreadableBytes, 16384U - 9000);
  EXPECT_GT(scanned.input->failures().count, 0U);
  Offsets expected;
  std::ranges::copy_if(whole, std::back_inserter(expected),
                       [](std::uint64_t offset) { return offset + 8 <= 9000 || offset >= 16384; });
  EXPECT_EQ(scanned.chunks(), expected);
  EXPECT_TRUE(scanned.scan.isComplete);
}

TEST(DamagedFilm, UnreadableToTheEndEndsTheScan) {
  ScannedFilm scanned(damagedFilm().build());
  scanned.file().badReadStart = 20001;
  scanned.file().badReadEnd = 1U << 30U;
  scanned.file().readError = std::make_error_code(std::errc::io_error);
  scanned.limits.unreadable = 1;
  scanned.run();
  ASSERT_EQ(scanned.scan.unreadable.size(), 1U);
  EXPECT_EQ(scanned.scan.unreadable[0].begin, 20001U);
  EXPECT_EQ(scanned.scan.unreadable[0].end, scanned.scan.end);
}

TEST(DamagedFilm, TableThatMeetsAnUnreadableStretchEndsThere) {
  ScannedFilm scanned(damagedFilm(2000).build());
  const std::size_t table = indexOf(damagedFilm(2000)) + 8;
  scanned.file().badReadStart = table + 1005;
  scanned.file().badReadEnd = table + 1006;
  scanned.file().readError = std::make_error_code(std::errc::io_error);
  scanned.run();
  EXPECT_EQ(scanned.chunks(), chunkOffsets(damagedFilm(2000)));
  ASSERT_EQ(scanned.scan.tables.size(), 2U);
  EXPECT_EQ(scanned.scan.tables[0].begin, table);
  EXPECT_EQ(scanned.scan.tables[0].end, table + 62 * 16);
  EXPECT_EQ(scanned.scan.tables[1].end, scanned.scan.end);
}

}  // namespace
}  // namespace zelvo::tests
