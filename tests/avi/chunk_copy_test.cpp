#include "avi/chunk_copy.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "avi/chunk_pass.h"
#include "tests/avi/chunk_copy_bench.h"

namespace zelvo::tests {
namespace {

TEST_F(ChunkCopy, WithoutChunksCopiesNothing) { EXPECT_TRUE(copy({}).empty()); }

TEST_F(ChunkCopy, NeighboursWithoutGaps) { expectLiteral(row(500, 1000, 0)); }
TEST_F(ChunkCopy, SmallGaps) { expectLiteral(row(300, 1000, 500)); }
TEST_F(ChunkCopy, GapsOf8192BytesAndOneMore) {
  expectLiteral(row(100, 1000, 8192));
  expectLiteral(row(100, 1000, 8193));
}
TEST_F(ChunkCopy, LargeGaps) { expectLiteral(row(20, 1000, 100000)); }
TEST_F(ChunkCopy, ChunksAroundTheLimitBetweenSmallAndLarge) {
  for (const std::uint64_t whole : {16383U, 16384U, 16385U, 65535U, 65536U, 65537U})
    expectLiteral(row(10, whole - 8, 10));
}
TEST_F(ChunkCopy, ChunksLargerThanTheStagingBuffers) { expectLiteral(row(3, 900000, 1)); }
TEST_F(ChunkCopy, SmallChunksReadTogetherCostFarFewerReadsThanChunks) {
  copy(row(1000, 1000, 100));
  EXPECT_LT(content.reads, 50U);
}

TEST_F(ChunkCopy, OverlappingChunks) { expectLiteral({{100, 5000}, {200, 100}, {300, 9000}, {300, 9000}, {9000, 1}}); }
TEST_F(ChunkCopy, ChunksInFallingOrder) { expectLiteral({{9000, 100}, {5000, 100}, {100, 100}, {200, 100}}); }
TEST_F(ChunkCopy, ChunkThatRunsPastTheEnd) { expectLiteral({{2999000, 500}, {2999600, 5000}, {2999990, 100}}); }
TEST_F(ChunkCopy, ChunkBehindTheEndIsEmpty) {
  expectLiteral({{2999000, 100}, {3000000, 100}, {9000000, 100}, {5, 10}});
}

TEST_F(ChunkCopy, ChunkWithABadByteIsCutThereAndOthersAreWhole) {
  withBadBytes(5500, 5501);
  expectLiteral(row(10, 1000, 10));
  EXPECT_EQ(input->failures().count, literalFailures.count);
  EXPECT_EQ(input->failures().firstOffset, literalFailures.firstOffset);
}

TEST_F(ChunkCopy, BadByteInAGapCostsNothing) {
  withBadBytes(100 + 1008 + 5, 100 + 1008 + 6);
  expectLiteral(row(10, 1000, 50));
  EXPECT_EQ(input->failures().count, 0U);
}

TEST_F(ChunkCopy, LargeChunkWithABadByteIsCutThere) {
  withBadBytes(700000, 700001);
  expectLiteral({{100, 1000000}, {1500000, 1000}});
  EXPECT_EQ(input->failures().count, 1U);
  EXPECT_EQ(input->failures().firstOffset, 700000U);
}

TEST_F(ChunkCopy, RandomChunksOfEveryKindEqualOneReadPerChunk) {
  std::mt19937 random(5);
  for (int round = 0; round < 60; ++round) {
    content.badReadStart = random() % 3000000;
    content.badReadEnd = content.badReadStart + random() % 3;  // sometimes none
    content.readError = std::make_error_code(std::errc::io_error);
    std::vector<Chunk> chunks;
    std::uint64_t offset = random() % 100000;
    const std::uint64_t largest = round % 3 == 0 ? 200000 : 3000;
    for (int i = 0; i < 60; ++i) {
      const std::uint64_t size = 1 + random() % largest;
      chunks.push_back({offset, size});
      const auto next =
          static_cast<std::int64_t>(offset + size + 8) + static_cast<std::int64_t>(random() % 12000) - 2000;
      offset = static_cast<std::uint64_t>(std::max<std::int64_t>(0, next));
      if (random() % 20 == 0) offset = random() % 3100000;
    }
    ASSERT_EQ(copy(chunks), literalCopy(chunks)) << "round " << round;
    ASSERT_EQ(input->failures().count, literalFailures.count) << "round " << round;
  }
}

TEST_F(ChunkCopy, ContinuesBehindAnyPosition) {
  const std::vector<Chunk> chunks = row(40, 30000, 100);
  for (const std::uint64_t position : {1U, 494U, 262143U, 262144U, 262145U, 700001U}) {
    ASSERT_EQ(copy(chunks, position), literalCopy(chunks)) << position;
    EXPECT_EQ(output.bytes.front(), std::byte{0x2e});
  }
}

TEST_F(ChunkCopy, OnOneProcessorIsTheSame) {
  workers.setProcessors(1);
  expectLiteral(row(300, 5000, 500));
  withBadBytes(700000, 700001);
  expectLiteral(row(300, 5000, 500));
}

TEST_F(ChunkCopy, EndsWithTheReadUnderWayOnceItIsAbandoned) {
  workers.setProcessors(1);
  content.onRead = [this](std::uint64_t offset, std::size_t size) {
    if (offset + size > 1200000) cancel.abandon();
  };
  const std::vector<Chunk> chunks = row(290, 10000, 0);
  const platform::Bytes copied = copy(chunks);

  // Nothing that is there is wrong, and no further read was begun.
  EXPECT_GE(copied.size(), avi::Segment::kSize);
  EXPECT_LE(copied.size(), 1200000 + avi::Batch::kSize);
  const platform::Bytes whole = literalCopy(chunks);
  EXPECT_TRUE(std::equal(copied.begin(), copied.end(), whole.begin()));
}

TEST_F(ChunkCopy, EndsWithTheReadsOfBothThreadsOnceItIsAbandoned) {
  content.onRead = [this](std::uint64_t offset, std::size_t size) {
    if (offset + size > 500000) cancel.abandon();
  };
  EXPECT_LE(copy(row(290, 10000, 0)).size(), 500000 + 2 * avi::Batch::kSize);
}

TEST_F(ChunkCopy, AbandonedFromTheStartCopiesNothing) {
  cancel.abandon();
  EXPECT_TRUE(copy(row(10, 1000, 0)).empty());
}

TEST_F(ChunkCopy, WriteFailureIsAnsweredWithItsFirstPlace) {
  output.badWriteFrom = 1000000;
  output.writeError = std::make_error_code(std::errc::no_space_on_device);
  copy(row(290, 10000, 0));
  ASSERT_TRUE(end.failure.has_value());
  EXPECT_EQ(end.failure->offset, 1000000U);
  EXPECT_EQ(end.failure->cause, std::errc::no_space_on_device);
}

TEST_F(ChunkCopy, WriteFailureBehindAReadThatCameShortIsAnsweredToo) {
  withBadBytes(400000, 400001);
  output.badWriteFrom = 2000000;
  output.writeError = std::make_error_code(std::errc::no_space_on_device);
  copy(row(290, 10000, 0));
  ASSERT_TRUE(end.failure.has_value());
  EXPECT_EQ(end.failure->offset, 2000000U);
}

TEST_F(ChunkCopy, CancelAloneDoesNotEndIt) {
  cancel.cancel();
  expectLiteral(row(50, 10000, 0));
}

TEST_F(ChunkCopy, RangeIsCopiedAsFarAsItGoes) {
  const auto opened = files.openForWriting("/out");
  avi::InputFile file(files.openForReading("/in").file);
  avi::StagedOutput out(*opened.file);

  avi::copyRange(file, out, 2000000, 5000000000U);

  EXPECT_FALSE(out.finish());
  EXPECT_EQ(files.content("/out"), platform::Bytes(content.bytes.begin() + 2000000, content.bytes.end()));
}

TEST_F(ChunkCopy, RangeOfNothingReadsNothing) {
  const auto opened = files.openForWriting("/out");
  avi::InputFile file(files.openForReading("/in").file);
  avi::StagedOutput out(*opened.file);
  avi::copyRange(file, out, 100, 0);
  EXPECT_FALSE(out.finish());
  EXPECT_EQ(content.reads, 0U);
}

}  // namespace
}  // namespace zelvo::tests
