// What the indexes of a film tell of it as it was.
#include "salvage/scan/index_template.h"

#include <gtest/gtest.h>

#include <string_view>

#include "tests/salvage/scanned_film.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using salvage::Belonging;
using salvage::IndexTemplate;
using Offsets = std::vector<std::uint64_t>;

AviBuilder indexedFilm(int pairs = 40) {
  AviBuilder builder;
  for (int i = 0; i < pairs; ++i) {
    builder.chunks.push_back({"00dc", 1000 + static_cast<std::uint32_t>(i) * 2});
    builder.chunks.push_back({"01wb", 101});
  }
  return builder;
}

std::size_t tableOf(const AviBuilder& film) {
  return static_cast<std::size_t>(chunkOffsets(film).back()) + 8 + 102 + 8;
}

IndexTemplate planOf(ScannedFilm& scanned, std::size_t most = salvage::kMaxTemplateEntries) {
  scanned.run();
  return salvage::indexTemplate(*scanned.input, scanned.headers, scanned.codes, scanned.scan, most);
}

IndexTemplate planOf(Bytes bytes) {
  ScannedFilm scanned(std::move(bytes));
  return planOf(scanned);
}

Offsets offsetsOf(const IndexTemplate& plan) {
  Offsets offsets;
  for (const auto& entry : plan.entries) offsets.push_back(entry.offset);
  return offsets;
}

Offsets without(Offsets offsets, std::size_t number) {
  offsets.erase(offsets.begin() + static_cast<std::ptrdiff_t>(number));
  return offsets;
}

/// Adds `by` to the offset of each entry of a film's index.
void moveEntries(Bytes& bytes, const AviBuilder& film, std::uint32_t by) {
  for (std::size_t i = 0; i < film.chunks.size(); ++i) {
    const std::size_t at = tableOf(film) + i * 16 + 8;
    overwriteNumber(bytes, at, avi::loadLittleEndian32(std::span(bytes).subspan(at).first<4>()) + by);
  }
}

void appendStandard(Bytes& out, std::string_view code, std::string_view chunk, std::uint64_t base,
                    const std::vector<std::pair<std::uint32_t, std::uint32_t>>& entries) {
  appendText(out, code);
  appendNumber(out, 24 + static_cast<std::uint32_t>(entries.size()) * 8);
  appendNumber(out, 0x01000002);
  appendNumber(out, static_cast<std::uint32_t>(entries.size()));
  appendText(out, chunk);
  appendNumber(out, static_cast<std::uint32_t>(base));
  appendNumber(out, static_cast<std::uint32_t>(base >> 32U));
  appendNumber(out, 0);
  for (const auto& [offset, size] : entries) {
    appendNumber(out, offset);
    appendNumber(out, size);
  }
}

TEST(IndexTemplate, OldIndexGivesEveryChunkByItsOffsetInTheFile) {
  const IndexTemplate plan = planOf(indexedFilm().build());
  EXPECT_EQ(offsetsOf(plan), chunkOffsets(indexedFilm()));
  EXPECT_EQ(plan.entries[4].size, 1004U);
  EXPECT_EQ(plan.entries[4].stream, 0);
  EXPECT_EQ(plan.entries[5].stream, 1);
  EXPECT_TRUE(plan.entries[4].isKey);
  EXPECT_FALSE(plan.entries[4].isForeign);
  EXPECT_EQ(plan.tableBase, static_cast<std::int64_t>(indexedFilm().headers().size()) + 8);
  ASSERT_EQ(plan.tables.size(), 1U);
  EXPECT_EQ(plan.tables[0].entries, 80U);
}

TEST(IndexTemplate, OffsetsFromTheBeginningOfTheFileAreTakenAsTheyAre) {
  Bytes bytes = indexedFilm().build();
  moveEntries(bytes, indexedFilm(), static_cast<std::uint32_t>(indexedFilm().headers().size()) + 8);
  const IndexTemplate plan = planOf(bytes);
  EXPECT_EQ(plan.tableBase, 0);
  EXPECT_EQ(offsetsOf(plan), chunkOffsets(indexedFilm()));
}

