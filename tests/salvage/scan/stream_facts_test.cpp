// What is learnt of streams from the chunks whose ends are proved.
#include "salvage/scan/stream_facts.h"

#include <gtest/gtest.h>

#include "tests/salvage/scanned_film.h"

namespace zelvo::tests {
namespace {

using salvage::Candidate;
using salvage::CandidateKind;
using salvage::CandidateList;
using salvage::Signature;
using salvage::StreamFacts;

/// Chunks one after the other, so that all of them close but the last.
class Chunks {
 public:
  Chunks& add(std::uint8_t stream, std::uint32_t size, std::uint32_t head = 0) {
    list_.add({at_, CandidateKind::data, stream, 0, size, head});
    at_ += 8 + size + size % 2;
    return *this;
  }
  /// One that closes on nothing.
  Chunks& addFalse(std::uint8_t stream, std::uint32_t size, std::uint32_t head) {
    add(stream, size, head);
    at_ += 2;
    return *this;
  }
  [[nodiscard]] std::vector<StreamFacts> learn() const {
    return salvage::learnStreams(list_, salvage::linkChunks(list_, {}, at_));
  }

 private:
  CandidateList list_;
  std::uint64_t at_ = 1000;
};

Candidate withHead(std::uint32_t head, std::uint32_t size = 100) { return {0, CandidateKind::data, 0, 0, size, head}; }

TEST(StreamFacts, SizesOfOneToAThousandAreSummedUp) {
  Chunks chunks;
  for (std::uint32_t size = 1000; size >= 1; --size) chunks.add(2, size);
  const auto streams = chunks.learn();
  ASSERT_EQ(streams.size(), 3U);
  EXPECT_EQ(streams[0].chunks, 0U);
  EXPECT_EQ(streams[2].chunks, 1000U);
  EXPECT_EQ(streams[2].emptyChunks, 0U);
  EXPECT_EQ(streams[2].bytes, 500500U);
  EXPECT_EQ(streams[2].mean, 500U);
  EXPECT_EQ(streams[2].smallest, 5U);
  EXPECT_EQ(streams[2].median, 500U);
  EXPECT_EQ(streams[2].largest, 995U);
  EXPECT_FALSE(streams[2].fixedSize.has_value());
}

TEST(StreamFacts, QuantileOfFewSizesIsOneOfThem) {
  const auto facts = Chunks().add(0, 10).add(0, 20).add(0, 30).learn().at(0);
  EXPECT_EQ(facts.smallest, 10U);
  EXPECT_EQ(facts.median, 20U);
  EXPECT_EQ(facts.largest, 30U);
}

TEST(StreamFacts, ChunksThatCloseOnNothingTeachNothing) {
  Chunks chunks;
  for (int i = 0; i < 10; ++i) chunks.add(0, 100, 0x11111111);
  for (int i = 0; i < 40; ++i) chunks.addFalse(0, 7000, 0x22222222);
  chunks.addFalse(7, 50, 0);
  const auto streams = chunks.learn();
  ASSERT_EQ(streams.size(), 1U);
  EXPECT_EQ(streams[0].chunks, 10U);
  EXPECT_EQ(streams[0].largest, 100U);
  EXPECT_EQ(streams[0].signature.bits, 0x11111111U);
}

TEST(StreamFacts, EmptyChunksAreCountedApart) {
  Chunks chunks;
  for (int i = 0; i < 30; ++i) chunks.add(0, i % 3 == 0 ? 0 : 50);
  const auto streams = chunks.learn();
  EXPECT_EQ(streams[0].chunks, 30U);
  EXPECT_EQ(streams[0].emptyChunks, 10U);
  EXPECT_EQ(streams[0].emptyShare(), 33);
  EXPECT_EQ(streams[0].mean, 50U);
  EXPECT_EQ(streams[0].smallest, 50U);
  EXPECT_EQ(streams[0].fixedSize, 50U);
  EXPECT_EQ(StreamFacts().emptyShare(), 0);
}

TEST(StreamFacts, StreamOfEmptyChunksAloneHasNoSizes) {
  Chunks chunks;
  for (int i = 0; i < 30; ++i) chunks.add(0, 0);
  const auto streams = chunks.learn();
  EXPECT_EQ(streams[0].emptyShare(), 100);
  EXPECT_EQ(streams[0].mean, 0U);
  EXPECT_FALSE(streams[0].fixedSize.has_value());
  EXPECT_EQ(streams[0].oversizePenalty(0xffffffff), 0);
  EXPECT_EQ(streams[0].signature.mask, 0U);
}

TEST(StreamFacts, FixedSizeIsThatOf85InAHundred) {
  const auto learnt = [](int others) {
    Chunks chunks;
    for (int i = 0; i < 100; ++i) chunks.add(0, i < others ? 10 + static_cast<std::uint32_t>(i) : 5000);
    return chunks.learn()[0];
  };
  EXPECT_EQ(learnt(15).fixedSize, 5000U);
  EXPECT_FALSE(learnt(16).fixedSize.has_value());
  EXPECT_EQ(learnt(15).fixedSizeScore(5000), 50);
  EXPECT_EQ(learnt(15).fixedSizeScore(5002), -20);
  EXPECT_EQ(learnt(16).fixedSizeScore(5000), 0);
}

TEST(StreamFacts, OversizeBeginsBeyondThreeTimesTheUsualLargest) {
  Chunks chunks;
  for (int i = 0; i < 20; ++i) chunks.add(0, 0x70000000);
  const auto facts = chunks.learn()[0];
  EXPECT_EQ(facts.mean, 0x70000000U);
  EXPECT_EQ(facts.oversizePenalty(0xffffffff), 0);
  Chunks small;
  for (int i = 0; i < 20; ++i) small.add(0, 1000);
  EXPECT_EQ(small.learn()[0].oversizePenalty(3000), 0);
  EXPECT_EQ(small.learn()[0].oversizePenalty(3001), 100);
}

TEST(StreamFacts, StreamsAreKeptApart) {
  Chunks chunks;
  for (int i = 0; i < 20; ++i) {
    chunks.add(0, 1000 + static_cast<std::uint32_t>(i), 0xb6010000);
    chunks.add(1, 400, 0x55aa55aa);
    chunks.add(99, 6, 7);
  }
  const auto streams = chunks.learn();
  ASSERT_EQ(streams.size(), 100U);
  EXPECT_EQ(streams[1].fixedSize, 400U);
  EXPECT_EQ(streams[99].median, 6U);
  EXPECT_EQ(streams[0].median, 1009U);
  EXPECT_EQ(streams[0].signature.bits, 0xb6010000U);
  EXPECT_EQ(streams[1].signature.bits, 0x55aa55aaU);
}

TEST(Signature, BitsThatNearlyAllShareAreConstant) {
  Chunks chunks;
  for (std::uint32_t i = 0; i < 100; ++i) chunks.add(0, 50, 0xb6010000 | (i < 4 ? 0x00020000U : 0U) | (i % 2));
  const Signature signature = chunks.learn()[0].signature;
  EXPECT_EQ(signature.mask, 0xfffffffeU);
  EXPECT_EQ(signature.bits, 0xb6010000U);
  EXPECT_EQ(signature.constantBits(), 31);
  Chunks more;
  for (std::uint32_t i = 0; i < 100; ++i) more.add(0, 50, i < 5 ? 0x00020000U : 0U);
  EXPECT_EQ(more.learn()[0].signature.mask, 0xfffdffffU);
}

TEST(Signature, ScoresAgreementByTheNumberOfItsBits) {
  EXPECT_EQ((Signature{0xffff, 0x1234}.score(withHead(0x99991234))), 100);
  EXPECT_EQ((Signature{0xffff, 0x1234}.score(withHead(0x99991235))), -100);
  EXPECT_EQ((Signature{0x7f, 0x34}.score(withHead(0x34))), 50);
  EXPECT_EQ((Signature{0x7f, 0x34}.score(withHead(0x35))), -50);
  EXPECT_EQ((Signature{0xf, 0x4}.score(withHead(0x4))), 28);
  EXPECT_EQ((Signature{0x7, 0x4}.score(withHead(0x4))), 0);
  EXPECT_EQ((Signature{0x7, 0x4}.score(withHead(0x5))), 0);
}

TEST(Signature, PayloadOfLessThanFourBytesSaysNothing) {
  EXPECT_EQ((Signature{0xffff, 0x1234}.score(withHead(0x5555, 3))), 0);
  EXPECT_EQ((Signature{0xffff, 0x1234}.score(withHead(0x1234, 4))), 100);
  Chunks chunks;
  for (int i = 0; i < 20; ++i) chunks.add(0, 2, 0xffffffff);
  EXPECT_EQ(chunks.learn()[0].signature.mask, 0U);
}

TEST(Signature, FewChunksShareNothing) {
  Chunks chunks;
  for (int i = 0; i < 7; ++i) chunks.add(0, 50, 0x12345678);
  EXPECT_EQ(chunks.learn()[0].signature.mask, 0U);
  chunks.add(0, 50, 0x12345678);
  EXPECT_EQ(chunks.learn()[0].signature.mask, 0xffffffffU);
}

TEST(StreamFacts, StreamNumbersBeyondTheFormatTeachNothing) {
  Chunks chunks;
  for (int i = 0; i < 20; ++i) chunks.add(200, 50);
  EXPECT_TRUE(chunks.learn().empty());
}

TEST(StreamFacts, FilmBuiltInMemoryIsLearnt) {
  ScannedFilm scanned(AviBuilder().interleaved(50, 1000, 101).build());
  scanned.run();
  const auto streams = salvage::learnStreams(scanned.scan.candidates, scanned.chain);
  ASSERT_EQ(streams.size(), 2U);
  EXPECT_EQ(streams[0].chunks, 50U);
  EXPECT_EQ(streams[0].fixedSize, 1000U);
  EXPECT_EQ(streams[1].fixedSize, 101U);
}

}  // namespace
}  // namespace zelvo::tests
