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

TEST(KeptShare, IsWhatWasKeptOfTheFilm) {
  const FilmTally tally = tallyOf({{.position = 1000, .size = 92}, {.position = 1300, .size = 92}});
  EXPECT_DOUBLE_EQ(engine::keptShare(tally, {1000, 2000}, 0), 0.2);
  EXPECT_DOUBLE_EQ(engine::keptShare(tally, {1000, 2000}, 50), 0.15);
  EXPECT_DOUBLE_EQ(engine::keptShare(tally, {1000, 1100}, 0), 1.0);
  EXPECT_DOUBLE_EQ(engine::keptShare(tally, {1000, 1000}, 0), 0.0);
}

}  // namespace
}  // namespace zelvo::tests
