// How far the chunks of a damaged film have moved, from where headers of their sizes stand.
#include "salvage/chain/displacements.h"

#include <gtest/gtest.h>

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

TEST(Displacements, FewPairsAtATimeExplainALongFilmOfConstantSizesRoundByRound) {
  const auto entries = entriesOf(72'000, [](std::size_t i) { return i % 2 == 0 ? 1200U : 400U; });
  const auto moved = [](std::size_t i) { return -7 * static_cast<std::int64_t>(i / 6000); };
  const CandidateList headers =
      headersOfEntries(entries, [&](std::size_t i) { return std::optional<std::int64_t>(moved(i)); });
  salvage::DisplacementLimits limits;
  limits.pairs = 50'000;  // of 3125 entries
  const auto moves = movesOf(coverEntries(entries, headers, entries.back().end() + 8 - 77, kEnd, limits));
  for (std::size_t i = 0; i < moves.size(); ++i) ASSERT_EQ(moves[i], moved(i)) << i;
}

/// A film of constant sizes of which some bytes are missing in each of many chunks, whose headers are gone as well.
struct TornOften {
  /// How far chunk `i` has moved.
  [[nodiscard]] std::int64_t movedAt(std::size_t i) const {
    const auto before = std::ranges::lower_bound(torn, i) - torn.begin();
    return before == 0 ? 0 : -first - 6 * (before - 1);
  }
  [[nodiscard]] bool isTorn(std::size_t i) const { return std::ranges::binary_search(torn, i); }
  /// What is left of the cover. `extra`: by how much the index moved more than the last chunk.
  [[nodiscard]] DisplacementCover cover(std::int64_t extra = 0, bool isStrict = false) const {
    const CandidateList headers = headersOfEntries(entries, [&](std::size_t i) -> std::optional<std::int64_t> {
      if (isTorn(i)) return std::nullopt;
      return movedAt(i);
    });
    const std::int64_t index = static_cast<std::int64_t>(entries.back().end()) + 8 + movedAt(entries.size()) + extra;
    DisplacementCover found = coverEntries(entries, headers, static_cast<std::uint64_t>(index), kEnd);
    dropChance(found, entries, headers, isStrict);
    return found;
  }

  std::vector<std::size_t> torn{29, 33, 36, 45, 50, 53, 59, 62, 70, 76, 81};
  std::int64_t first = 6;  ///< bytes missing in the first of them; 6 in the others
  std::vector<TemplateEntry> entries = entriesOf(99, [](std::size_t) { return 14'400U; });
};

TEST(Displacements, ShortStretchesBetweenMissingBytesStayWhereNoOtherChunkCanStand) {
  const TornOften film;
  const auto moves = movesOf(film.cover());
  for (std::size_t i = 0; i < moves.size(); ++i)
    EXPECT_EQ(moves[i], film.isTorn(i) ? std::nullopt : std::optional(film.movedAt(i))) << i;
}

TEST(Displacements, ShortStretchesBehindALongOneThatMovedFarStay) {
  TornOften film;
  film.first = 20'000;
  film.torn.insert(film.torn.begin(), 5);
  const auto cover = film.cover();
  for (const std::size_t i : {10U, 31U, 40U, 90U}) EXPECT_NE(cover.ofEntry[i], DisplacementCover::kNone) << i;
}

TEST(Displacements, ShortStretchesAreChanceInAForeignIndexOrWhereMuchMoved) {
  TornOften film;
  film.torn.push_back(90);
  EXPECT_NE(film.cover().ofEntry[80], DisplacementCover::kNone);
  EXPECT_EQ(film.cover(0, true).ofEntry[40], DisplacementCover::kNone);
  // A chunk more or less in front of the index, and nothing says any more that these have not moved by as much.
  for (const std::int64_t extra : {14'408, -14'408})
    EXPECT_EQ(film.cover(extra).ofEntry[80], DisplacementCover::kNone) << extra;
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
