// Stretches of an index that match other chunks by chance.
#include "salvage/chain/lone_stretches.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "tests/salvage/planned_film.h"

namespace zelvo::tests {
namespace {

using salvage::DisplacementCover;

/// Sixty pictures; those from 52 to 55 have the sizes of those from 22 to 25.
AviBuilder pictures() {
  AviBuilder film;
  for (std::uint32_t i = 0; i < 60; ++i) {
    const std::uint32_t like = i >= 52 && i < 56 ? i - 30 : i;
    film.chunks.push_back({"00dc", 700 + 34 * like, std::byte{0x91}});
  }
  return film;
}

struct Covered {
  explicit Covered(platform::Bytes bytes) : planned(std::move(bytes)) { entries = planned.index.entries; }
  DisplacementCover cover() {
    return salvage::coverEntries(entries, planned.scanned.scan.candidates, 0, planned.scanned.scan.end);
  }
  void dropFrom(DisplacementCover& made) {
    salvage::dropLone(made, entries, planned.scanned.scan.candidates, planned.scanned.chain);
  }

  PlannedFilm planned;
  std::vector<salvage::TemplateEntry> entries;
};

TEST(LoneStretches, ThoseInTheMidstOfSoundChunksAreTakenBack) {
  const AviBuilder builder = pictures();
  platform::Bytes bytes = builder.build();
  const auto offsets = chunkOffsets(builder);
  std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(offsets[50]),
            bytes.begin() + static_cast<std::ptrdiff_t>(offsets[58]), std::byte{0});
  Covered film(bytes);
  ASSERT_EQ(film.entries.size(), 60U);
  // An index that does not know of the chunks that they match.
  film.entries.erase(film.entries.begin() + 10, film.entries.begin() + 40);
  DisplacementCover cover = film.cover();
  ASSERT_NE(cover.ofEntry[52 - 30], DisplacementCover::kNone);
  const auto claimed = std::ranges::count(cover.isClaimed, 1);
  film.dropFrom(cover);
  for (std::size_t entry = 50; entry < 58; ++entry) EXPECT_EQ(cover.ofEntry[entry - 30], DisplacementCover::kNone);
  EXPECT_EQ(std::ranges::count(cover.isClaimed, 1), claimed - 4);
  EXPECT_EQ(cover.ofEntry[58 - 30], 0U);
}

TEST(LoneStretches, AFewBesideALostPartOfTheIndexAreTakenBackWhenTheyStandWhereItWas) {
  for (const bool isInFront : {false, true}) {
    // Two pictures at the end of what the index still names have the sizes of two that it names no more.
    const std::uint32_t lost = isInFront ? 8 : 40;
    AviBuilder builder;
    for (std::uint32_t i = 0; i < 60; ++i) {
      const std::uint32_t like = i == lost || i == lost + 1 ? i - lost + 20 : i;
      builder.chunks.push_back({"00dc", 700 + 34 * like, std::byte{0x91}});
    }
    platform::Bytes bytes = builder.build();
    const auto offsets = chunkOffsets(builder);
    std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(offsets[isInFront ? 6 : 40]),
              bytes.begin() + static_cast<std::ptrdiff_t>(offsets[isInFront ? 10 : 44]), std::byte{0});
    Covered film(bytes);
    ASSERT_EQ(film.entries.size(), 60U);
    film.entries.erase(film.entries.begin() + 10, film.entries.begin() + 40);
    DisplacementCover cover = film.cover();
    const std::size_t entry = isInFront ? lost : lost - 30;
    ASSERT_NE(cover.ofEntry[entry], DisplacementCover::kNone) << isInFront;
    film.dropFrom(cover);
    EXPECT_EQ(cover.ofEntry[entry], DisplacementCover::kNone) << isInFront;
    EXPECT_EQ(cover.ofEntry[entry + 1], DisplacementCover::kNone) << isInFront;
    EXPECT_EQ(cover.ofEntry[0], 0U) << isInFront;
    EXPECT_EQ(cover.ofEntry[29], 0U) << isInFront;
  }
}