TEST(IndexTemplate, OffsetsThatPointFourOrEightBytesAsideAreVotedRight) {
  for (const std::uint32_t aside : {4U, 8U, 0xfffffffcU}) {
    Bytes bytes = indexedFilm().build();
    moveEntries(bytes, indexedFilm(), aside);
    EXPECT_EQ(offsetsOf(planOf(bytes)), chunkOffsets(indexedFilm())) << aside;
  }
}

TEST(IndexTemplate, BytesInsertedBehindTheFirstChunkDoNotMoveTheBase) {
  Bytes bytes = indexedFilm().build();
  bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(chunkOffsets(indexedFilm())[1] - 50), 333, std::byte{0xaa});
  EXPECT_EQ(offsetsOf(planOf(bytes)), chunkOffsets(indexedFilm()));
}

TEST(IndexTemplate, LostMediaListIsVotedFor) {
  Bytes bytes = indexedFilm().build();
  overwrite(bytes, indexedFilm().headers().size(), "abcd");
  EXPECT_EQ(offsetsOf(planOf(bytes)), chunkOffsets(indexedFilm()));
}

TEST(IndexTemplate, FrontGoneKeepsTheEntriesThatWereInFront) {
  Bytes bytes = indexedFilm().build();
  const std::uint64_t cut = chunkOffsets(indexedFilm())[20];
  bytes.erase(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(cut));
  const IndexTemplate plan = planOf(bytes);
  ASSERT_EQ(plan.entries.size(), 80U);
  EXPECT_EQ(plan.leftOut, 0U);
  for (std::size_t i = 1; i < 80; ++i) {
    EXPECT_EQ(plan.entries[i].offset - plan.entries[0].offset,
              chunkOffsets(indexedFilm())[i] - chunkOffsets(indexedFilm())[0]);
  }
}

TEST(IndexTemplate, KeyFlagIsThatOfEachEntry) {
  Bytes bytes = indexedFilm().build();
  overwriteNumber(bytes, tableOf(indexedFilm()) + 16 * 7 + 4, 0);
  const IndexTemplate plan = planOf(bytes);
  EXPECT_FALSE(plan.entries[7].isKey);
  EXPECT_TRUE(plan.entries[8].isKey);
}

TEST(IndexTemplate, UnreadableEntriesAreMissing) {
  Bytes bytes = indexedFilm().build();
  overwrite(bytes, tableOf(indexedFilm()) + 16 * 7, "????");
  const IndexTemplate plan = planOf(bytes);
  EXPECT_EQ(offsetsOf(plan), without(chunkOffsets(indexedFilm()), 7));
}

TEST(IndexTemplate, EntriesOfListsAreNoChunks) {
  Bytes bytes = indexedFilm().build();
  overwrite(bytes, tableOf(indexedFilm()) + 16 * 7, "rec ");
  EXPECT_EQ(offsetsOf(planOf(bytes)), without(chunkOffsets(indexedFilm()), 7));
}

TEST(IndexTemplate, WildSizeCostsThatEntryAlone) {
  for (const bool displaced : {false, true}) {
    Bytes bytes = indexedFilm().build();
    overwriteNumber(bytes, tableOf(indexedFilm()) + 16 * 10 + 12, 0xfffffff0);
    if (displaced)
      bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(chunkOffsets(indexedFilm())[0]), 100, std::byte{1});
    const IndexTemplate plan = planOf(bytes);
    EXPECT_EQ(offsetsOf(plan), without(chunkOffsets(indexedFilm()), 10));
    EXPECT_EQ(plan.overlapping, 1U);
  }
}

