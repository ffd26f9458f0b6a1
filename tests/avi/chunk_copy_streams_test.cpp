// Copies of chunks of two streams and of more, and what a stop leaves out of them.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <random>
#include <thread>
#include <tuple>
#include <vector>

#include "avi/chunk_pass.h"
#include "tests/avi/chunk_copy_bench.h"

namespace zelvo::tests {
namespace {

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

// ---- Three streams and more ----

/// `count` chunks of each of `streams` streams in turn, `size` bytes larger from stream to stream, without gaps.
std::vector<std::vector<Chunk>> inTurn(std::size_t streams, int count, std::uint64_t size) {
  std::vector<std::vector<Chunk>> all(streams);
  std::uint64_t at = 100;
  for (int i = 0; i < count; ++i) {
    for (std::size_t stream = 0; stream < streams; ++stream) {
      all[stream].push_back({at, size * (stream + 1)});
      at += size * (stream + 1) + 8;
    }
  }
  return all;
}

/// Bytes that all streams before `stream` come to in the output.
std::uint64_t startOf(const std::vector<std::vector<Chunk>>& streams, std::size_t stream) {
  std::uint64_t start = 0;
  for (std::size_t i = 0; i < stream; ++i) start += lengthOf(streams[i]);
  return start;
}

std::vector<std::vector<Chunk>> firstOf(const std::vector<std::vector<Chunk>>& streams, std::size_t count) {
  return {streams.begin(), streams.begin() + static_cast<std::ptrdiff_t>(count)};
}

TEST_F(ChunkCopy, EachStreamGoesBehindTheOneBeforeIt) {
  for (const std::size_t streams : {1U, 3U, 4U, 5U, 13U, 14U, 15U, 29U, 100U}) {
    SCOPED_TRACE(streams);
    for (const int processors : {1, 2}) {
      workers.setProcessors(static_cast<unsigned>(processors));
      expectLiteralOfAll(inTurn(streams, 20, 2000 / streams));
    }
  }
}

TEST_F(ChunkCopy, LargeChunksOfManyStreamsFillMoreSegmentsThanThereAre) {
  for (const std::size_t streams : {3U, 8U, 14U}) expectLiteralOfAll(inTurn(streams, 1, 2700000 / streams / streams));
  std::vector<std::vector<Chunk>> all;
  for (std::uint64_t stream = 0; stream < 14; ++stream) all.push_back(row(3, 900000, 0, stream * 1000));
  expectLiteralOfAll(all);
}

TEST_F(ChunkCopy, NoStreamsAndEmptyOnesCopyNothing) {
  EXPECT_TRUE(copyAll({}, true, 5).empty());
  EXPECT_EQ(end.position, 5U);
  EXPECT_TRUE(copyAll({{}, {}, {}}, true).empty());
  expectLiteralOfAll({row(100, 5000, 0), {}, {}, row(100, 5000, 3, 1500000), {}});
  expectLiteralOfAll({{}, {}, row(10, 500, 0)});
}

TEST_F(ChunkCopy, StreamsThatShareAPassAreReadOnce) {
  const auto streams = inTurn(avi::ChunkPass::kMaxRuns, 100, 200);
  std::atomic<std::uint64_t> read = 0;
  content.onRead = [&](std::uint64_t, std::size_t size) { read += size; };
  copyAll(streams, true);
  EXPECT_EQ(read, startOf(streams, streams.size()));
}

TEST_F(ChunkCopy, ShortReadInTheMiddleStreamMovesUpWhatFollowsIt) {
  const auto streams = inTurn(3, 40, 10000);
  for (const std::size_t bad : {0U, 1U, 2U}) {
    SCOPED_TRACE(bad);
    const std::uint64_t at = streams[bad][20].offset + 100;
    withBadBytes(at, at + 1);
    expectLiteralOfAll(streams);
    ASSERT_EQ(input->failures().count, 1U);
  }
}

TEST_F(ChunkCopy, AStreamThatTheInputDoesNotHoldMovesUpTheNext) {
  expectLiteralOfAll({row(10, 500, 0), row(10, 500, 0, 2999000), row(10, 500, 0, 4000000), row(10, 500, 0, 50000)});
}

TEST_F(ChunkCopy, RandomChunksOfManyStreamsEqualOneReadPerChunk) {
  std::mt19937 random(7);
  for (int round = 0; round < 80; ++round) {
    SCOPED_TRACE(round);
    workers.setProcessors(1 + random() % 2);
    content.badReadStart = random() % 3000000;
    content.badReadEnd = content.badReadStart + random() % 3;  // sometimes none
    content.readError = std::make_error_code(std::errc::io_error);
    std::vector<std::vector<Chunk>> streams(round % 4 == 0 ? 20 : 3 + random() % 5);
    std::uint64_t offset = random() % 100000;
    const std::uint64_t largest = round % 3 == 0 ? 200000 : 3000;
    for (int i = 0; i < 100; ++i) {
      const std::uint64_t size = 1 + random() % largest;
      streams[random() % streams.size()].push_back({offset, size});
      const auto next =
          static_cast<std::int64_t>(offset + size + 8) + static_cast<std::int64_t>(random() % 12000) - 2000;
      offset = static_cast<std::uint64_t>(std::max<std::int64_t>(0, next));
      if (random() % 20 == 0) offset = random() % 3100000;
    }
    expectLiteralOfAll(streams);
    if (HasFailure()) return;
  }
}

TEST_F(ChunkCopy, StreamsBeyondThoseThatShareAPassTakeAnother) {
  const auto streams = inTurn(avi::ChunkPass::kMaxRuns + 1, 100, 50);
  std::atomic<std::uint64_t> read = 0;
  content.onRead = [&](std::uint64_t, std::size_t size) { read += size; };
  copyAll(streams, true);
  EXPECT_GT(read, startOf(streams, streams.size())) << "what lies between its chunks is read again";
}

TEST_F(ChunkCopy, PiecesWithoutHeadersAreCopiedAsTheyAre) {
  const std::vector<std::uint64_t> offsets{100, 2000, 150};
  const std::vector<std::uint64_t> sizes{50, 1000, 3};
  const std::vector<avi::ChunkRun> runs{{.offsets = offsets, .sizes = sizes, .headerSize = 0}};
  for (const std::uint64_t readable : {1000U, 600U}) {  // of the piece in the middle
    SCOPED_TRACE(readable);
    withBadBytes(2000 + readable, 2001 + readable);
    output.bytes.clear();
    output.size = 0;
    const auto opened = files.openForWriting("/out");
    avi::InputFile file(files.openForReading("/in").file);
    end = avi::copyChunks({.input = file,
                           .out = *opened.file,
                           .runs = runs,
                           .stopped = [] { return false; },
                           .workers = workers,
                           .cancel = cancel});

    platform::Bytes expected;
    for (std::size_t i = 0; i < offsets.size(); ++i) {
      const auto first = content.bytes.begin() + static_cast<std::ptrdiff_t>(offsets[i]);
      const std::uint64_t size = i == 1 ? readable : sizes[i];
      expected.insert(expected.end(), first, first + static_cast<std::ptrdiff_t>(size));
    }
    EXPECT_EQ(files.content("/out"), expected);
    EXPECT_EQ(end.position, expected.size());
  }
}

TEST_F(ChunkCopy, StopLeavesOutTheStreamsBehindTheFirstThatIsNotCopied) {
  workers.setProcessors(1);
  std::vector<std::vector<Chunk>> streams;
  for (std::uint64_t stream = 0; stream < 4; ++stream) streams.push_back(row(30, 20000, 0, stream * 650000));
  for (std::size_t stopAt = 0; stopAt < streams.size(); ++stopAt) {
    SCOPED_TRACE(stopAt);
    // A write of the stream at hand says the stop; those before it are written whole.
    output.onWrite = [&](std::uint64_t offset, std::size_t size) {
      if (offset + size > startOf(streams, stopAt)) stopped = true;
    };
    for (const bool together : {false, true}) {
      stopped = false;
      EXPECT_TRUE(copyAll(streams, together) == literalCopyOfAll(firstOf(streams, stopAt + 1)));
      EXPECT_FALSE(end.failure);
      EXPECT_EQ(end.position, startOf(streams, stopAt + 1));
    }
  }
}

TEST_F(ChunkCopy, StopBehindABadByteLeavesOutTheStreamsBehindThatOne) {
  const auto streams = inTurn(3, 40, 10000);
  withBadBytes(streams[1][20].offset + 100, streams[1][20].offset + 101);
  const platform::Bytes expected = literalCopyOfAll(firstOf(streams, 2));
  content.onRead = [&](std::uint64_t offset, std::size_t) {
    if (offset == streams[1][30].offset) stopped = true;
  };
  for (const bool together : {false, true}) {
    stopped = false;
    EXPECT_TRUE(copyAll(streams, together) == expected);
    EXPECT_TRUE(stopped);
  }
}

TEST_F(ChunkCopy, StopThatWasHeardHoldsThoughItIsTakenBack) {
  const auto streams = inTurn(3, 40, 10000);
  withBadBytes(streams[0][20].offset + 100, streams[0][20].offset + 101);
  const platform::Bytes expected = literalCopyOfAll(firstOf(streams, 1));
  content.onRead = [this](std::uint64_t, std::size_t) { stopped = false; };
  stopped = true;
  EXPECT_TRUE(copyAll(streams, true) == expected);
}

TEST_F(ChunkCopy, StopBetweenPassesLeavesOutTheStreamsOfTheNext) {
  workers.setProcessors(1);
  std::vector<std::vector<Chunk>> streams;
  for (std::uint64_t stream = 0; stream < 20; ++stream) streams.push_back(row(3, 20000, 0, stream * 100000));
  output.onWrite = [&](std::uint64_t offset, std::size_t size) {
    if (offset + size == startOf(streams, avi::ChunkPass::kMaxRuns)) stopped = true;
  };
  EXPECT_TRUE(copyAll(streams, true) == literalCopyOfAll(firstOf(streams, avi::ChunkPass::kMaxRuns)));
  EXPECT_TRUE(stopped);
}

TEST_F(ChunkCopy, FailedWriteOfAnyStreamIsAnswered) {
  workers.setProcessors(1);
  std::vector<std::vector<Chunk>> streams;
  for (std::uint64_t stream = 0; stream < 5; ++stream) streams.push_back(row(20, 20000, 0, stream * 500000));
  output.writeError = std::make_error_code(std::errc::no_space_on_device);
  for (const std::size_t stream : {0U, 2U, 4U}) {
    output.badWriteFrom = startOf(streams, stream) + 1000;
    for (const bool together : {false, true}) {
      copyAll(streams, together);
      ASSERT_TRUE(end.failure.has_value());
      EXPECT_EQ(end.failure->offset, output.badWriteFrom);
    }
  }
}

}  // namespace
}  // namespace zelvo::tests
