#include "avi/chunk_pass.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <memory>
#include <numeric>
#include <span>
#include <vector>

#include "platform/page_bytes.h"

namespace zelvo::tests {
namespace {

using avi::Batch;
using avi::Segment;

/// A run of chunks of one size, `gap` bytes apart.
struct Chunks {
  Chunks(std::size_t count, std::uint64_t size, std::uint64_t gap, std::uint64_t start = 0) {
    for (std::size_t i = 0; i < count; ++i, start += size + 8 + gap) {
      offsets.push_back(start);
      sizes.push_back(size);
    }
  }
  [[nodiscard]] avi::ChunkRun run() const { return {offsets, sizes}; }
  std::vector<std::uint64_t> offsets;
  std::vector<std::uint64_t> sizes;
};

class ChunkPass : public testing::Test {
 protected:
  static constexpr std::uint64_t kFileSize = 10000000;

  std::unique_ptr<avi::ChunkPass> pass(const std::vector<avi::ChunkRun>& runs, std::uint64_t position = 0) {
    return std::make_unique<avi::ChunkPass>(kFileSize, position, runs, segments, [this] { return stopped; });
  }
  static std::size_t sizeOf(const Batch& batch) {
    return std::accumulate(batch.places().begin(), batch.places().end(), std::size_t{0},
                           [](std::size_t sum, std::span<std::byte> place) { return sum + place.size(); });
  }

