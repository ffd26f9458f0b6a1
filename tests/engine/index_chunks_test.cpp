#include "engine/index_chunks.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "tests/support/byte_text.h"
#include "tests/support/memory_files.h"

namespace zelvo::tests {
namespace {

using avi::StagedOutput;
using engine::StandardIndex;

platform::Bytes written(const std::function<void(StagedOutput&)>& write) {
  MemoryFiles files;
  files.put("/out", {});
  const auto opened = files.openForWriting("/out");
  StagedOutput out(*opened.file);
  write(out);
  EXPECT_FALSE(out.finish());
  return files.content("/out");
}

/// A standard index over `sizes`, whose entry 0 stands for nothing.
platform::Bytes standardIndex(const std::vector<std::uint64_t>& sizes) {
  const std::uint64_t count = sizes.size() - 1;
  return written([&](StagedOutput& out) {
    engine::writeStandardIndex(out, {avi::kIx00, count * 8 + 24, avi::k00dc, 1000, sizes, count});
  });
}

std::vector<std::pair<std::uint32_t, std::uint32_t>> entriesOf(const platform::Bytes& index) {
  std::vector<std::pair<std::uint32_t, std::uint32_t>> entries;
  for (std::size_t at = 32; at < index.size(); at += 8) {
    entries.emplace_back(numberAt(index, at), numberAt(index, at + 4));
  }
  return entries;
}

using Entries = std::vector<std::pair<std::uint32_t, std::uint32_t>>;

TEST(StandardIndex, ChunksOf100And7And50BytesGiveTheirPayloadsPlaces) {
  EXPECT_EQ(entriesOf(standardIndex({0, 100, 7, 50})), (Entries{{8, 100}, {116, 7}, {131, 50}}));
}

TEST(StandardIndex, OddSizeMovesLaterOffsetsByItselfWithoutAPadByte) {
  EXPECT_EQ(entriesOf(standardIndex({0, 1, 1, 1, 2})), (Entries{{8, 1}, {17, 1}, {26, 1}, {35, 2}}));
}

TEST(StandardIndex, WithoutChunksIs32BytesWithASizeOf24) {
  const platform::Bytes index = standardIndex({0});
  EXPECT_EQ(index.size(), 32U);
  EXPECT_EQ(numberAt(index, 4), 24U);
  EXPECT_EQ(numberAt(index, 12), 0U);
}

TEST(StandardIndex, SizeOf2To31OrMoreIsWrittenAsItIs) {
  EXPECT_EQ(entriesOf(standardIndex({0, 0x80000000U, 0xffffffffU})),
            (Entries{{8, 0x80000000U}, {0x80000010U, 0xffffffffU}}));
}

TEST(StandardIndex, NoSmallerSizeCarriesBit31) {
  for (const auto& [offset, size] : entriesOf(standardIndex({0, 1, 9999999, 0x7fffffff}))) {
    EXPECT_EQ(size & 0x80000000U, 0U);
  }
}

TEST(StandardIndex, RunningOffsetIs64BitWideAndWrittenModulo2To32) {
  EXPECT_EQ(entriesOf(standardIndex({0, 0xf0000000U, 0x10000000U, 5})),
            (Entries{{8, 0xf0000000U}, {0xf0000010U, 0x10000000U}, {0x18, 5}}));
}

TEST(StandardIndex, SizeBefore8IsAddedWrapsAt32Bits) {
  // 0xfffffffc + 8 is 4 in 32 bits.
  EXPECT_EQ(entriesOf(standardIndex({0, 0xfffffffcU, 5})), (Entries{{8, 0xfffffffcU}, {12, 5}}));
}

TEST(StandardIndex, EntryZeroOfTheTableIsNotLookedAt) {
  EXPECT_EQ(entriesOf(standardIndex({999, 100, 7})), (Entries{{8, 100}, {116, 7}}));
}

TEST(StandardIndex, HeaderFieldsLieAtTheirOffsets) {
  const platform::Bytes index = standardIndex({0, 100});
  EXPECT_EQ(textAt(index, 0, 4), "ix00");
  EXPECT_EQ(numberAt(index, 4), 32U);
  EXPECT_EQ(hexAt(index, 8, 4), "02 00 00 01");
  EXPECT_EQ(numberAt(index, 12), 1U);
  EXPECT_EQ(textAt(index, 16, 4), "00dc");
  EXPECT_EQ(hexAt(index, 20, 8), "e8 03 00 00 00 00 00 00");
  EXPECT_EQ(numberAt(index, 28), 0U);
}

TEST(StandardIndex, BaseOffsetIsCutTo32Bits) {
  const platform::Bytes index = written([](StagedOutput& out) {
    engine::writeStandardIndex(out, {avi::kIx01, 24, avi::k01wb, 5000000000U, {}, 0});
  });
  EXPECT_EQ(numberAt(index, 20), 705032704U);
  EXPECT_EQ(numberAt(index, 24), 0U);
}

TEST(SuperIndex, Is52BytesWithADurationOf8Bytes) {
  const platform::Bytes index = written([](StagedOutput& out) {
    engine::writeSuperIndex(out, {44, avi::k00db, 0x01020304, 0x11121314, 0x21222324});
  });
  EXPECT_EQ(hexOf(index),
            "69 6e 64 78 2c 00 00 00 04 00 00 00 01 00 00 00 30 30 64 62 00 00 00 00 00 00 00 00 00 00 00 00 "
            "04 03 02 01 00 00 00 00 14 13 12 11 24 23 22 21 00 00 00 00");
}

TEST(SuperIndex, OffsetAndDurationAreCutTo32Bits) {
  const platform::Bytes index = written([](StagedOutput& out) {
    engine::writeSuperIndex(out, {44, avi::k01wb, 5000000000U, 5000000000U, 5000000000U});
  });
  EXPECT_EQ(hexAt(index, 32, 20), "00 f2 05 2a 00 00 00 00 00 f2 05 2a 00 f2 05 2a 00 00 00 00");
}

}  // namespace
}  // namespace zelvo::tests
