// What look-ahead finds, as bits, against a search byte by byte.
#include "engine/look_ahead_map.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <random>
#include <string>
#include <utility>

#include "tests/support/avi_builder.h"
#include "tests/support/byte_text.h"
#include "tests/support/memory_files.h"

namespace zelvo::tests {
namespace {

using engine::LookAheadFind;
constexpr std::size_t kPiece = engine::LookAheadMap::kPiece;
constexpr std::size_t kPositions = engine::LookAheadMap::kPositions;

/// Codes and what nearly is one, at random distances.
platform::Bytes manyCodes(std::size_t size, unsigned seed) {
  std::mt19937 random(seed);
  platform::Bytes bytes(size, std::byte{0x20});
  constexpr std::array<const char*, 9> kCodes{"00db", "00dc", "01wb", "JUNK", "01wc", "00wb", "01dc", "JUNL", "00dd"};
  for (std::size_t at = random() % 9; at + 4 <= size; at += 4 + random() % 40) {
    overwrite(bytes, at, kCodes[random() % kCodes.size()]);
  }
  return bytes;
}

class LookAheadMapTest : public testing::Test {
 protected:
  void open(platform::Bytes bytes) {
    content = &files.put("/in", std::move(bytes));
    input = std::make_unique<avi::InputFile>(files.openForReading("/in").file);
    map = std::make_unique<engine::LookAheadMap>(*input);
  }
  [[nodiscard]] LookAheadFind searched(std::size_t offset) const {
    const std::span<const std::byte> bytes(content->bytes);
    for (std::size_t at = offset; at <= offset + 2 && at + 4 <= bytes.size(); ++at) {
      if (bytes[at] != std::byte{'0'} && bytes[at] != std::byte{'J'}) continue;
      const std::string code = textAt(bytes, at, 4);
      if (code == "JUNK") return LookAheadFind::padding;
      if (code == "00db" || code == "00dc" || code == "01wb") return LookAheadFind::chunk;
    }
    return LookAheadFind::nothing;
  }
  /// How many of the places from `from` up to `to` are known; each must be what a search finds.
  std::size_t known(std::size_t from, std::size_t to) {
    std::size_t count = 0;
    for (std::size_t offset = from; offset < to; ++offset) {
      const auto found = map->at(offset);
      if (!found) continue;
      EXPECT_EQ(*found, searched(offset)) << offset;
      ++count;
      if (HasFailure()) break;
    }
    return count;
  }

  MemoryFiles files;
  MemoryFile* content = nullptr;
  std::unique_ptr<avi::InputFile> input;
  std::unique_ptr<engine::LookAheadMap> map;
};

TEST_F(LookAheadMapTest, KnowsNothingAtFirst) {
  open(manyCodes(10000, 1));
  EXPECT_EQ(known(0, 10000), 0U);
}

TEST_F(LookAheadMapTest, OnlyWhatIsCoveredHasAPlace) {
  open(manyCodes(5 * kPiece, 7));
  EXPECT_EQ(map->placeOf(0), nullptr) << "an input may prove dense where it cannot be read";
  map->cover(1024, 2 * kPiece);
  EXPECT_EQ(map->placeOf(1023), nullptr);
  EXPECT_NE(map->placeOf(1024), nullptr);
  EXPECT_EQ(map->placeOf(5 * kPiece), nullptr);
}

TEST_F(LookAheadMapTest, EachPlaceIsWhatASearchFinds) {
  open(manyCodes(5 * kPiece, 2));
  map->cover(1024, 3 * kPiece);
  EXPECT_EQ(known(0, 1024), 0U);
  EXPECT_EQ(known(1024, 3 * kPiece), 3 * kPiece - 1024);
}

TEST_F(LookAheadMapTest, ItMovesOnThroughMoreThanARound) {
  open(manyCodes(kPositions + 5 * kPiece, 3));
  for (std::size_t start = 0; start + 2 * kPiece < content->bytes.size(); start += 3 * kPiece) {
    map->cover(start, start + 2 * kPiece + 64);
    ASSERT_EQ(known(start, start + kPiece / 8), kPiece / 8) << start;
    ASSERT_EQ(known(start + 15 * kPiece / 8, start + 2 * kPiece), kPiece / 8) << start;
    ASSERT_EQ(known(start - std::min<std::size_t>(start, 4096), start), 0U) << start;
  }
}

TEST_F(LookAheadMapTest, MovingOnReadsNothingTwice) {
  open(manyCodes(20 * kPiece, 4));
  map->cover(0, 10 * kPiece);
  const std::uint64_t reads = content->reads;
  map->cover(kPiece, 10 * kPiece);
  EXPECT_EQ(content->reads, reads);
  map->cover(2 * kPiece, 11 * kPiece);
  EXPECT_EQ(content->reads, reads + 1);
  EXPECT_EQ(known(2 * kPiece, 11 * kPiece), 9 * kPiece);
}

TEST_F(LookAheadMapTest, BeginsAgainWhereTheStartGoesBackOrFarOn) {
  open(manyCodes(20 * kPiece, 5));
  map->cover(4 * kPiece, 6 * kPiece);
  map->cover(kPiece, 2 * kPiece);
  EXPECT_EQ(known(0, 20 * kPiece), kPiece);
  map->cover(15 * kPiece, 16 * kPiece);
  EXPECT_EQ(known(0, 20 * kPiece), kPiece);
}

TEST_F(LookAheadMapTest, EveryEndOfTheInputLeavesOnlyItsLastPlacesUnknown) {
  for (std::size_t size = 2 * kPiece - 70; size < 2 * kPiece + 140; size += 7) {
    open(manyCodes(size, static_cast<unsigned>(size)));
    map->cover(0, 4 * kPiece);
    EXPECT_GE(known(kPiece, size + 100), size - kPiece - 5 - 64) << size;
    EXPECT_EQ(known(size - 5, size + 100), 0U) << "these have no six bytes";
    EXPECT_FALSE(map->isBeyondInput(size - 1));
    EXPECT_TRUE(map->isBeyondInput(size));
  }
}

TEST_F(LookAheadMapTest, ShortInputsAreKnownOrLeftOut) {
  for (const std::size_t size : {0UL, 1UL, 5UL, 6UL, 63UL, 64UL, 68UL, 69UL, 70UL, 200UL}) {
    open(manyCodes(size, static_cast<unsigned>(size)));
    map->cover(0, kPiece);
    EXPECT_EQ(known(0, 300), size < 5 ? 0 : (size - 5) / 64 * 64) << size;
  }
}

TEST_F(LookAheadMapTest, APlaceThatCannotBeReadEndsWhatIsKnown) {
  open(manyCodes(5 * kPiece, 6));
  content->badReadStart = 2 * kPiece + 1000;
  content->badReadEnd = 2 * kPiece + 1001;
  content->readError = std::make_error_code(std::errc::io_error);
  map->cover(0, 4 * kPiece);
  EXPECT_GE(known(0, 5 * kPiece), 2 * kPiece + 1000 - 5 - 64);
  EXPECT_EQ(known(2 * kPiece + 1000 - 5, 5 * kPiece), 0U);
  EXPECT_FALSE(map->isBeyondInput(5 * kPiece)) << "the input may go on";
  EXPECT_EQ(input->failures().count, 0U);
  map->cover(3 * kPiece, 4 * kPiece);
  EXPECT_EQ(known(3 * kPiece, 4 * kPiece), kPiece);
}

}  // namespace
}  // namespace zelvo::tests