TEST(IndexTemplate, OfTwoThatOverlapTheOneWhoseHeaderIsThereStays) {
  Bytes bytes = indexedFilm().build();
  // The entry of chunk 10 points into chunk 8 and ends before it does.
  const auto movi = indexedFilm().headers().size() + 8;
  overwriteNumber(bytes, tableOf(indexedFilm()) + 16 * 10 + 8,
                  static_cast<std::uint32_t>(chunkOffsets(indexedFilm())[8] + 20 - movi));
  overwriteNumber(bytes, tableOf(indexedFilm()) + 16 * 10 + 12, 30);
  const IndexTemplate plan = planOf(bytes);
  EXPECT_EQ(offsetsOf(plan), without(chunkOffsets(indexedFilm()), 10));
}

TEST(IndexTemplate, StandardIndexesAddTheirChunks) {
  AviBuilder builder = indexedFilm();
  builder.withIndex = false;
  Bytes bytes = builder.build();
  const Offsets whole = chunkOffsets(builder);
  appendStandard(bytes, "ix00", "00dc", whole[0],
                 {{8, 1000}, {static_cast<std::uint32_t>(whole[2] - whole[0]) + 8, 0x80000000 | 1002}});
  appendStandard(bytes, "ix01", "01wb", std::uint64_t{7} << 32U, {{500, 77}});
  const IndexTemplate plan = planOf(bytes);
  EXPECT_EQ(offsetsOf(plan), (Offsets{whole[0], whole[2], (std::uint64_t{7} << 32U) + 492}));
  EXPECT_TRUE(plan.entries[0].isKey);
  EXPECT_FALSE(plan.entries[1].isKey);
  EXPECT_EQ(plan.entries[1].size, 1002U);
  EXPECT_EQ(plan.entries[2].stream, 1);
  ASSERT_EQ(plan.standard.size(), 2U);
  EXPECT_EQ(plan.standard[0].belonging, Belonging::unknown);
}

TEST(IndexTemplate, ChunkThatTwoIndexesNameIsOneEntry) {
  Bytes bytes = indexedFilm().build();
  const Offsets whole = chunkOffsets(indexedFilm());
  appendStandard(bytes, "ix00", "00dc", whole[0], {{8, 1000}});
  const IndexTemplate plan = planOf(bytes);
  EXPECT_EQ(offsetsOf(plan), whole);
  EXPECT_EQ(plan.repeated, 1U);
}

TEST(IndexTemplate, PicturesOfTheHeaderOrExtentOfTheMediaMakeItBelong) {
  const auto belonging = [](std::uint32_t frames, std::uint32_t length, std::uint32_t moviSize) {
    Bytes bytes = indexedFilm().build();
    overwriteNumber(bytes, 24 + 8 + 16, frames);       // dwTotalFrames
    overwriteNumber(bytes, 88 + 12 + 8 + 32, length);  // dwLength of the pictures
    overwriteNumber(bytes, indexedFilm().headers().size() + 4, moviSize);
    const IndexTemplate plan = planOf(bytes);
    EXPECT_EQ(plan.entries.at(3).isForeign, plan.tables.at(0).belonging == Belonging::foreign);
    return plan.tables.at(0).belonging;
  };
  const auto extent = static_cast<std::uint32_t>(tableOf(indexedFilm()) - 8 - indexedFilm().headers().size() - 8);
  EXPECT_EQ(belonging(40, 0, 0), Belonging::belongs);
  EXPECT_EQ(belonging(41, 0, 0), Belonging::belongs);
  EXPECT_EQ(belonging(39, 0, 0), Belonging::belongs);
  EXPECT_EQ(belonging(42, 0, 0), Belonging::foreign);
  EXPECT_EQ(belonging(38, 0, 0), Belonging::foreign);
  EXPECT_EQ(belonging(500, 40, 0), Belonging::belongs);
  EXPECT_EQ(belonging(500, 600, 0), Belonging::foreign);
  EXPECT_EQ(belonging(500, 600, extent), Belonging::belongs);
  EXPECT_EQ(belonging(0, 0, extent + 60), Belonging::belongs);
  EXPECT_EQ(belonging(0, 0, extent + 70), Belonging::foreign);
  EXPECT_EQ(belonging(0, 0, extent - 60), Belonging::belongs);
  EXPECT_EQ(belonging(0, 0, extent - 70), Belonging::foreign);
  EXPECT_EQ(belonging(0, 0, 0), Belonging::unknown);
}

