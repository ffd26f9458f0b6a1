// Which headers close on one another.
#include "salvage/scan/chunk_chain.h"

#include <gtest/gtest.h>

#include <bit>
#include <random>

namespace zelvo::tests {
namespace {

using salvage::CandidateKind;
using salvage::CandidateList;
using salvage::ChainFact;
using salvage::ChunkChain;

constexpr std::uint64_t kFarPlace = std::uint64_t{1} << 39U;

void add(CandidateList& list, std::uint64_t offset, std::uint32_t size, CandidateKind kind = CandidateKind::data) {
  list.add({offset, kind, 0, 0, size, 0});
}

ChunkChain linkedChainOf(const CandidateList& list, std::uint64_t dataEnd = kFarPlace,
                         std::vector<std::uint64_t> ends = {}) {
  return salvage::linkChunks(list, ends, dataEnd);
}

TEST(ChunkChain, ClosesOnTheHeaderBehindThePayload) {
  CandidateList list;
  add(list, 100, 20);
  add(list, 110, 20);
  add(list, 128, 20);
  const ChunkChain chain = linkedChainOf(list);
  EXPECT_EQ(chain.next(0), 2U);
  EXPECT_TRUE(chain.is(0, ChainFact::closesOnCandidate));
  EXPECT_TRUE(chain.is(2, ChainFact::isClosedOn));
  EXPECT_EQ(chain.next(1), ChunkChain::kNone);
  EXPECT_FALSE(chain.closes(1));
  EXPECT_FALSE(chain.is(1, ChainFact::isClosedOn));
  EXPECT_FALSE(chain.closes(2));
}

TEST(ChunkChain, OddSizeClosesWithItsPadByteFirst) {
  CandidateList list;
  add(list, 100, 21);
  add(list, 129, 0);
  add(list, 130, 0);
  const ChunkChain chain = linkedChainOf(list);
  EXPECT_EQ(chain.next(0), 2U);
  EXPECT_TRUE(chain.closes(0));
  EXPECT_TRUE(chain.is(0, ChainFact::closesUnpadded));
  EXPECT_TRUE(chain.is(2, ChainFact::isClosedOn));
  EXPECT_FALSE(chain.is(1, ChainFact::isClosedOn));
}

TEST(ChunkChain, WithoutThePadByteItIsNotProved) {
  CandidateList list;
  add(list, 100, 21);
  add(list, 129, 0);
  const ChunkChain chain = linkedChainOf(list);
  EXPECT_EQ(chain.next(0), 1U);
  EXPECT_FALSE(chain.closes(0));
  EXPECT_TRUE(chain.is(0, ChainFact::closesUnpadded));
}

TEST(ChunkChain, EvenSizeHasNoUnpaddedEnd) {
  CandidateList list;
  add(list, 100, 20);
  add(list, 128, 0);
  EXPECT_FALSE(linkedChainOf(list).is(0, ChainFact::closesUnpadded));
}

TEST(ChunkChain, ListIsEnteredAndItsEndIsAnEnd) {
  CandidateList list;
  add(list, 100, 200, CandidateKind::list);
  add(list, 112, 188);
  add(list, 500, 188);
  const ChunkChain chain = linkedChainOf(list);
  EXPECT_EQ(chain.next(0), 1U);
  EXPECT_FALSE(chain.is(0, ChainFact::exceedsData));
  EXPECT_TRUE(chain.is(1, ChainFact::closesOnEnd));
  EXPECT_EQ(chain.next(1), ChunkChain::kNone);
  EXPECT_FALSE(chain.closes(2));
}

TEST(ChunkChain, WildListSizeExceedsNothing) {
  CandidateList list;
  add(list, 100, 0xffffffff, CandidateKind::form);
  add(list, 112, 8);
  const ChunkChain chain = linkedChainOf(list, 500);
  EXPECT_TRUE(chain.closes(0));
  EXPECT_FALSE(chain.is(0, ChainFact::exceedsData));
  EXPECT_FALSE(chain.closes(1));
}

TEST(ChunkChain, EndOfTheDataIsAnEndWithOrWithoutTheLastPadByte) {
  CandidateList list;
  add(list, 100, 21);
  EXPECT_TRUE(linkedChainOf(list, 130).is(0, ChainFact::closesOnEnd));
  EXPECT_TRUE(linkedChainOf(list, 129).is(0, ChainFact::closesOnEnd));
  EXPECT_FALSE(linkedChainOf(list, 131).closes(0));
  EXPECT_FALSE(linkedChainOf(list, 128).closes(0));
  EXPECT_TRUE(linkedChainOf(list, 128).is(0, ChainFact::exceedsData));
}

TEST(ChunkChain, OtherEndsCountInAnyOrder) {
  CandidateList list;
  add(list, 100, 20);
  add(list, 300, 20);
  const ChunkChain chain = linkedChainOf(list, kFarPlace, {328, 5, 128});
  EXPECT_TRUE(chain.closes(0));
  EXPECT_TRUE(chain.closes(1));
  EXPECT_FALSE(chain.is(0, ChainFact::closesOnCandidate));
}

TEST(ChunkChain, LargestSizesDoNotWrap) {
  CandidateList list;
  add(list, 0xfffffff0, 0xffffffff);
  add(list, 0xfffffff8, 0);
  add(list, 0x1fffffff8, 0);
  const ChunkChain chain = linkedChainOf(list);
  EXPECT_EQ(chain.next(0), 2U);
}

TEST(ChunkChain, NothingIsLinkedInAnEmptyList) { EXPECT_EQ(linkedChainOf({}).size(), 0U); }

/// Looks that `count` candidates may take: a few times the depth of a binary search.
std::uint64_t nearLinear(std::uint64_t count) { return count * 6 * std::bit_width(count); }

TEST(ChunkChain, HostileOverlappingChunksAreNearLinear) {
  constexpr std::uint32_t kCount = 100000;
  CandidateList list;
  for (std::uint32_t i = 0; i < kCount; ++i) add(list, i * 8, (kCount - i) * 8 + 1);
  const ChunkChain chain = linkedChainOf(list);
  EXPECT_LT(chain.looks(), nearLinear(kCount));
}

TEST(ChunkChain, HostileConstantSizesThatReachOverManyAreNearLinear) {
  constexpr std::uint32_t kCount = 100000;
  CandidateList list;
  for (std::uint32_t i = 0; i < kCount; ++i) add(list, i * 8, 8 * 4096);
  const ChunkChain chain = linkedChainOf(list);
  EXPECT_LT(chain.looks(), nearLinear(kCount));
  EXPECT_TRUE(chain.closes(0));
}

TEST(ChunkChain, HostileCandidatesThatAllEndAtOnePlaceAreNearLinear) {
  constexpr std::uint32_t kCount = 100000;
  CandidateList list;
  for (std::uint32_t i = 0; i < kCount; ++i) add(list, i * 8, (kCount - i) * 8);
  add(list, kCount * 8 + 8, 0);
  const ChunkChain chain = linkedChainOf(list);
  EXPECT_LT(chain.looks(), nearLinear(kCount));
  for (std::uint32_t i = 0; i < kCount; i += 1000) EXPECT_EQ(chain.next(i), kCount);
}

TEST(ChunkChain, AgreesWithALiteralSearch) {
  std::mt19937 random(3);
  for (int round = 0; round < 50; ++round) {
    CandidateList list;
    std::uint64_t offset = 0;
    for (int i = 0; i < 60; ++i) {
      offset += 4 + random() % 12;
      add(list, offset, static_cast<std::uint32_t>(random() % 60),
          random() % 8 == 0 ? CandidateKind::list : CandidateKind::data);
    }
    const std::uint64_t dataEnd = offset + random() % 40;
    const ChunkChain chain = linkedChainOf(list, dataEnd);
    for (std::size_t i = 0; i < list.size(); ++i) {
      bool closesOnCandidate = false;
      bool closesOnEnd = !list[i].isContainer() && (list[i].next() == dataEnd || list[i].payloadEnd() == dataEnd);
      bool isClosedOn = false;
      const bool exceeds = !list[i].isContainer() && list[i].payloadEnd() > dataEnd;
      for (std::size_t j = 0; j < list.size(); ++j) {
        closesOnCandidate |= list[j].offset() == list[i].next();
        closesOnEnd |=
            list[j].isContainer() && list[j].payloadEnd() < dataEnd && list[j].payloadEnd() == list[i].next();
        const bool jExceeds = !list[j].isContainer() && list[j].payloadEnd() > dataEnd;
        isClosedOn |= !jExceeds && list[j].next() == list[i].offset();
      }
      EXPECT_EQ(chain.is(i, ChainFact::closesOnCandidate), closesOnCandidate && !exceeds);
      EXPECT_EQ(chain.is(i, ChainFact::closesOnEnd), closesOnEnd && !exceeds) << i;
      EXPECT_EQ(chain.is(i, ChainFact::isClosedOn), isClosedOn);
      EXPECT_EQ(chain.is(i, ChainFact::exceedsData), exceeds);
    }
  }
}

}  // namespace
}  // namespace zelvo::tests
