#include "avi/chunk_copy.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <memory>
#include <random>
#include <thread>
#include <tuple>
#include <vector>

#include "avi/chunk_pass.h"
#include "platform/headless/workers.h"
#include "tests/support/memory_files.h"

namespace zelvo::tests {
namespace {

struct Chunk {
  std::uint64_t offset;
  std::uint64_t size;  ///< payload
};

/// The engine's form of chunks.
class Table {
 public:
  explicit Table(const std::vector<Chunk>& chunks) {
    for (const Chunk& chunk : chunks) {
      offsets_.push_back(chunk.offset);
      sizes_.push_back(chunk.size);
    }
  }
  [[nodiscard]] avi::ChunkRun run() const { return {offsets_, sizes_, sizes_.size() - 1}; }

 private:
  std::vector<std::uint64_t> offsets_{0};
  std::vector<std::uint64_t> sizes_{0};
};

/// Headers and payloads.
std::uint64_t lengthOf(const std::vector<Chunk>& chunks) {
  std::uint64_t sum = 0;
  for (const Chunk& chunk : chunks) sum += chunk.size + 8;
  return sum;
}

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
    return copyBoth(chunks, {}, false, position);
  }
  /// The same for two kinds; `together` gives the output its length first.
  platform::Bytes copyBoth(const std::vector<Chunk>& video, const std::vector<Chunk>& audio, bool together,
                           std::uint64_t position = 0) {
    const Table videoTable(video);
    const Table audioTable(audio);
    output.bytes.assign(static_cast<std::size_t>(position), std::byte{0x2e});
    if (together) output.bytes.resize(static_cast<std::size_t>(position + lengthOf(video) + lengthOf(audio)));
    output.size = output.bytes.size();
    const auto opened = files.openForWriting("/out");
    input = std::make_unique<avi::InputFile>(files.openForReading("/in").file);
    end = avi::copyChunks({.input = *input,
                           .out = *opened.file,
                           .position = position,
                           .video = videoTable.run(),
                           .audio = audioTable.run(),
                           .outHasItsLength = together,
                           .stopped = [this] { return stopped.load(); },
                           .workers = workers,
                           .cancel = cancel});
    platform::Bytes copied = files.content("/out");
    EXPECT_GE(end.position, position);
    EXPECT_TRUE(end.failure || end.position <= copied.size());
    copied.resize(std::min<std::size_t>(copied.size(), end.position));
    copied.erase(copied.begin(), copied.begin() + static_cast<std::ptrdiff_t>(position));
    return copied;
  }

  /// One read per chunk, as far as each goes.
  platform::Bytes literalCopy(std::vector<Chunk> chunks, const std::vector<Chunk>& behind = {}) {
    chunks.insert(chunks.end(), behind.begin(), behind.end());
    avi::InputFile file(files.openForReading("/in").file);
    platform::Bytes all;
    for (const Chunk& chunk : chunks) {
      const platform::Bytes bytes = file.readBytes(chunk.offset, static_cast<std::size_t>(chunk.size) + 8);
      all.insert(all.end(), bytes.begin(), bytes.end());
    }
    literalFailures = file.failures();
    return all;
  }

  void expectLiteral(const std::vector<Chunk>& chunks) { EXPECT_EQ(copy(chunks), literalCopy(chunks)); }

