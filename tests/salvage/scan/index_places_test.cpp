// Indexes recognised by themselves.
#include "salvage/scan/index_places.h"

#include <gtest/gtest.h>

#include <string_view>

#include "tests/support/avi_builder.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using salvage::standardIndex;
using salvage::StreamCodes;
using salvage::TableWalk;

void appendEntry(Bytes& out, std::string_view code, std::uint32_t flags, std::uint32_t offset, std::uint32_t size) {
  appendText(out, code);
  appendNumber(out, flags);
  appendNumber(out, offset);
  appendNumber(out, size);
}

Bytes table(std::uint32_t count) {
  Bytes bytes;
  for (std::uint32_t i = 0; i < count; ++i) appendEntry(bytes, i % 2 == 0 ? "00dc" : "01wb", 0x10, 4 + i * 100, 92);
  return bytes;
}

/// How many entries from the front the walk takes the table to have.
std::uint64_t walked(const Bytes& bytes, std::uint64_t declaredEnd = 0) {
  TableWalk walk(0, declaredEnd);
  while (walk.next() + salvage::kTableEntry <= bytes.size() &&
         walk.take(std::span(bytes).subspan(static_cast<std::size_t>(walk.next())), StreamCodes())) {
  }
  return walk.end() / salvage::kTableEntry;
}

void damage(Bytes& bytes, std::size_t first, std::size_t count) {
  for (std::size_t i = 0; i < count * salvage::kTableEntry; ++i)
    bytes[first * salvage::kTableEntry + i] = std::byte{0xee};
}

TEST(IndexTable, BeginsWithThreeEntriesOfRisingOffsets) {
  EXPECT_TRUE(beginsTable(table(3), StreamCodes()));
  Bytes two = table(3);
  two.pop_back();
  EXPECT_FALSE(beginsTable(two, StreamCodes()));
  EXPECT_FALSE(beginsTable({}, StreamCodes()));
  Bytes level = table(2);
  appendEntry(level, "00dc", 0x10, 104, 92);
  EXPECT_FALSE(beginsTable(level, StreamCodes()));
}

TEST(IndexTable, ListsAreEntriesAndLargeFlagsAreNot) {
  Bytes bytes;
  appendEntry(bytes, "rec ", 1, 4, 92);
  appendEntry(bytes, "00dc", 0xffff, 16, 92);
  appendEntry(bytes, "03tx", 0, 17, 92);
  EXPECT_TRUE(beginsTable(bytes, StreamCodes()));
  bytes[16 + 6] = std::byte{1};
  EXPECT_FALSE(beginsTable(bytes, StreamCodes()));
}

TEST(IndexTable, ChainOfChunksOfEightBytesIsNoTable) {
  Bytes bytes;
  for (std::uint32_t i = 0; i < 3; ++i) appendEntry(bytes, "00dc", 8, i, i);
  EXPECT_FALSE(beginsTable(bytes, StreamCodes()));
}

TEST(IndexTable, ChainOfEmptyChunksIsNoTable) {
  Bytes bytes;
  for (int i = 0; i < 10; ++i) appendChunk(bytes, "00dc", 0);
  EXPECT_FALSE(beginsTable(bytes, StreamCodes()));
}

TEST(TableWalk, EndsBehindTheLastReadableEntry) {
  Bytes bytes = table(20);
  bytes.resize(bytes.size() + 100000, std::byte{0xee});
  EXPECT_EQ(walked(bytes), 20U);
}

TEST(TableWalk, UnreadableEntriesAreWalkedOver) {
  Bytes bytes = table(1000);
  damage(bytes, 300, 512);
  EXPECT_EQ(walked(bytes), 1000U);
  damage(bytes, 812, 1);
  EXPECT_EQ(walked(bytes), 300U);
}

TEST(TableWalk, FewReadableEntriesAllowFewUnreadableOnes) {
  Bytes bytes = table(200);
  damage(bytes, 3, 28);
  EXPECT_EQ(walked(bytes), 200U);
  damage(bytes, 31, 1);
  EXPECT_EQ(walked(bytes), 3U);
}

TEST(TableWalk, OneCodeBehindUnreadableEntriesIsAChunk) {
  Bytes bytes = table(50);
  damage(bytes, 40, 1);
  damage(bytes, 42, 8);
  EXPECT_EQ(walked(bytes), 40U);
}

TEST(TableWalk, NothingUnreadableIsWalkedOverBeyondTheDeclaredEnd) {
  Bytes bytes = table(60);
  damage(bytes, 20, 2);
  EXPECT_EQ(walked(bytes, 20 * 16), 20U);
  EXPECT_EQ(walked(bytes, 23 * 16), 60U);
  EXPECT_EQ(walked(table(60), 10 * 16), 60U);
}

Bytes standard(std::string_view code, std::uint32_t entries, std::uint32_t size, std::uint32_t shape = 0x01000002) {
  Bytes bytes;
  appendText(bytes, code);
  appendNumber(bytes, size);
  appendNumber(bytes, shape);
  appendNumber(bytes, entries);
  appendText(bytes, "01wb");
  appendNumber(bytes, 0x89abcdef);
  appendNumber(bytes, 0x12);
  appendNumber(bytes, 0);
  return bytes;
}

TEST(StandardIndex, ItsHeaderIsRead) {
  const auto index = standardIndex(standard("ix47", 10, 24 + 80), 1000);
  ASSERT_TRUE(index.has_value());
  EXPECT_EQ(index->offset, 1000U);
  EXPECT_EQ(index->stream, 47);
  EXPECT_EQ(index->entries, 10U);
  EXPECT_EQ(index->size, 104U);
  EXPECT_EQ(index->chunkId, avi::k01wb);
  EXPECT_EQ(index->baseOffset, 0x1289abcdefU);
  EXPECT_FALSE(index->isOfFields);
  EXPECT_EQ(index->end(), 1000U + 32 + 80);
}

TEST(StandardIndex, IndexOfFieldsHasThreeNumbersAnEntry) {
  const auto index = standardIndex(standard("ix00", 10, 24 + 120, 0x01010003), 0);
  ASSERT_TRUE(index.has_value());
  EXPECT_TRUE(index->isOfFields);
  EXPECT_EQ(index->end(), 32U + 120);
  EXPECT_FALSE(standardIndex(standard("ix00", 10, 24 + 119, 0x01010003), 0).has_value());
}

TEST(StandardIndex, ContradictionsMakeItNone) {
  EXPECT_TRUE(standardIndex(standard("ix00", 10, 24 + 80), 0).has_value());
  EXPECT_FALSE(standardIndex(standard("ix00", 10, 24 + 79), 0).has_value());
  EXPECT_FALSE(standardIndex(standard("ix00", 0xffffffff, 0xffffffff), 0).has_value());
  EXPECT_FALSE(standardIndex(standard("ix00", 10, 1000, 0x00000004), 0).has_value());
  EXPECT_FALSE(standardIndex(standard("ix00", 10, 1000, 0x01000003), 0).has_value());
  EXPECT_FALSE(standardIndex(standard("ix00", 10, 1000, 0x01010002), 0).has_value());
  EXPECT_FALSE(standardIndex(standard("00dc", 10, 1000), 0).has_value());
  Bytes cut = standard("ix00", 10, 24 + 80);
  cut.pop_back();
  EXPECT_FALSE(standardIndex(cut, 0).has_value());
}

}  // namespace
}  // namespace zelvo::tests
