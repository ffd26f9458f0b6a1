// What the scan adds up, and where the film lies in the damaged file.
#include "engine/film_tally.h"

#include <gtest/gtest.h>

#include "avi/input_file.h"
#include "tests/support/avi_builder.h"
#include "tests/support/memory_files.h"

namespace zelvo::tests {
namespace {

using engine::FilmRange;
using engine::FilmTally;
using engine::FoundChunk;

FilmTally tallyOf(const std::vector<FoundChunk>& chunks) {
  FilmTally tally;
  for (const FoundChunk& chunk : chunks) tally.add(chunk);
  return tally;
}

TEST(FilmTally, AddsHeadersPayloadsAndPadBytes) {
  const FilmTally tally = tallyOf({{.position = 100, .size = 10}, {.position = 118, .size = 5, .isSound = true}});
  EXPECT_EQ(tally.pictures(), 1U);
  EXPECT_EQ(tally.soundChunks(), 1U);
  EXPECT_EQ(tally.soundBytes(), 5U);
  EXPECT_EQ(tally.kept(), 18U + 14U);
  EXPECT_EQ(tally.begin(), 100U);
  EXPECT_EQ(tally.end(), 132U);
}

TEST(FilmTally, ABytesOfAChunkWithinAnotherCountOnce) {
  const FilmTally tally =
      tallyOf({{.position = 0, .size = 100}, {.position = 20, .size = 10}, {.position = 100, .size = 20}});
  EXPECT_EQ(tally.kept(), 128U);
}

TEST(FilmTally, ABlankPictureIsNoneAndKeepsNothing) {
  const FilmTally tally = tallyOf({{.position = 0, .size = 100, .isBlank = true}, {.position = 108, .size = 10}});
  EXPECT_EQ(tally.pictures(), 1U);
  EXPECT_EQ(tally.blankPictures(), 1U);
  EXPECT_EQ(tally.kept(), 18U);
}

TEST(FilmTally, PaddingBetweenChunksIsNoPartOfTheFilm) {
  const FilmTally padded =
      tallyOf({{.position = 0, .size = 100, .isPaddedBehind = true}, {.position = 2048, .size = 10}});
  EXPECT_EQ(padded.padding(), 2048U - 108U);
  const FilmTally lost = tallyOf({{.position = 0, .size = 100}, {.position = 2048, .size = 10}});
  EXPECT_EQ(lost.padding(), 0U);
  const FilmTally hole =
      tallyOf({{.position = 0, .size = 100, .isPaddedBehind = true}, {.position = 70000, .size = 10}});
  EXPECT_EQ(hole.padding(), 0U);
}

TEST(FilmTally, PaddingOf65536BytesIsNoHole) {
  constexpr std::uint64_t kEnd = 108;
  EXPECT_EQ(tallyOf({{.position = 0, .size = 100, .isPaddedBehind = true}, {.position = kEnd + 65536}}).padding(),
            65536U);
  EXPECT_EQ(tallyOf({{.position = 0, .size = 100, .isPaddedBehind = true}, {.position = kEnd + 65537}}).padding(), 0U);
}

TEST(FilmTally, PaddingCountsBehindTheChunkThatHasIt) {
  const FilmTally tally = tallyOf({{.position = 0, .size = 100, .isPaddedBehind = true},
                                   {.position = 208, .size = 100},
                                   {.position = 416, .size = 100, .isPaddedBehind = true},
                                   {.position = 524, .size = 100, .isPaddedBehind = true},
                                   {.position = 640, .size = 100}});
  EXPECT_EQ(tally.padding(), 100U + 8);
}

TEST(FilmTally, SamePositionCountsOnce) {
  EXPECT_EQ(tallyOf({{.position = 50, .size = 100}, {.position = 50, .size = 100}}).pictures(), 1U);
}

TEST(FilmTally, BlankPictureMovesTheEndAlong) {
  const FilmTally tally = tallyOf({{.position = 0, .size = 100, .isBlank = true}, {.position = 50, .size = 100}});
  EXPECT_EQ(tally.begin(), 0U);
  EXPECT_EQ(tally.end(), 158U);
  EXPECT_EQ(tally.kept(), 50U);
}

TEST(FilmTally, PositionsThatBeginAgainAreLeftOut) {
  const FilmTally tally =
      tallyOf({{.position = 0, .size = 100}, {.position = 108, .size = 10}, {.position = 0, .size = 100}});
  EXPECT_EQ(tally.pictures(), 2U);
  EXPECT_EQ(tally.kept(), 126U);
}

class FilmRangeOf : public testing::Test {
 protected:
  FilmRange range(platform::Bytes bytes, const FilmTally& tally) {
    files.put("/in.avi", std::move(bytes));
    avi::InputFile input(files.openForReading("/in.avi").file);
    const FilmRange found = engine::filmRange(input, tally);
    failures = input.failures().count;
    return found;
  }
  /// A film of ten pictures, where its first one is, and where its index begins.
  static platform::Bytes film() { return AviBuilder().interleaved(10, 1000, 100).build(); }
  static std::uint64_t firstChunk() { return AviBuilder().interleaved(10, 1000, 100).headers().size() + 12; }
  static std::uint64_t index() { return firstChunk() + 10 * (1008 + 108); }
  static FilmTally allButTheLast() {
    FilmTally tally;
    tally.add({.position = firstChunk(), .size = 1000});
    tally.add({.position = index() - 108 - 1008, .size = 1000});
    return tally;
  }
  static void setMoviSize(platform::Bytes& bytes, std::uint32_t size) {
    for (unsigned i = 0; i < 4; ++i) bytes[firstChunk() - 8 + i] = static_cast<std::byte>(size >> (8 * i) & 0xffU);
  }

