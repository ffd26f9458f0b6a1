// What one pass over a whole film finds, and how little it takes of hostile ones.
#include "salvage/scan/media_scan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>

#include "salvage/scan/crowded_codes.h"
#include "tests/salvage/scanned_film.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using salvage::CandidateKind;
using salvage::CrowdedCodes;
using Offsets = std::vector<std::uint64_t>;

AviBuilder scannedBuilder(int pairs = 40) { return AviBuilder().interleaved(pairs, 1000, 101); }

/// Bytes that the scan asked for.
std::uint64_t bytesRead(ScannedFilm& scanned) {
  std::uint64_t read = 0;
  scanned.file().onRead = [&](std::uint64_t, std::size_t size) { read += size; };
  scanned.run();
  scanned.file().onRead = nullptr;
  return read;
}

TEST(MediaScan, WholeFilmGivesItsChunksListsAndIndex) {
  const Bytes bytes = scannedBuilder().build();
  ScannedFilm scanned(bytes);
  scanned.run();
  EXPECT_EQ(scanned.chunks(), chunkOffsets(scannedBuilder()));
  EXPECT_EQ(scanned.trusted(), chunkOffsets(scannedBuilder()));
  const auto& found = scanned.scan;
  EXPECT_EQ(found.candidates[0].kind(), CandidateKind::list);
  EXPECT_EQ(found.candidates[0].offset(), scannedBuilder().headers().size());
  EXPECT_EQ(found.candidates.back().kind(), CandidateKind::skipped);
  EXPECT_EQ(found.candidates.size(), 82U);
  ASSERT_EQ(found.tables.size(), 1U);
  EXPECT_EQ(found.tables[0].begin, bytes.size() - 80 * 16);
  EXPECT_EQ(found.tables[0].end, bytes.size());
  EXPECT_EQ(found.tables[0].header, bytes.size() - 80 * 16 - 8);
  EXPECT_EQ(found.end, bytes.size());
  EXPECT_TRUE(found.isComplete);
  EXPECT_TRUE(found.unreadable.empty());
}

TEST(MediaScan, CandidateKeepsStreamSizeHeadAndCode) {
  ScannedFilm scanned(scannedBuilder().build());
  scanned.run();
  const auto& second = scanned.scan.candidates[2];
  EXPECT_EQ(second.stream(), 1);
  EXPECT_EQ(second.size(), 101U);
  EXPECT_EQ(second.head(), 0x70707070U);
  EXPECT_EQ(scanned.codes.codeOf({second.stream(), second.suffix()}), avi::k01wb);
}

TEST(MediaScan, EveryWindowSizeFindsTheSame) {
  const Bytes bytes = scannedBuilder(300).build();
  ScannedFilm expected(bytes);
  expected.run();
  for (const std::size_t size : {1U, 8192U, 12288U, 40000U}) {
    ScannedFilm scanned(bytes);
    scanned.limits.windowSize = size;
    scanned.run();
    EXPECT_EQ(scanned.chunks(), expected.chunks());
    EXPECT_EQ(scanned.scan.candidates.size(), expected.scan.candidates.size());
    ASSERT_EQ(scanned.scan.tables.size(), 1U);
    EXPECT_EQ(scanned.scan.tables[0].begin, expected.scan.tables[0].begin);
    EXPECT_EQ(scanned.scan.tables[0].end, expected.scan.tables[0].end);
  }
}

TEST(MediaScan, ChunkIsFoundAtEveryPlaceAroundAWindowsEnd) {
  for (std::uint32_t filler = 8192 - 110; filler < 8192 + 20; ++filler) {
    Bytes bytes(filler, std::byte{0x55});
    appendChunk(bytes, "00dc", 6, std::byte{0x66});
    bytes.resize(bytes.size() + 9000, std::byte{0x55});
    ScannedFilm scanned(bytes);
    scanned.limits.windowSize = 8192;
    scanned.scanFrom(0);
    ASSERT_EQ(scanned.chunks(), Offsets{filler});
    EXPECT_EQ(scanned.scan.candidates[0].head(), 0x66666666U);
  }
}

TEST(MediaScan, LastEightBytesMayBeAHeader) {
  Bytes bytes(100, std::byte{0x55});
  appendChunk(bytes, "01wb", 0);
  EXPECT_EQ(ScannedFilm(bytes).scanFrom(0).chunks(), Offsets{100});
  bytes.pop_back();
  EXPECT_EQ(ScannedFilm(bytes).scanFrom(0).chunks(), Offsets{});
}