  void expectLiteral(const std::vector<Chunk>& video, const std::vector<Chunk>& audio) {
    for (const bool together : {false, true}) {
      SCOPED_TRACE(together ? "together" : "one after the other");
      EXPECT_EQ(copyBoth(video, audio, together), literalCopy(video, audio));
      EXPECT_EQ(input->failures().count, literalFailures.count);
      EXPECT_EQ(input->failures().firstOffset, literalFailures.firstOffset);
    }
  }

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
  std::atomic<bool> stopped = false;
  avi::CopyEnd end;
  std::unique_ptr<avi::InputFile> input;
  avi::ReadFailures literalFailures;
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

// ---- Two kinds ----

/// `count` chunks of each kind in turn, without gaps.
struct Interleaved {
  Interleaved(int count, std::uint64_t videoSize, std::uint64_t audioSize) {
    std::uint64_t at = 100;
    for (int i = 0; i < count; ++i) {
      video.push_back({at, videoSize});
      at += videoSize + 8;
      audio.push_back({at, audioSize});
      at += audioSize + 8;
    }
    end = at;
  }
  std::vector<Chunk> video;
  std::vector<Chunk> audio;
  std::uint64_t end = 0;
};

TEST_F(ChunkCopy, AudioGoesBehindAllVideo) {
  for (const auto& [count, videoSize, audioSize] :
       {std::tuple{1, 10, 10}, {500, 1000, 300}, {40, 50000, 2040}, {30, 40000, 40000}, {3, 900000, 16376}}) {
    const Interleaved chunks(count, static_cast<std::uint64_t>(videoSize), static_cast<std::uint64_t>(audioSize));
    expectLiteral(chunks.video, chunks.audio);
  }
}
TEST_F(ChunkCopy, OneKindMayBeMissing) {
  expectLiteral(row(300, 5000, 0), {});
  expectLiteral({}, row(300, 5000, 0));
  expectLiteral({}, {});
}
TEST_F(ChunkCopy, KindsThatLieApart) {
  expectLiteral(row(100, 5000, 3), row(100, 5000, 3, 1500000));
  expectLiteral(row(100, 5000, 3, 1500000), row(100, 5000, 3));
}

TEST_F(ChunkCopy, TogetherTheyAreReadOnce) {
  const Interleaved chunks(1000, 1000, 900);
  std::atomic<std::uint64_t> read = 0;
  content.onRead = [&](std::uint64_t, std::size_t size) { read += size; };
  copyBoth(chunks.video, chunks.audio, true);
  EXPECT_EQ(read, chunks.end - 100);
}

TEST_F(ChunkCopy, AnOutputWithoutItsLengthGrowsWithoutHoles) {
  workers.setProcessors(1);
  const Interleaved chunks(60, 20000, 20000);
  std::uint64_t grown = 0;
  output.onWrite = [&](std::uint64_t offset, std::size_t size) {
    EXPECT_EQ(offset, grown);
    grown = offset + size;
  };
  copyBoth(chunks.video, chunks.audio, false);
  EXPECT_EQ(grown, lengthOf(chunks.video) + lengthOf(chunks.audio));
}

TEST_F(ChunkCopy, OneThreadAtATimeWrites) {
  const Interleaved chunks(60, 20000, 20000);
  std::atomic<int> writers = 0;
  std::atomic<bool> several = false;
  content.onRead = [](std::uint64_t, std::size_t) { std::this_thread::yield(); };
  output.onWrite = [&](std::uint64_t, std::size_t) {
    if (++writers > 1) several = true;
    for (int i = 0; i < 20; ++i) std::this_thread::yield();
    --writers;
  };
  expectLiteral(chunks.video, chunks.audio);
  EXPECT_FALSE(several);
}

TEST_F(ChunkCopy, BadByteInEitherKindMovesUpWhatFollowsIt) {
  const Interleaved chunks(60, 20000, 20000);
  for (const std::uint64_t at : {chunks.video[3].offset + 9, chunks.video[59].offset + 20000, chunks.audio[0].offset,
                                 chunks.audio[59].offset + 5}) {
    withBadBytes(at, at + 1);
    expectLiteral(chunks.video, chunks.audio);
    ASSERT_EQ(input->failures().count, 1U);
  }
}

TEST_F(ChunkCopy, RandomChunksOfBothKindsEqualOneReadPerChunk) {
  std::mt19937 random(6);
  for (int round = 0; round < 60; ++round) {
    SCOPED_TRACE(round);
    workers.setProcessors(1 + random() % 2);
    content.badReadStart = random() % 3000000;
    content.badReadEnd = content.badReadStart + random() % 3;  // sometimes none
    content.readError = std::make_error_code(std::errc::io_error);
    std::array<std::vector<Chunk>, 2> kinds;
    std::uint64_t offset = random() % 100000;
    const std::uint64_t largest = round % 3 == 0 ? 200000 : 3000;
    for (int i = 0; i < 100; ++i) {
      const std::uint64_t size = 1 + random() % largest;
      kinds.at(random() % 2).push_back({offset, size});
      const auto next =
          static_cast<std::int64_t>(offset + size + 8) + static_cast<std::int64_t>(random() % 12000) - 2000;
      offset = static_cast<std::uint64_t>(std::max<std::int64_t>(0, next));
      if (random() % 20 == 0) offset = random() % 3100000;
    }
    expectLiteral(kinds[0], kinds[1]);
    if (HasFailure()) return;
  }
}

// ---- Stops ----

TEST_F(ChunkCopy, StopDuringTheVideoLeavesTheAudioOut) {
  const Interleaved chunks(60, 20000, 20000);
  content.onRead = [this](std::uint64_t, std::size_t) { stopped = true; };
  for (const bool together : {false, true}) {
    stopped = false;
    EXPECT_EQ(copyBoth(chunks.video, chunks.audio, together), literalCopy(chunks.video));
    EXPECT_FALSE(end.failure);
  }
}

TEST_F(ChunkCopy, StopAtTheLastWriteOfTheVideoLeavesTheAudioOut) {
  const Interleaved chunks(60, 20000, 20000);
  output.onWrite = [&](std::uint64_t offset, std::size_t size) {
    if (offset + size == lengthOf(chunks.video)) stopped = true;
  };
  for (const bool together : {false, true}) {
    stopped = false;
    EXPECT_EQ(copyBoth(chunks.video, chunks.audio, together), literalCopy(chunks.video));
  }
}

TEST_F(ChunkCopy, StopOnceTheVideoIsWrittenChangesNothing) {
  workers.setProcessors(1);
  const std::vector<Chunk> video = row(60, 20000, 0);
  const std::vector<Chunk> audio = row(60, 20000, 0, 1500000);
  output.onWrite = [&](std::uint64_t offset, std::size_t) {
    if (offset >= lengthOf(video)) stopped = true;
  };
  for (const bool together : {false, true}) {
    stopped = false;
    EXPECT_EQ(copyBoth(video, audio, together), literalCopy(video, audio));
    EXPECT_TRUE(stopped);
  }
}

TEST_F(ChunkCopy, StopBehindABadByteInTheVideoLeavesTheAudioOut) {
  const Interleaved chunks(60, 20000, 20000);
  withBadBytes(chunks.video[30].offset + 9, chunks.video[30].offset + 10);
  content.onRead = [&](std::uint64_t offset, std::size_t) {
    if (offset == chunks.video[50].offset) stopped = true;  // read on its own
  };
  for (const bool together : {false, true}) {
    stopped = false;
    EXPECT_EQ(copyBoth(chunks.video, chunks.audio, together), literalCopy(chunks.video));
    EXPECT_TRUE(stopped);
  }
}

TEST_F(ChunkCopy, FailedWriteOfAudioThatIsLeftOutDoesNotMatter) {
  workers.setProcessors(1);
  const Interleaved chunks(60, 20000, 20000);
  output.badWriteFrom = lengthOf(chunks.video);
  output.writeError = std::make_error_code(std::errc::no_space_on_device);
  output.onWrite = [&](std::uint64_t offset, std::size_t) {
    if (offset >= lengthOf(chunks.video)) stopped = true;
  };
  EXPECT_EQ(copyBoth(chunks.video, chunks.audio, true), literalCopy(chunks.video));
  EXPECT_TRUE(stopped);
  EXPECT_FALSE(end.failure);
}

TEST_F(ChunkCopy, FailedWriteOfAudioIsAnswered) {
  const Interleaved chunks(60, 20000, 20000);
  output.badWriteFrom = lengthOf(chunks.video) + 1000;
  output.writeError = std::make_error_code(std::errc::no_space_on_device);
  for (const bool together : {false, true}) {
    copyBoth(chunks.video, chunks.audio, together);
    ASSERT_TRUE(end.failure.has_value());
    EXPECT_EQ(end.failure->offset, output.badWriteFrom);
  }
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