TEST(IndexTemplate, IndexThatTheEndOfTheFileCutsShortIsTheFilmsOwn) {
  const auto belonging = [](std::uint32_t frames, std::uint32_t moviSize, std::uint32_t claimed) {
    Bytes bytes = indexedFilm().build();
    overwriteNumber(bytes, 24 + 8 + 16, frames);
    overwriteNumber(bytes, 88 + 12 + 8 + 32, 0);
    overwriteNumber(bytes, indexedFilm().headers().size() + 4, moviSize);
    overwriteNumber(bytes, tableOf(indexedFilm()) - 4, claimed);
    bytes.resize(tableOf(indexedFilm()) + 16 * 31 + 5);
    return planOf(bytes).tables.at(0).belonging;
  };
  const auto extent = static_cast<std::uint32_t>(tableOf(indexedFilm()) - 8 - indexedFilm().headers().size() - 8);
  EXPECT_EQ(belonging(40, 0, 16 * 80), Belonging::belongs);
  EXPECT_EQ(belonging(40, extent, 16 * 80), Belonging::belongs);
  EXPECT_EQ(belonging(0, extent, 16 * 80), Belonging::unknown);  // it may be
  EXPECT_EQ(belonging(0, extent, 16 * 31), Belonging::foreign);  // nothing of it is missing
  EXPECT_EQ(belonging(40, 0, 16 * 31), Belonging::foreign);
  EXPECT_EQ(belonging(400, 0, 16 * 80), Belonging::foreign);  // more pictures than it ever had
  EXPECT_EQ(belonging(9, 0, 16 * 80), Belonging::foreign);    // fewer than it still has
}

TEST(IndexTemplate, DamagedPartsOfOneIndexAreJudgedTogether) {
  Bytes bytes = indexedFilm().build();
  overwriteNumber(bytes, 24 + 8 + 16, 40);
  overwriteNumber(bytes, 88 + 12 + 8 + 32, 0);
  overwriteNumber(bytes, indexedFilm().headers().size() + 4, 0);
  bytes.erase(bytes.begin() + static_cast<std::ptrdiff_t>(tableOf(indexedFilm()) + 16 * 31 + 5));
  const IndexTemplate plan = planOf(bytes);
  ASSERT_EQ(plan.tables.size(), 2U);
  EXPECT_EQ(plan.tables[0].belonging, Belonging::belongs);
  EXPECT_EQ(plan.tables[1].belonging, Belonging::belongs);
  EXPECT_EQ(offsetsOf(plan), without(chunkOffsets(indexedFilm()), 31));
}

/// A film of 2,000 chunks of whose index a stretch in the middle is overwritten, far more than is passed over.
Bytes filmWithAHoleInItsIndex(std::uint32_t frames, bool hasIndexHeader) {
  const AviBuilder film = indexedFilm(1000);
  Bytes bytes = film.build();
  overwriteNumber(bytes, 24 + 8 + 16, frames);
  overwriteNumber(bytes, 88 + 12 + 8 + 32, 0);
  overwriteNumber(bytes, film.headers().size() + 4, 0);
  for (std::size_t at = tableOf(film) + std::size_t{16} * 49; at < tableOf(film) + std::size_t{16} * 300; ++at)
    bytes[at] = static_cast<std::byte>(0x80U | (at * 37 & 0x7fU));
  if (!hasIndexHeader) overwriteNumber(bytes, tableOf(film) - 8, 0xf1f2f3f4);
  return bytes;
}

