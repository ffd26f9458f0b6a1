#include "engine/chunk_copy.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

#include "platform/headless/workers.h"
#include "tests/support/memory_files.h"

namespace zelvo::tests {
namespace {

struct Chunk {
  std::uint64_t offset;
  std::uint64_t size;  ///< payload
};

platform::Bytes randomBytes(std::size_t size) {
  std::mt19937 random(static_cast<unsigned>(size));
  platform::Bytes bytes(size);
  for (std::byte& byte : bytes) byte = static_cast<std::byte>(random() & 0xffU);
  return bytes;
}

class ChunkCopy : public testing::Test {
 protected:
  /// Copies behind `position` bytes that are there already, and answers what was copied.
  platform::Bytes copy(const std::vector<Chunk>& chunks, std::uint64_t position = 0) {
    std::vector<std::uint64_t> offsets{0};
    std::vector<std::uint64_t> sizes{0};
    for (const Chunk& chunk : chunks) {
      offsets.push_back(chunk.offset);
      sizes.push_back(chunk.size);
    }
    output.bytes.assign(static_cast<std::size_t>(position), std::byte{0x2e});
    output.size = position;
    const auto opened = files.openForWriting("/out");
    input = std::make_unique<engine::InputFile>(files.openForReading("/in").file);
    end = engine::copyChunks(*input, *opened.file, position, {offsets, sizes, chunks.size()}, buffers, workers, cancel);
    platform::Bytes copied = files.content("/out");
    EXPECT_GE(end.position, position);
    EXPECT_TRUE(end.failure || end.position <= copied.size());
    copied.resize(std::min<std::size_t>(copied.size(), end.position));
    copied.erase(copied.begin(), copied.begin() + static_cast<std::ptrdiff_t>(position));
    return copied;
  }

  /// One read per chunk, as far as each goes.
  platform::Bytes literalCopy(const std::vector<Chunk>& chunks) {
    engine::InputFile file(files.openForReading("/in").file);
    platform::Bytes all;
    for (const Chunk& chunk : chunks) {
      const platform::Bytes bytes = file.readBytes(chunk.offset, static_cast<std::size_t>(chunk.size) + 8);
      all.insert(all.end(), bytes.begin(), bytes.end());
    }
    literalFailures = file.failures();
    return all;
  }

  void expectLiteral(const std::vector<Chunk>& chunks) { EXPECT_EQ(copy(chunks), literalCopy(chunks)); }

  void withBadBytes(std::uint64_t from, std::uint64_t to) {
    MemoryFile& file = files.at("/in");
    file.badReadStart = from;
    file.badReadEnd = to;
    file.readError = std::make_error_code(std::errc::io_error);
  }

  MemoryFiles files;
  MemoryFile& content = files.put("/in", randomBytes(3000000));
  MemoryFile& output = files.put("/out", {});
  platform::headless::HeadlessWorkers workers;
  platform::CancelMark cancel;
  engine::CopyBuffers buffers;
  engine::CopyEnd end;
  std::unique_ptr<engine::InputFile> input;
  engine::ReadFailures literalFailures;
};

/// `count` chunks of `size` bytes, `gap` bytes apart.
std::vector<Chunk> row(int count, std::uint64_t size, std::uint64_t gap, std::uint64_t start = 100) {
  std::vector<Chunk> chunks;
  for (int i = 0; i < count; ++i, start += size + 8 + gap) chunks.push_back({start, size});
  return chunks;
}

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

/// The output is cut into segments of this size.
constexpr std::uint64_t kSegment = 1048576;

TEST_F(ChunkCopy, EndsWithTheSegmentUnderWayOnceItIsAbandoned) {
  workers.setProcessors(1);
  content.onRead = [this](std::uint64_t offset, std::size_t size) {
    if (offset + size > 500000) cancel.abandon();
  };
  EXPECT_EQ(copy(row(290, 10000, 0)).size(), kSegment);
}

TEST_F(ChunkCopy, EndsWithTheSegmentsOfBothThreadsOnceItIsAbandoned) {
  content.onRead = [this](std::uint64_t offset, std::size_t size) {
    if (offset + size > 500000) cancel.abandon();
  };
  EXPECT_LE(copy(row(290, 10000, 0)).size(), 2 * kSegment);
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
  engine::InputFile file(files.openForReading("/in").file);
  engine::StagedOutput out(*opened.file);

  engine::copyRange(file, out, 2000000, 5000000000U);

  EXPECT_FALSE(out.finish());
  EXPECT_EQ(files.content("/out"), platform::Bytes(content.bytes.begin() + 2000000, content.bytes.end()));
}

TEST_F(ChunkCopy, RangeOfNothingReadsNothing) {
  const auto opened = files.openForWriting("/out");
  engine::InputFile file(files.openForReading("/in").file);
  engine::StagedOutput out(*opened.file);
  engine::copyRange(file, out, 100, 0);
  EXPECT_FALSE(out.finish());
  EXPECT_EQ(content.reads, 0U);
}

}  // namespace
}  // namespace zelvo::tests
