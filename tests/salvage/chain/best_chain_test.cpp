// The sequence of chunk headers that the evidence bears out best.
#include "salvage/chain/best_chain.h"

#include <gtest/gtest.h>

#include "tests/salvage/scanned_film.h"

namespace zelvo::tests {
namespace {

using platform::Bytes;
using Offsets = std::vector<std::uint64_t>;

AviBuilder chainedFilm() {
  AviBuilder builder;
  builder.interleaved(20, 1001, 200);
  return builder;
}

/// Offsets of the chunks in the chain of a damaged film; lists and indexes left out.
Offsets chainOf(const Bytes& bytes) {
  ScannedFilm scanned(bytes);
  scanned.run();
  const auto& candidates = scanned.scan.candidates;
  Offsets offsets;
  for (const auto number :
       salvage::bestChain(candidates, scanned.chain, salvage::learnStreams(candidates, scanned.chain))) {
    if (candidates[number].kind() == salvage::CandidateKind::data) offsets.push_back(candidates[number].offset());
  }
  return offsets;
}

TEST(BestChain, HoldsEveryChunkOfAWholeFilm) { EXPECT_EQ(chainOf(chainedFilm().build()), chunkOffsets(chainedFilm())); }

TEST(BestChain, LeavesOutACodeInsideAPayload) {
  Bytes bytes = chainedFilm().build();
  overwrite(bytes, static_cast<std::size_t>(chunkOffsets(chainedFilm())[4]) + 100,
            std::string_view("00dc\x40\0\0\0", 8));
  EXPECT_EQ(chainOf(bytes), chunkOffsets(chainedFilm()));
}

TEST(BestChain, KeepsAChunkWhoseSizeReachesBeyondTheNext) {
  Bytes bytes = chainedFilm().build();
  overwriteNumber(bytes, static_cast<std::size_t>(chunkOffsets(chainedFilm())[4]) + 4, 1900);
  EXPECT_EQ(chainOf(bytes), chunkOffsets(chainedFilm()));
}

TEST(BestChain, StepsOverALostHeader) {
  Bytes bytes = chainedFilm().build();
  overwrite(bytes, static_cast<std::size_t>(chunkOffsets(chainedFilm())[7]), "lost");
  Offsets expected = chunkOffsets(chainedFilm());
  expected.erase(expected.begin() + 7);
  EXPECT_EQ(chainOf(bytes), expected);
}

TEST(BestChain, GoesOnBehindMoreFalseCodesThanItLooksAhead) {
  Bytes bytes = chainedFilm().build();
  const auto at = static_cast<std::size_t>(chunkOffsets(chainedFilm())[4]) + 20;
  for (std::size_t i = 0; i < 100; ++i) overwrite(bytes, at + i * 8, std::string_view("00dc\x03\0\0\0", 8));
  EXPECT_EQ(chainOf(bytes), chunkOffsets(chainedFilm()));
}

TEST(BestChain, OfNoCandidatesIsEmpty) { EXPECT_TRUE(chainOf(Bytes(100)).empty()); }

}  // namespace
}  // namespace zelvo::tests