TEST(LoneStretches, ManyBesideALostPartOfTheIndexAreNoChance) {
  AviBuilder builder;
  for (std::uint32_t i = 0; i < 60; ++i) {
    const std::uint32_t like = i >= 40 && i < 46 ? i - 20 : i;
    builder.chunks.push_back({"00dc", 700 + 34 * like, std::byte{0x91}});
  }
  platform::Bytes bytes = builder.build();
  const auto offsets = chunkOffsets(builder);
  std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(offsets[40]),
            bytes.begin() + static_cast<std::ptrdiff_t>(offsets[48]), std::byte{0});
  Covered film(bytes);
  film.entries.erase(film.entries.begin() + 10, film.entries.begin() + 40);
  DisplacementCover cover = film.cover();
  film.dropFrom(cover);
  for (std::size_t entry = 10; entry < 16; ++entry) EXPECT_NE(cover.ofEntry[entry], DisplacementCover::kNone) << entry;
}

TEST(LoneStretches, ChunksThatALostPartOfTheIndexNamedAreNotTakenForLostOnes) {
  AviBuilder builder;
  for (int i = 0; i < 60; ++i) builder.chunks.push_back({"00dc", 1000, std::byte{0x91}});
  platform::Bytes bytes = builder.build();
  const auto offsets = chunkOffsets(builder);
  bytes.erase(bytes.begin() + static_cast<std::ptrdiff_t>(offsets[50] + 300),
              bytes.begin() + static_cast<std::ptrdiff_t>(offsets[55] + 500));
  Covered film(bytes);
  ASSERT_EQ(film.entries.size(), 60U);
  film.entries.erase(film.entries.begin() + 10, film.entries.begin() + 40);
  DisplacementCover cover = film.cover();
  // Chunks 51 to 55 are lost; those from 12 on, which no entry names, would do.
  const auto& candidates = film.planned.scanned.scan.candidates;
  const auto chance = static_cast<std::uint16_t>(cover.values.size());
  cover.values.push_back(static_cast<std::int64_t>(offsets[12]) - static_cast<std::int64_t>(offsets[51]));
  for (std::size_t entry = 51; entry < 56; ++entry) {
    ASSERT_EQ(cover.ofEntry[entry - 30], DisplacementCover::kNone);
    cover.ofEntry[entry - 30] = chance;
    std::uint64_t looks = 0;
    cover.isClaimed[candidates.firstAtOrAfter(offsets[entry - 39], 0, looks)] = 1;
  }
  film.dropFrom(cover);
  for (std::size_t entry = 51; entry < 56; ++entry)
    EXPECT_EQ(cover.ofEntry[entry - 30], DisplacementCover::kNone) << entry;
  for (const std::size_t entry : {49U, 50U, 56U, 59U}) EXPECT_NE(cover.ofEntry[entry - 30], DisplacementCover::kNone);
  const auto there =
      std::ranges::count_if(cover.ofEntry, [](auto number) { return number != DisplacementCover::kNone; });
  EXPECT_EQ(std::ranges::count(cover.isClaimed, 1), there);
}

TEST(LoneStretches, WhatLiesBetweenDoubledSpansStays) {
  const AviBuilder builder = pictures();
  const platform::Bytes whole = builder.build();
  const auto offsets = chunkOffsets(builder);
  platform::Bytes bytes;
  const auto append = [&](std::size_t from, std::size_t to) {
    bytes.insert(bytes.end(), whole.begin() + static_cast<std::ptrdiff_t>(from),
                 whole.begin() + static_cast<std::ptrdiff_t>(to));
  };
  append(0, offsets[22] + 100);
  append(offsets[20] + 50, offsets[36] + 100);
  append(offsets[32] + 50, whole.size());
  Covered film(bytes);
  DisplacementCover cover = film.cover();
  const std::vector<std::uint16_t> before = cover.ofEntry;
  EXPECT_LE(std::ranges::count(before, DisplacementCover::kNone), 2);
  film.dropFrom(cover);
  EXPECT_EQ(cover.ofEntry, before);
}

TEST(LoneStretches, WhatReallyMovedStays) {
  const AviBuilder builder = pictures();
  platform::Bytes bytes = builder.build();
  const auto offsets = chunkOffsets(builder);
  for (const std::size_t chunk : {40U, 20U}) {
    const auto from = bytes.begin() + static_cast<std::ptrdiff_t>(offsets[chunk] + 100);
    bytes.erase(from, from + 303);
  }
  Covered film(bytes);
  DisplacementCover cover = film.cover();
  const DisplacementCover before = cover;
  film.dropFrom(cover);
  EXPECT_EQ(cover.ofEntry, before.ofEntry);
  EXPECT_EQ(std::ranges::count(cover.ofEntry, DisplacementCover::kNone), 0);
}

}  // namespace
}  // namespace zelvo::tests