TEST(MediaScan, HeadBehindTheEndIsZero) {
  Bytes bytes(100, std::byte{0x55});
  appendChunk(bytes, "01wb", 2, std::byte{0x77});
  ScannedFilm scanned(bytes);
  scanned.scanFrom(0);
  EXPECT_EQ(scanned.scan.candidates[0].head(), 0x7777U);
}

TEST(MediaScan, CodesOfStreamsThatDoNotExistAreNone) {
  AviBuilder twoStreams = scannedBuilder(3);
  twoStreams.chunks.push_back({"02dc", 50});
  twoStreams.chunks.push_back({"00wb", 50});
  twoStreams.chunks.push_back({"00dc", 50});
  ScannedFilm scanned(twoStreams.build());
  scanned.run();
  EXPECT_EQ(scanned.chunks().size(), 7U);
  // The index names them all the same, and is recognised as a whole.
  ASSERT_EQ(scanned.scan.tables.size(), 1U);
  EXPECT_EQ(scanned.scan.tables[0].end - scanned.scan.tables[0].begin, 9U * 16);
}

TEST(MediaScan, StandardIndexIsSteppedOver) {
  Bytes bytes(50, std::byte{0x55});
  appendText(bytes, "ix01");
  appendNumber(bytes, 24 + 16);
  appendNumber(bytes, 0x01000002);
  appendNumber(bytes, 2);
  appendText(bytes, "01wb");
  bytes.resize(bytes.size() + 12);
  appendText(bytes, "00dc");  // an offset that looks like a code
  appendNumber(bytes, 5);
  bytes.resize(bytes.size() + 8);
  appendChunk(bytes, "01wb", 10);
  ScannedFilm scanned(bytes);
  scanned.scanFrom(0);
  EXPECT_EQ(scanned.chunks(), Offsets{98});
  ASSERT_EQ(scanned.scan.standardIndexes.size(), 1U);
  EXPECT_EQ(scanned.scan.standardIndexes[0].offset, 50U);
  EXPECT_EQ(scanned.scan.candidates[0].kind(), CandidateKind::index);
  EXPECT_EQ(scanned.scan.candidates[0].stream(), 1);
  EXPECT_TRUE(scanned.chain.closes(0));
}

TEST(MediaScan, ScanEndsWhenItIsAskedTo) {
  ScannedFilm scanned(scannedBuilder(300).build());
  int left = 3;
  salvage::ScanLimits limits;
  limits.windowSize = 8192;
  const auto found = salvage::scanMedia(
      *scanned.input, 0, scanned.codes, [&] { return left-- == 0; }, limits);
  EXPECT_FALSE(found.isComplete);
  EXPECT_GT(found.end, 8192U);
  EXPECT_LE(found.end, 3 * 8192U);
}

TEST(MediaScan, OffsetsBeyondFourGibibytesAreWhole) {
  constexpr std::uint64_t kFiveGib = (std::uint64_t{5} << 30U) + 77;
  ScannedFilm scanned(Bytes{});
  scanned.file().size = kFiveGib + 20;
  Bytes chunk;
  appendChunk(chunk, "00dc", 12);
  scanned.file().islands[kFiveGib] = chunk;
  scanned.scanFrom(kFiveGib - 100000);
  ASSERT_EQ(scanned.chunks(), Offsets{kFiveGib});
  EXPECT_TRUE(scanned.chain.closes(0));
}

TEST(MediaScan, EachByteIsReadAboutOnce) {
  const Bytes bytes = scannedBuilder(5000).build();
  ScannedFilm scanned(bytes);
  EXPECT_LT(bytesRead(scanned), bytes.size() + bytes.size() / 10 + (std::uint64_t{1} << 20U));
}

TEST(MediaScan, HostileTablesOfThreeEntriesAreNotReadAgainAndAgain) {
  Bytes bytes;
  while (bytes.size() < 400000) {
    for (std::uint32_t i = 0; i < 3; ++i) {
      appendText(bytes, "00dc");
      appendNumber(bytes, 0);
      appendNumber(bytes, i);
      appendNumber(bytes, 0);
    }
    bytes.resize(bytes.size() + 17, std::byte{0x55});
  }
  const std::size_t size = bytes.size();
  ScannedFilm scanned(std::move(bytes));
  scanned.limits.windowSize = 8192;
  scanned.limits.indexes = 1000;
  EXPECT_LT(bytesRead(scanned), 3 * size);
  EXPECT_EQ(scanned.scan.tables.size(), 1000U);
  EXPECT_EQ(scanned.scan.leftOut, size / 65 - 1000);
  EXPECT_TRUE(scanned.chunks().empty());
}

