// How far the chunks of a damaged film have moved, from where headers of their sizes stand.
#include "salvage/chain/displacements.h"

#include <gtest/gtest.h>

#include <array>
#include <random>

namespace zelvo::tests {
namespace {

using salvage::Candidate;
using salvage::CandidateKind;
using salvage::CandidateList;
using salvage::coverEntries;
using salvage::DisplacementCover;
using salvage::TemplateEntry;

constexpr std::uint64_t kEnd = 100'000'000;

/// Entries one after the other; `sizeOf` answers the size of each.
template <class SizeOf>
std::vector<TemplateEntry> entriesOf(std::size_t count, const SizeOf& sizeOf) {
  std::vector<TemplateEntry> entries;
  std::uint64_t at = 1000;
  for (std::size_t i = 0; i < count; ++i) {
    TemplateEntry entry;
    entry.offset = at;
    entry.size = sizeOf(i);
    entry.stream = static_cast<std::uint8_t>(i % 2);
    entries.push_back(entry);
    at = entry.end() + entry.size % 2;
  }
  return entries;
}

std::vector<TemplateEntry> variedEntries(std::size_t count) {
  std::mt19937 random(3);
  return entriesOf(count, [&](std::size_t) { return static_cast<std::uint32_t>(500 + random() % 4000); });
}

/// The header of each entry where `moved` puts it; nothing is there where it answers nothing.
template <class Moved>
CandidateList headersOfEntries(const std::vector<TemplateEntry>& entries, const Moved& moved) {
  std::vector<Candidate> found;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const std::optional<std::int64_t> by = moved(i);
    if (by) {
      found.emplace_back(static_cast<std::uint64_t>(static_cast<std::int64_t>(entries[i].offset) + *by),
                         CandidateKind::data, entries[i].stream, std::uint8_t{0}, entries[i].size, 0U);
    }
  }
  std::ranges::sort(found, {}, &Candidate::offset);
  CandidateList list;
  for (const Candidate& candidate : found) list.add(candidate);
  return list;
}

/// By how much each entry has moved; nothing where no header explains it.
std::vector<std::optional<std::int64_t>> movesOf(const DisplacementCover& cover) {
  std::vector<std::optional<std::int64_t>> moves;
  for (const std::uint16_t number : cover.ofEntry)
    moves.push_back(number == DisplacementCover::kNone ? std::nullopt : std::optional(cover.values[number]));
  return moves;
}

template <class Moved>
void expectFound(const std::vector<TemplateEntry>& entries, const Moved& moved) {
  const DisplacementCover cover = coverEntries(entries, headersOfEntries(entries, moved), 0, kEnd);
  const auto moves = movesOf(cover);
  for (std::size_t i = 0; i < entries.size(); ++i) EXPECT_EQ(moves[i], moved(i)) << "entry " << i;
}

TEST(Displacements, ChunksOfOneSizeMoveInFilmsWithSmallGapsToo) {
  auto entries = entriesOf(60, [](std::size_t) { return 1400U; });
  for (std::size_t i = 0; i < entries.size(); ++i) entries[i].offset = 1000 + 2048 * i;
  const auto moved = [](std::size_t i) {
    if (i < 20) return std::optional<std::int64_t>(0);
    return i < 23 ? std::nullopt : std::optional<std::int64_t>(-(2 * 2048 + 500));
  };
  expectFound(entries, moved);
}

TEST(Displacements, OfAWholeFilmIsZero) {
  expectFound(variedEntries(50), [](std::size_t) { return std::optional<std::int64_t>(0); });
}

TEST(Displacements, EachDeletionAddsOne) {
  expectFound(variedEntries(100), [](std::size_t i) -> std::optional<std::int64_t> {
    if (i < 30) return 0;
    return i < 60 ? -1301 : -4400;
  });
}

TEST(Displacements, LostHeadersAreExplainedByNone) {
  expectFound(variedEntries(100), [](std::size_t i) -> std::optional<std::int64_t> {
    if (i % 10 == 3) return std::nullopt;
    return i < 50 ? 0 : 777;
  });
}

TEST(Displacements, FilmThatBeginsLaterHasNoZero) {
  const auto entries = variedEntries(60);
  const auto cover = coverEntries(
      entries, headersOfEntries(entries, [](std::size_t) { return std::optional<std::int64_t>(123'456); }), 0, kEnd);
  ASSERT_EQ(cover.values.size(), 1U);
  EXPECT_EQ(cover.values[0], 123'456);
}

TEST(Displacements, ConstantSizesFollowTheirOwnDeletion) {
  const auto entries = entriesOf(200, [](std::size_t i) { return i % 2 == 0 ? 5000U : 1280U; });
  expectFound(entries, [](std::size_t i) { return std::optional<std::int64_t>(i < 90 ? 0 : -3001); });
}

TEST(Displacements, HeadersOfChunksThatTheIndexLacksExplainNoOthers) {
  // Pictures and sound of constant sizes. A stretch of the index is gone; elsewhere headers are, and their entries must
  // not find those of the stretch.
  const auto whole =
      entriesOf(400, [](std::size_t i) { return static_cast<std::uint32_t>(i % 2 == 0 ? 144'000 : 7680); });
  std::vector<TemplateEntry> named;
  for (std::size_t i = 0; i < whole.size(); ++i) {
    if (i < 150 || i >= 200) named.push_back(whole[i]);
  }
  const auto isHit = [](std::size_t i) { return i % 17 == 3 || i % 17 == 4; };
  const CandidateList headers = headersOfEntries(whole, [&](std::size_t i) -> std::optional<std::int64_t> {
    if (isHit(i)) return std::nullopt;
    return 0;
  });
  const auto moves = movesOf(coverEntries(named, headers, 0, kEnd));
  for (std::size_t i = 0; i < named.size(); ++i) {
    const bool isThere = !isHit(i < 150 ? i : i + 50);
    EXPECT_EQ(moves[i], isThere ? std::optional<std::int64_t>(0) : std::nullopt) << "entry " << i;
  }
}

TEST(Displacements, EachHeaderExplainsOneEntry) {
  // The second of two entries of one size has lost its header; that of the first is no sign of it.
  auto entries = variedEntries(40);
  entries[21].size = entries[19].size;
  const auto list = headersOfEntries(entries, [](std::size_t i) -> std::optional<std::int64_t> {
    if (i == 21) return std::nullopt;
    return 0;
  });
  const auto cover = coverEntries(entries, list, 0, kEnd);
  EXPECT_EQ(cover.ofEntry[21], DisplacementCover::kNone);
  EXPECT_NE(cover.ofEntry[19], DisplacementCover::kNone);
}

TEST(Displacements, TheIndexsOwnPlaceTellsHowFarTheEndMoved) {
  const auto entries = entriesOf(40, [](std::size_t i) { return i % 2 == 0 ? 5000U : 1280U; });
  const std::uint64_t indexBegin = entries.back().end() + 8 - 2001;
  const auto cover = coverEntries(
      entries, headersOfEntries(entries, [](std::size_t i) { return std::optional<std::int64_t>(i < 20 ? 0 : -2001); }),
      indexBegin, kEnd);
  EXPECT_EQ(cover.endShift, -2001);
  EXPECT_EQ(cover.values, (std::vector<std::int64_t>{0, -2001}));
}

TEST(Displacements, NoMoreThanTheLimitAreTaken) {
  const auto entries = variedEntries(400);
  salvage::DisplacementLimits limits;
  limits.displacements = 5;
  const auto cover = coverEntries(
      entries,
      headersOfEntries(entries,
                       [](std::size_t i) { return std::optional<std::int64_t>(-101 * (std::int64_t(i) / 20)); }),
      0, kEnd, limits);
  EXPECT_EQ(cover.values.size(), 5U);
}

TEST(Displacements, HostileConstantSizesWithoutAnyMatchComeToAnEnd) {
  const auto entries = entriesOf(20'000, [](std::size_t) { return 8U; });
  const auto cover = coverEntries(
      entries,
      headersOfEntries(entries,
                       [](std::size_t i) { return std::optional<std::int64_t>(std::int64_t(i * i % 8191) + 3); }),
      0, kEnd);
  EXPECT_EQ(cover.ofEntry.size(), entries.size());
}

TEST(Displacements, ChanceIsTakenBackWhereLittleIsFirm) {
  // Of another film's index a few entries of a constant size match by chance.
  auto entries =
      entriesOf(200, [](std::size_t i) { return i % 2 == 0 ? 5000U + static_cast<std::uint32_t>(i) : 1280U; });
  const auto list = headersOfEntries(entries, [](std::size_t i) -> std::optional<std::int64_t> {
    if (i >= 150) return -777;
    if (i % 30 == 1) return 4096;
    return std::nullopt;
  });
  DisplacementCover cover = coverEntries(entries, list, 0, kEnd);
  salvage::dropChance(cover, entries, list, true);
  for (std::size_t i = 0; i < 150; ++i) EXPECT_EQ(cover.ofEntry[i], DisplacementCover::kNone) << i;
  for (std::size_t i = 150; i < 200; ++i) EXPECT_NE(cover.ofEntry[i], DisplacementCover::kNone) << i;
}

TEST(Displacements, WhatStandsBesideALongLossIsJudgedByItself) {
  // Constant sizes; a third of the film is lost early on, and bytes are missing in the middle.
  const auto entries =
      entriesOf(600, [](std::size_t i) { return static_cast<std::uint32_t>(i % 2 == 0 ? 144'000 : 7680); });
  const CandidateList headers = headersOfEntries(entries, [](std::size_t i) -> std::optional<std::int64_t> {
    if (i >= 5 && i < 205) return std::nullopt;
    return i < 300 ? 0 : -5'494'829;
  });
  for (const bool isStrict : {false, true}) {
    DisplacementCover cover = coverEntries(entries, headers, 0, kEnd);
    dropChance(cover, entries, headers, isStrict);
    for (const std::size_t i : {205U, 250U, 299U, 300U, 599U})
      EXPECT_NE(cover.ofEntry[i], DisplacementCover::kNone) << i << isStrict;
  }
}

/// Constant sizes, and six bytes missing every few chunks, whose headers are gone: what `cover` and `dropChance` leave.
DisplacementCover coverOfShortStretches(std::span<const std::size_t> torn, std::uint64_t indexBegin, bool isStrict) {
  const auto entries = entriesOf(99, [](std::size_t) { return 14'400U; });
  const CandidateList headers = headersOfEntries(entries, [&](std::size_t i) -> std::optional<std::int64_t> {
    if (std::ranges::binary_search(torn, i)) return std::nullopt;
    return -6 * (std::ranges::lower_bound(torn, i) - torn.begin());
  });
  DisplacementCover cover = coverEntries(entries, headers, indexBegin, kEnd);
  dropChance(cover, entries, headers, isStrict);
  return cover;
}

TEST(Displacements, ShortStretchesBetweenMissingBytesStayWhereNoOtherChunkCanBe) {
  // One to fifteen chunks lie between them.
  constexpr std::array<std::size_t, 9> kTorn{29, 33, 36, 50, 53, 59, 62, 76, 81};
  const auto entries = entriesOf(99, [](std::size_t) { return 14'400U; });
  const std::uint64_t index = entries.back().end() + 8 - 6 * kTorn.size();
  const auto moves = movesOf(coverOfShortStretches(kTorn, index, false));
  for (std::size_t i = 0; i < moves.size(); ++i) {
    const auto missing = std::ranges::lower_bound(kTorn, i) - kTorn.begin();
    const bool isTorn = std::ranges::binary_search(kTorn, i);
    EXPECT_EQ(moves[i], isTorn ? std::nullopt : std::optional<std::int64_t>(-6 * missing)) << i;
  }
}

TEST(Displacements, ShortStretchesAreChanceInAForeignIndexOrWhereMuchMoved) {
  constexpr std::array<std::size_t, 9> kTorn{29, 33, 36, 50, 53, 59, 62, 76, 81};
  const auto entries = entriesOf(99, [](std::size_t) { return 14'400U; });
  const std::uint64_t index = entries.back().end() + 8 - 6 * kTorn.size();
  EXPECT_EQ(coverOfShortStretches(kTorn, index, true).ofEntry[34], DisplacementCover::kNone);
  // A chunk more in front of the index, and nothing says any more that these have not moved by as much.
  EXPECT_EQ(coverOfShortStretches(kTorn, index + 14'408, false).ofEntry[34], DisplacementCover::kNone);
}

TEST(Displacements, NothingIsTakenBackFromAFirmIndex) {
  const auto entries = variedEntries(100);
  const auto list =
      headersOfEntries(entries, [](std::size_t i) { return std::optional<std::int64_t>(i == 50 ? 8192 : 0); });
  DisplacementCover cover = coverEntries(entries, list, 0, kEnd);
  const auto before = cover.ofEntry;
  salvage::dropChance(cover, entries, list, false);
  EXPECT_EQ(cover.ofEntry, before);
}

}  // namespace
}  // namespace zelvo::tests