  avi::Segments segments;
  Batch batch;
  bool stopped = false;
};

TEST_F(ChunkPass, SmallChunksThatLieTogetherAreReadToOnePlace) {
  const Chunks chunks(50, 1000, 20);
  const auto all = pass({chunks.run()});
  ASSERT_TRUE(all->take(batch));
  EXPECT_EQ(batch.offset(), 0U);
  EXPECT_EQ(batch.size(), 50 * 1008U + 49 * 20);
  EXPECT_EQ(batch.places().size(), 1U);
  EXPECT_EQ(sizeOf(batch), batch.size());
}

TEST_F(ChunkPass, ALargeChunkIsReadToItsSegment) {
  const Chunks chunks(1, 50000, 0);
  const auto all = pass({chunks.run()});
  ASSERT_TRUE(all->take(batch));
  ASSERT_EQ(batch.places().size(), 1U);
  EXPECT_EQ(batch.places()[0].data(), batch.parts()[0].segment->content().data());
}

TEST_F(ChunkPass, ABatchEndsAtItsSizeAtALargeGapAndWhereChunksOverlap) {
  const Chunks small(1000, 1000, 0);
  ASSERT_TRUE(pass({small.run()})->take(batch));
  EXPECT_EQ(batch.size(), Batch::kSize);
  const Chunks near(10, 1000, 8192);
  ASSERT_TRUE(pass({near.run()})->take(batch));
  EXPECT_EQ(batch.size(), 10 * 1008U + 9 * 8192);
  const Chunks apart(10, 1000, 8193);
  ASSERT_TRUE(pass({apart.run()})->take(batch));
  EXPECT_EQ(batch.size(), 1008U);
  Chunks overlapping(2, 1000, 0);
  overlapping.offsets[1] = 500;
  ASSERT_TRUE(pass({overlapping.run()})->take(batch));
  EXPECT_EQ(batch.size(), 1008U);
}

TEST_F(ChunkPass, SegmentsAreAlignedInTheOutput) {
  const Chunks chunks(100, 30000, 0);
  const std::uint64_t position = Segment::kSize - 1000;
  const auto all = pass({chunks.run()}, position);
  std::uint64_t reached = position;
  while (all->take(batch)) {
    all->arrived(batch);
    while (Segment* segment = all->startWriting()) {
      EXPECT_EQ(segment->start.position, reached);
      EXPECT_TRUE(reached == position || reached % Segment::kSize == 0);
      reached += segment->content().size();
      all->written(*segment, {segment->content().size(), {}});
    }
  }
  EXPECT_EQ(reached, position + 100 * 30008);
  EXPECT_EQ(reached, all->end());
  EXPECT_FALSE(all->missing());
}

TEST_F(ChunkPass, OneSegmentAtATimeIsGivenToBeWritten) {
  const Chunks chunks(100, 30000, 0);
  const auto all = pass({chunks.run()});
  // Two segments' worth.
  for (std::size_t read = 0; read < 2 * Segment::kSize; read += batch.size()) {
    ASSERT_TRUE(all->take(batch));
    all->arrived(batch);
  }
  Segment* first = all->startWriting();
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(all->startWriting(), nullptr);
  all->written(*first, {first->content().size(), {}});
  Segment* second = all->startWriting();
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(second->start.position, Segment::kSize);
}

TEST_F(ChunkPass, TheRunWhoseChunkLiesFirstGoesOn) {
  const Chunks video(10, 992, 1000);
  const Chunks audio(10, 992, 1000, 1000);
  const auto all = pass({video.run(), audio.run()});
  ASSERT_TRUE(all->take(batch));
  EXPECT_EQ(batch.size(), 20000U);
  EXPECT_EQ(batch.parts().size(), 2U);
  EXPECT_FALSE(all->take(batch));
}

TEST_F(ChunkPass, WhatIsMissingStartsAtTheFirstSegmentThatIsNotWritten) {
  const Chunks video(100, 30000, 0);
  const Chunks audio(10, 1000, 0, 5000000);
  const auto all = pass({video.run(), audio.run()});
  EXPECT_EQ(all->missing()->from.position, 0U);
  for (std::size_t read = 0; read < Segment::kSize; read += batch.size()) {
    ASSERT_TRUE(all->take(batch));
    all->arrived(batch);
  }
  Segment* first = all->startWriting();
  EXPECT_EQ(all->missing()->from.position, 0U);
  all->written(*first, {first->content().size(), {}});
  ASSERT_TRUE(all->missing());
  EXPECT_EQ(all->missing()->run, 0U);
  EXPECT_EQ(all->missing()->from.position, Segment::kSize);
  EXPECT_EQ(all->missing()->from.chunk, Segment::kSize / 30008);
  EXPECT_EQ(all->missing()->from.inChunk, Segment::kSize % 30008);
}

TEST_F(ChunkPass, AShortReadEndsItForAll) {
  const Chunks chunks(100, 30000, 0);
  const auto all = pass({chunks.run()});
  ASSERT_TRUE(all->take(batch));
  all->cameShort();
  EXPECT_FALSE(all->take(batch));
}

TEST_F(ChunkPass, AStopLeavesTheSecondRunOut) {
  const Chunks video(10, 1000, 0);
  const Chunks audio(10, 1000, 0, 5000000);
  const auto all = pass({video.run(), audio.run()});
  stopped = true;
  ASSERT_TRUE(all->take(batch));
  EXPECT_TRUE(all->leftOut());
  EXPECT_EQ(all->end(), 10 * 1008U);
  EXPECT_FALSE(all->take(batch));
}

TEST_F(ChunkPass, OfOneRunNothingIsLeftOut) {
  const Chunks video(10, 1000, 0);
  const auto all = pass({video.run()});
  stopped = true;
  ASSERT_TRUE(all->take(batch));
  EXPECT_FALSE(all->leftOut());
}

TEST_F(ChunkPass, AStopFinishesTheFirstRunThatIsNotWritten) {
  const Chunks first(10, 1000, 0);
  const Chunks second(10, 1000, 0, 1000000);
  const Chunks third(10, 1000, 0, 5000000);
  const Chunks none(0, 0, 0);
  const auto all = pass({none.run(), first.run(), second.run(), third.run()});
  ASSERT_TRUE(all->take(batch));
  all->arrived(batch);
  Segment* segment = all->startWriting();
  ASSERT_NE(segment, nullptr);
  all->written(*segment, {segment->content().size(), {}});
  stopped = true;
  ASSERT_TRUE(all->take(batch));
  EXPECT_EQ(batch.offset(), 1000000U);
  EXPECT_TRUE(all->leftOut());
  EXPECT_EQ(all->end(), 20 * 1008U);
  EXPECT_FALSE(all->take(batch));
  EXPECT_EQ(all->missing()->run, 2U);
}

TEST_F(ChunkPass, AStopIsAskedForOnceOnly) {
  const Chunks video(10, 1000, 0);
  const Chunks audio(10, 1000, 0, 5000000);
  const Chunks more(10, 1000, 0, 6000000);
  const auto all = pass({video.run(), audio.run(), more.run()});
  stopped = true;
  ASSERT_TRUE(all->take(batch));
  stopped = false;
  EXPECT_FALSE(all->take(batch));
  EXPECT_EQ(all->end(), 10 * 1008U);
}

TEST(Segments, AreOneForEachRunAndOneForEachThread) {
  avi::Segments segments;
  EXPECT_EQ(segments.of(1).size(), 4U);
  EXPECT_EQ(segments.of(2).size(), 4U);
  EXPECT_EQ(segments.of(3).size(), 5U);
  const auto most = segments.of(avi::ChunkPass::kMaxRuns);
  EXPECT_EQ(most.size() * Segment::kSize, 8U << 20U);
  most[5].inUse = true;
  EXPECT_FALSE(segments.of(avi::ChunkPass::kMaxRuns)[5].inUse);
  EXPECT_EQ(segments.of(2).size(), 4U);
}

TEST(PageBytes, StartOnAPageAndAreARange) {
  for (const std::size_t size : {1U, 4096U, 100001U}) {
    platform::PageBytes bytes(size);
    EXPECT_EQ(std::bit_cast<std::uintptr_t>(bytes.data()) % 4096, 0U);
    EXPECT_EQ(std::span(bytes).size(), size);
    std::fill(bytes.begin(), bytes.end(), std::byte{7});
    EXPECT_EQ(bytes.end() - bytes.begin(), static_cast<std::ptrdiff_t>(size));
  }
}

}  // namespace
}  // namespace zelvo::tests