TEST(MediaScan, HostileMillionEntriesToOnePlaceAreNoTableAndFillNoMemory) {
  Bytes bytes;
  for (int i = 0; i < 1000000; ++i) {
    appendText(bytes, "00dc");
    appendNumber(bytes, 0x10);
    appendNumber(bytes, 4);
    appendNumber(bytes, 100);
  }
  const std::size_t size = bytes.size();
  ScannedFilm scanned(std::move(bytes));
  scanned.limits.candidates = 10000;
  EXPECT_LT(bytesRead(scanned), 2 * size);
  EXPECT_TRUE(scanned.scan.tables.empty());
  EXPECT_LE(scanned.scan.candidates.size(), 10000U);
  EXPECT_EQ(scanned.scan.candidates.size() + scanned.scan.dropped + scanned.scan.leftOut, 1000000U);
}

TEST(MediaScan, HostileDenseCandidatesMakeRoomForChunksThatClose) {
  // Every eight bytes a code whose size leads nowhere, then a film.
  Bytes bytes;
  for (std::uint32_t i = 0; i < 50000; ++i) {
    appendText(bytes, "00dc");
    appendNumber(bytes, 3 + i % 2 * 8);
  }
  const std::size_t filmAt = bytes.size();
  const Bytes real = scannedBuilder().build();
  bytes.insert(bytes.end(), real.begin(), real.end());
  ScannedFilm scanned(std::move(bytes));
  scanned.limits.candidates = 1000;
  scanned.scanFrom(0);
  const Offsets trusted = scanned.trusted();
  for (const std::uint64_t offset : chunkOffsets(scannedBuilder()))
    EXPECT_TRUE(std::ranges::binary_search(trusted, offset + filmAt)) << offset;
  EXPECT_GT(scanned.scan.dropped, 40000U);
  EXPECT_EQ(scanned.scan.leftOut, 0U);
}

TEST(MediaScan, HostileCandidatesThatAllLeadFartherAreLeftOutOnceThereIsNoRoom) {
  constexpr std::uint32_t kCount = 30000;
  constexpr std::uint32_t kApart = 80;
  Bytes bytes;
  for (std::uint32_t i = 0; i < kCount; ++i) {
    appendText(bytes, "00dc");
    appendNumber(bytes, (kCount - i) * kApart - 8);  // each to the very end
    bytes.resize((i + 1) * kApart);
  }
  ScannedFilm scanned(std::move(bytes));
  scanned.limits.candidates = 5000;
  scanned.scanFrom(0);
  EXPECT_EQ(scanned.scan.candidates.size(), 5000U);
  EXPECT_EQ(scanned.scan.leftOut, kCount - 5000U);
}

TEST(MediaScan, HostileCodesWithoutRoomBetweenThemMakeRoomForTheFilm) {
  const Bytes film = scannedBuilder().build();
  Bytes bytes = film;
  for (std::uint32_t i = 0; i < 200000; ++i) {
    appendText(bytes, "00dc");
    appendNumber(bytes, 0x1000000 + i);
  }
  ScannedFilm scanned(std::move(bytes));
  scanned.run();
  EXPECT_GE(scanned.scan.dropped, 199'000U);
  // One block in front of them and one after them may be half full.
  EXPECT_LE(scanned.scan.candidates.size(), 82 + 2 * CrowdedCodes::kMostInBlock);
  const auto found = scanned.trusted();
  for (const std::uint64_t chunk : chunkOffsets(scannedBuilder()))
    EXPECT_TRUE(std::ranges::binary_search(found, chunk));
}

TEST(MediaScan, HostileCandidatesOfAShortFileAreFewer) {
  constexpr salvage::ScanLimits kLimits;
  EXPECT_EQ(kLimits.candidatesOf(0), 65'536U);
  EXPECT_EQ(kLimits.candidatesOf(128'000'000), 1'065'536U);
  EXPECT_EQ(kLimits.candidatesOf(std::uint64_t{1} << 40U), kLimits.candidates);
}

TEST(MediaScan, HostileDigitsAlonePassQuickly) {
  ScannedFilm scanned(Bytes(1000000, std::byte{'0'}));
  EXPECT_LT(bytesRead(scanned), 3000000U);
  EXPECT_TRUE(scanned.chunks().empty());
}

TEST(MediaScan, HostileNestedListsAreCandidatesAndNoMore) {
  Bytes bytes;
  for (int i = 0; i < 20000; ++i) {
    appendText(bytes, "LIST");
    appendNumber(bytes, 0xffffffff);
    appendText(bytes, "rec ");
  }
  ScannedFilm scanned(std::move(bytes));
  scanned.scanFrom(0);
  EXPECT_EQ(scanned.scan.candidates.size(), 20000U);
  EXPECT_LT(scanned.chain.looks(), 200000U);
}

}  // namespace
}  // namespace zelvo::tests