TEST(IndexTemplate, ALongHoleInAnIndexMakesItNotAnothers) {
  for (const bool hasIndexHeader : {true, false}) {
    const auto belonging = [&](std::uint32_t frames) {
      const IndexTemplate plan = planOf(filmWithAHoleInItsIndex(frames, hasIndexHeader));
      EXPECT_EQ(plan.tables.size(), 2U);
      EXPECT_EQ(plan.tables.front().belonging, plan.tables.back().belonging);
      return plan.tables.back().belonging;
    };
    EXPECT_EQ(belonging(1000), Belonging::belongs) << hasIndexHeader;
    EXPECT_EQ(belonging(1200), Belonging::foreign) << hasIndexHeader;
    EXPECT_EQ(belonging(800), Belonging::foreign) << hasIndexHeader;
  }
}

TEST(IndexTemplate, IndexWhoseFrontIsGoneKeepsItsBase) {
  const AviBuilder film = indexedFilm(1000);
  Bytes bytes = film.build();
  for (std::size_t at = tableOf(film) - 8; at < tableOf(film) + std::size_t{16} * 300; ++at)
    bytes[at] = static_cast<std::byte>(0x80U | (at * 37 & 0x7fU));
  const IndexTemplate plan = planOf(bytes);
  ASSERT_EQ(plan.tables.size(), 1U);
  EXPECT_EQ(plan.tables[0].belonging, Belonging::belongs);
  Offsets offsets = chunkOffsets(film);
  offsets.erase(offsets.begin(), offsets.begin() + 300);
  EXPECT_EQ(offsetsOf(plan), offsets);
}

TEST(IndexTemplate, StandardIndexBelongsWhenTheSuperIndexKnowsItsSize) {
  for (const std::uint32_t named : {32U, 40U, 33U}) {
    ScannedFilm scanned(indexedFilm().build());
    Bytes bytes = indexedFilm().build();
    appendStandard(bytes, "ix00", "00dc", chunkOffsets(indexedFilm())[0], {{8, 1000}});
    scanned.file().bytes = bytes;
    scanned.file().size = bytes.size();
    scanned.run();
    scanned.headers.streams.at(0).superIndex.emplace().entries.push_back({0, named, 0});
    const auto plan = salvage::indexTemplate(*scanned.input, scanned.headers, scanned.codes, scanned.scan);
    EXPECT_EQ(plan.standard.at(0).belonging, named == 33 ? Belonging::foreign : Belonging::belongs);
    // The old index names it as well, and belongs.
    EXPECT_FALSE(plan.entries[0].isForeign);
  }
}

TEST(IndexTemplate, StandardIndexOfTheSameSizeIsForeignNextToChunksThatWereElsewhere) {
  AviBuilder builder = indexedFilm();
  builder.withIndex = false;
  const Offsets whole = chunkOffsets(builder);
  std::vector<std::pair<std::uint32_t, std::uint32_t>> entries;
  for (std::size_t i = 0; i < whole.size(); i += 2)
    entries.emplace_back(static_cast<std::uint32_t>(whole[i]) + 8, builder.chunks[i].size);
  Bytes bytes = builder.build();
  const std::uint64_t place = bytes.size();
  appendStandard(bytes, "ix00", "00dc", 0, entries);
  // In front of it, its last chunks stand or are gone.
  for (const std::uint64_t moved : {0U, 4000U}) {
    for (const bool isDamaged : {false, true}) {
      Bytes made = bytes;
      if (isDamaged)
        std::fill(made.begin() + static_cast<std::ptrdiff_t>(whole[60]),
                  made.begin() + static_cast<std::ptrdiff_t>(place), std::byte{0});
      ScannedFilm scanned(made);
      scanned.run();
      scanned.headers.streams.at(0).superIndex.emplace().entries.push_back(
          {place + moved, 32 + 8 * static_cast<std::uint32_t>(entries.size()), 0});
      const auto plan = salvage::indexTemplate(*scanned.input, scanned.headers, scanned.codes, scanned.scan);
      ASSERT_EQ(plan.standard.size(), 1U);
      EXPECT_EQ(plan.standard[0].belonging, moved == 0 || isDamaged ? Belonging::belongs : Belonging::foreign);
    }
  }
}