  MemoryFiles files;
  std::uint64_t failures = 0;
};

TEST_F(FilmRangeOf, AWholeListIsThatOfTheMoviList) {
  const FilmRange found = range(film(), allButTheLast());
  EXPECT_EQ(found.begin, firstChunk());
  EXPECT_EQ(found.end, index());
}

TEST_F(FilmRangeOf, AListWithoutASizeEndsAtTheIndexBehindWhatWasFound) {
  platform::Bytes bytes = film();
  setMoviSize(bytes, 0);
  EXPECT_EQ(range(std::move(bytes), allButTheLast()).end, index());
}

TEST_F(FilmRangeOf, AListWithAWildSizeEndsAtTheIndexBehindWhatWasFound) {
  platform::Bytes bytes = film();
  setMoviSize(bytes, 0xfffffff0);
  EXPECT_EQ(range(std::move(bytes), allButTheLast()).end, index());
}

TEST_F(FilmRangeOf, AListThatIsTooSmallForWhatWasFoundIsNotBelieved) {
  platform::Bytes bytes = film();
  setMoviSize(bytes, 100);
  EXPECT_EQ(range(std::move(bytes), allButTheLast()).end, index());
}

TEST_F(FilmRangeOf, StandardIndexesAreNoFilm) {
  AviBuilder indexed;
  indexed.chunks.push_back({"00dc", 1000});
  indexed.chunks.push_back({"ix00", 4000});
  indexed.chunks.push_back({"00dc", 1000});
  indexed.chunks.push_back({"ix01", 2000});
  indexed.chunks.push_back({"01wb", 101});
  FilmTally tally;
  const std::uint64_t begin = indexed.headers().size() + 12;
  tally.add({.position = begin, .size = 1000});
  const FilmRange found = range(indexed.build(), tally);
  EXPECT_EQ(found.begin, begin);
  EXPECT_EQ(found.end - found.begin, 2 * 1008U + 110U);
}

TEST_F(FilmRangeOf, ATruncatedFileEndsTheFilm) {
  platform::Bytes bytes = film();
  bytes.resize(index() - 500);
  EXPECT_EQ(range(std::move(bytes), allButTheLast()).end, index() - 500);
}

TEST_F(FilmRangeOf, WithoutHeadersItBeginsWithWhatWasFound) {
  platform::Bytes bytes = film();
  overwrite(bytes, 0, "XXXX");
  const FilmRange found = range(std::move(bytes), allButTheLast());
  EXPECT_EQ(found.begin, firstChunk());
  EXPECT_EQ(found.end, index());
}

TEST_F(FilmRangeOf, WithNothingFoundItIsStillTheList) {
  const FilmRange found = range(film(), FilmTally());
  EXPECT_EQ(found.begin, firstChunk());
  EXPECT_EQ(found.end, index());
}

TEST_F(FilmRangeOf, AnEmptyFileHasNone) {
  const FilmRange found = range({}, FilmTally());
  EXPECT_EQ(found.begin, 0U);
  EXPECT_EQ(found.end, 0U);
}

/// A form whose list begins after the headers of `before`, with `content`; `listSize` is what its size field says.
platform::Bytes formOf(const platform::Bytes& before, const platform::Bytes& content, std::uint32_t listSize) {
  platform::Bytes bytes;
  appendText(bytes, "RIFF");
  appendNumber(bytes, 0);
  appendText(bytes, "AVI ");
  bytes.insert(bytes.end(), before.begin(), before.end());
  appendText(bytes, "LIST");
  appendNumber(bytes, listSize);
  appendText(bytes, "movi");
  bytes.insert(bytes.end(), content.begin(), content.end());
  return bytes;
}

platform::Bytes chunksOf(const std::vector<AviChunk>& chunks) {
  platform::Bytes bytes;
  for (const AviChunk& chunk : chunks) appendChunk(bytes, chunk.code, chunk.size);
  return bytes;
}

/// A "rec " list of one chunk.
platform::Bytes record(std::string_view code, std::uint32_t size) {
  platform::Bytes bytes;
  appendText(bytes, "LIST");
  appendNumber(bytes, size + 12);
  appendText(bytes, "rec ");
  appendChunk(bytes, code, size);
  return bytes;
}

platform::Bytes operator+(platform::Bytes one, const platform::Bytes& other) {
  one.insert(one.end(), other.begin(), other.end());
  return one;
}

constexpr std::uint64_t kFormBegin = 24;  ///< of the list's content, without anything before the list

FilmTally oneChunkAt(std::uint64_t position, std::uint64_t size) {
  return tallyOf({{.position = position, .size = size}});
}

TEST_F(FilmRangeOf, ListIsLookedForBehind63OtherChunksAndNoMore) {
  const platform::Bytes content = chunksOf({{"00dc", 10}, {"00dc", 10}, {"idx1", 16}});
  const auto beginBehind = [&](std::size_t chunks) {
    const platform::Bytes before = chunksOf(std::vector<AviChunk>(chunks, {"JUNK", 3}));  // 12 bytes with its pad byte
    const std::uint64_t first = kFormBegin + before.size();
    return range(formOf(before, content, 4 + 36), oneChunkAt(first + 18, 10)).begin - before.size();
  };
  EXPECT_EQ(beginBehind(63), kFormBegin);
  EXPECT_EQ(beginBehind(64), kFormBegin + 18) << "it begins with what was found";
}

TEST_F(FilmRangeOf, FormOfAnotherTypeHasNoList) {
  platform::Bytes bytes = film();
  overwrite(bytes, 8, "AVIX");
  FilmTally tally;
  tally.add({.position = firstChunk() + 1116, .size = 1000});
  EXPECT_EQ(range(std::move(bytes), tally).begin, firstChunk() + 1116);
}

TEST_F(FilmRangeOf, WithNothingFoundAndNoListItBeginsWhereHeadersEnd) {
  const FilmRange found = range(platform::Bytes(60000), FilmTally());
  EXPECT_EQ(found.begin, 51200U);
  EXPECT_EQ(found.end, 60000U);
  EXPECT_EQ(range(platform::Bytes(51199), FilmTally()).begin, 51199U);
}

TEST_F(FilmRangeOf, ListThatEndsWithWhatWasFoundOrWithTheFileIsBelieved) {
  const platform::Bytes content = chunksOf({{"00dc", 10}, {"idx1", 16}});
  const platform::Bytes garbage(500, std::byte{0x20});
  EXPECT_EQ(range(formOf({}, chunksOf({{"00dc", 10}}) + garbage, 4 + 18), oneChunkAt(kFormBegin, 10)).end,
            kFormBegin + 18);
  EXPECT_EQ(range(formOf({}, content, 4 + 42), oneChunkAt(kFormBegin, 10)).end, kFormBegin + 42);
  EXPECT_EQ(range(formOf({}, content, 4 + 43), oneChunkAt(kFormBegin, 10)).end, kFormBegin + 18)
      << "one byte after the file's end";
}

TEST_F(FilmRangeOf, EmptyListIsNotBelieved) {
  const platform::Bytes garbage(500, std::byte{0x20});
  EXPECT_EQ(range(formOf({}, garbage, 4), FilmTally()).end, kFormBegin + 500);
  EXPECT_EQ(range(formOf({}, garbage, 5), FilmTally()).end, kFormBegin + 1);
}

TEST_F(FilmRangeOf, IndexIsLookedForBehindRecordsIndexesAndPadding) {
  const platform::Bytes behind =
      record("01wb", 7) + chunksOf({{"ix00", 4}, {"JUNK", 9}, {"07tx", 6}}) + chunksOf({{"idx1", 16}});
  const platform::Bytes content = chunksOf({{"00dc", 10}}) + behind;
  EXPECT_EQ(range(formOf({}, content, 0), oneChunkAt(kFormBegin, 10)).end, kFormBegin + content.size() - 24 - 12)
      << "less the bytes of the standard index";

  const platform::Bytes broken = chunksOf({{"00dc", 10}, {"wxyz", 6}, {"idx1", 16}});
  EXPECT_EQ(range(formOf({}, broken, 0), oneChunkAt(kFormBegin, 10)).end, kFormBegin + broken.size());
}

TEST_F(FilmRangeOf, IndexIsLookedForBehind63ChunksAndNoMore) {
  const auto endBehind = [&](std::size_t chunks) {
    const platform::Bytes content =
        chunksOf({{"00dc", 10}}) + chunksOf(std::vector<AviChunk>(chunks, {"01wb", 2})) + chunksOf({{"idx1", 16}});
    return kFormBegin + content.size() - range(formOf({}, content, 0), oneChunkAt(kFormBegin, 10)).end;
  };
  EXPECT_EQ(endBehind(63), 24U);
  EXPECT_EQ(endBehind(64), 0U);
}

TEST_F(FilmRangeOf, IndexWithoutAnythingIsOneAndLessIsNone) {
  platform::Bytes content = chunksOf({{"00dc", 10}, {"idx1", 0}});
  EXPECT_EQ(range(formOf({}, content, 0), oneChunkAt(kFormBegin, 10)).end, kFormBegin + 18);
  content.pop_back();
  EXPECT_EQ(range(formOf({}, content, 0), oneChunkAt(kFormBegin, 10)).end, kFormBegin + content.size());
}

TEST_F(FilmRangeOf, StandardIndexesAreCountedInRecordsUpToDamageAndToTheEnd) {
  const auto lessBy = [&](const platform::Bytes& content, std::size_t listSize) {
    const FilmRange found = range(formOf({}, content, static_cast<std::uint32_t>(4 + listSize)), FilmTally());
    return kFormBegin + listSize - found.end;
  };
  const platform::Bytes inRecord = record("ix01", 20) + chunksOf({{"ix00", 4}});
  EXPECT_EQ(lessBy(inRecord, inRecord.size()), 28U + 12);
  const platform::Bytes behindDamage = chunksOf({{"ix00", 4}, {"wxyz", 4}, {"ix00", 4}});
  EXPECT_EQ(lessBy(behindDamage, behindDamage.size()), 12U);
  const platform::Bytes across = chunksOf({{"ix00", 4}, {"ix00", 8}});
  EXPECT_EQ(lessBy(across, across.size()), 28U);
  EXPECT_EQ(lessBy(across, across.size() - 1), 12U);
}

TEST_F(FilmRangeOf, StandardIndexesAreCountedAmongTheFirst4096Chunks) {
  const auto lessBy = [&](std::size_t chunks) {
    const platform::Bytes content = chunksOf(std::vector<AviChunk>(chunks, {"00dc", 2})) + chunksOf({{"ix00", 4}});
    return kFormBegin + content.size() -
           range(formOf({}, content, static_cast<std::uint32_t>(4 + content.size())), FilmTally()).end;
  };
  EXPECT_EQ(lessBy(4095), 12U);
  EXPECT_EQ(lessBy(4096), 0U);
}

TEST_F(FilmRangeOf, ReadsThatFailAreNotRemembered) {
  files.put("/in.avi", film());
  MemoryFile& bad = files.at("/in.avi");
  bad.badReadStart = 0;
  bad.badReadEnd = 5;
  bad.readError = std::make_error_code(std::errc::io_error);
  avi::InputFile input(files.openForReading("/in.avi").file);

  FilmTally tally;
  tally.add({.position = firstChunk() + 1116, .size = 1000});
  EXPECT_EQ(engine::filmRange(input, tally).begin, firstChunk() + 1116);
  EXPECT_EQ(input.failures().count, 0U);
}

TEST_F(FilmRangeOf, HeaderRightBeforeAnUnreadableByteIsRead) {
  files.put("/in.avi", film());
  MemoryFile& bad = files.at("/in.avi");
  bad.badReadStart = firstChunk();
  bad.badReadEnd = firstChunk() + 1;
  bad.readError = std::make_error_code(std::errc::io_error);
  avi::InputFile input(files.openForReading("/in.avi").file);

  FilmTally tally;
  tally.add({.position = firstChunk() + 1116, .size = 1000});
  EXPECT_EQ(engine::filmRange(input, tally).begin, firstChunk());
}

TEST(KeptShare, IsWhatWasKeptOfTheFilm) {
  const FilmTally tally = tallyOf({{.position = 1000, .size = 92}, {.position = 1300, .size = 92}});
  EXPECT_DOUBLE_EQ(engine::keptShare(tally, {1000, 2000}, 0), 0.2);
  EXPECT_DOUBLE_EQ(engine::keptShare(tally, {1000, 2000}, 50), 0.15);
  EXPECT_DOUBLE_EQ(engine::keptShare(tally, {1000, 1100}, 0), 1.0);
  EXPECT_DOUBLE_EQ(engine::keptShare(tally, {1000, 1000}, 0), 0.0);
}

}  // namespace
}  // namespace zelvo::tests