TEST(IndexTemplate, OldIndexBeyondFourGibibytesGoesOnCounting) {
  constexpr std::uint64_t kTable = std::uint64_t{5} << 30U;
  ScannedFilm scanned(Bytes{});
  Bytes table;
  Offsets expected;
  for (std::uint64_t i = 0; i < 20; ++i) {
    const std::uint64_t offset = 0xf0000000 + i * 0x1000000;
    appendText(table, "00dc");
    appendNumber(table, 0x10);
    appendNumber(table, static_cast<std::uint32_t>(offset));
    appendNumber(table, 100);
    expected.push_back(offset + 8);
  }
  scanned.file().size = kTable + table.size();
  scanned.file().islands[kTable] = table;
  scanned.headers.media = salvage::MediaList{0, 0};
  scanned.scan.tables.push_back({kTable, kTable + table.size(), std::nullopt});
  const auto plan = salvage::indexTemplate(*scanned.input, scanned.headers, scanned.codes, scanned.scan);
  for (std::uint64_t& offset : expected) offset -= 8;  // 0xf0000000 lies after the code "movi"
  EXPECT_EQ(offsetsOf(plan), expected);
}

TEST(IndexTemplate, NoIndexMakesNoTemplate) {
  AviBuilder builder = indexedFilm();
  builder.withIndex = false;
  const IndexTemplate plan = planOf(builder.build());
  EXPECT_TRUE(plan.entries.empty());
  EXPECT_TRUE(plan.tables.empty());
}

TEST(IndexTemplate, HostileNumberOfEntriesFindsOnlySoMuchRoom) {
  ScannedFilm scanned(indexedFilm().build());
  const IndexTemplate plan = planOf(scanned, 30);
  EXPECT_EQ(plan.entries.size(), 30U);
  EXPECT_EQ(plan.leftOut, 50U);
}

TEST(IndexTemplate, HostileMillionEntriesToOnePlaceBecomeOne) {
  Bytes bytes = indexedFilm().headers();
  appendText(bytes, "LIST");
  appendNumber(bytes, 0);
  appendText(bytes, "movi");
  std::vector<std::pair<std::uint32_t, std::uint32_t>> entries(1000000, {8, 100});
  for (std::size_t i = 0; i < entries.size(); i += 2) entries[i].second = static_cast<std::uint32_t>(i);
  appendStandard(bytes, "ix00", "00dc", 5000, entries);
  ScannedFilm scanned(std::move(bytes));
  std::uint64_t read = 0;
  scanned.run();
  scanned.file().onRead = [&](std::uint64_t, std::size_t size) { read += size; };
  const auto plan = salvage::indexTemplate(*scanned.input, scanned.headers, scanned.codes, scanned.scan);
  EXPECT_EQ(plan.entries.size(), 1U);
  EXPECT_EQ(plan.repeated + plan.overlapping + plan.leftOut, 999999U);
  EXPECT_LT(read, 9000000U);
}

TEST(IndexTemplate, EntriesThatCannotBeReadAreMissing) {
  ScannedFilm scanned(indexedFilm(3000).build());
  scanned.run();
  scanned.file().badReadStart = tableOf(indexedFilm(3000)) + 10000;
  scanned.file().badReadEnd = tableOf(indexedFilm(3000)) + 10001;
  scanned.file().readError = std::make_error_code(std::errc::io_error);
  const auto plan = salvage::indexTemplate(*scanned.input, scanned.headers, scanned.codes, scanned.scan);
  EXPECT_GE(plan.entries.size(), 6000U - 4096 / 16 - 2);
  EXPECT_LT(plan.entries.size(), 6000U);
  EXPECT_EQ(plan.overlapping, 0U);
}

}  // namespace
}  // namespace zelvo::tests
