// Candidates that stand closer together than a film's chunks.
#include "salvage/scan/crowded_codes.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace zelvo::tests {
namespace {

using salvage::Candidate;
using salvage::CandidateKind;
using salvage::CandidateList;
using salvage::CrowdedCodes;
using Offsets = std::vector<std::uint64_t>;

constexpr std::uint64_t kBeyond = 0x7ffffff0;

void add(CandidateList& list, std::uint64_t offset, std::uint64_t next) {
  list.add({offset, CandidateKind::data, 0, 0, static_cast<std::uint32_t>(next - offset - 8), 0});
}

Offsets thinned(CandidateList& list, std::size_t first = 0) {
  const std::size_t before = list.size();
  const std::size_t dropped = CrowdedCodes().thin(list, first);
  EXPECT_EQ(before - dropped, list.size());
  Offsets left;
  for (std::size_t i = first; i < list.size(); ++i) left.push_back(list[i].offset());
  return left;
}

/// Codes that lead nowhere, eight bytes apart, in front of `end`, and the chunks of `chain` among them, each of which
/// ends where the next begins.
CandidateList crowd(std::uint64_t end, const Offsets& chain) {
  CandidateList list;
  std::size_t link = 0;
  for (std::uint64_t at = 0; at < end; at += 8) {
    const bool isLink = link < chain.size() && chain[link] == at;
    if (isLink) ++link;
    add(list, at, isLink && link < chain.size() ? chain[link] : at + kBeyond);
  }
  return list;
}

TEST(CrowdedCodes, BlockWithRoomBetweenItsCodesLosesNothing) {
  CandidateList list;
  for (std::size_t i = 0; i < CrowdedCodes::kMostInBlock; ++i) add(list, i * 64, i * 64 + kBeyond);
  EXPECT_EQ(thinned(list).size(), CrowdedCodes::kMostInBlock);
}

TEST(CrowdedCodes, OneMoreMakesABlockCrowded) {
  CandidateList list;
  for (std::size_t i = 0; i <= CrowdedCodes::kMostInBlock; ++i) add(list, i * 63, i * 63 + kBeyond);
  EXPECT_EQ(thinned(list), Offsets{});
}

TEST(CrowdedCodes, ChainOfChunksStays) {
  const Offsets chain{0, 80, 400, 408, 9000, 60000};
  CandidateList list = crowd(65536, chain);
  EXPECT_EQ(thinned(list), chain);
}

TEST(CrowdedCodes, ChainMayLeadThroughSeveralBlocks) {
  const Offsets chain{8, 65536, 200000, 300000, 900000};
  CandidateList list = crowd(CrowdedCodes::kRegion, chain);
  EXPECT_EQ(thinned(list), chain);
}

TEST(CrowdedCodes, LongestOfSeveralChainsStays) {
  Offsets chain;
  for (std::uint64_t at = 8; at < 60000; at += 80) chain.push_back(at);
  CandidateList list = crowd(65536, chain);
  // A wrong size that leads into the chain from its side.
  CandidateList with;
  for (std::size_t i = 0; i < list.size(); ++i) {
    const std::uint64_t at = list[i].offset();
    add(with, at, at == 16 ? chain[500] : list[i].next());
  }
  EXPECT_EQ(thinned(with), chain);
}

TEST(CrowdedCodes, BlockBesideACrowdedOneLosesNothing) {
  CandidateList list = crowd(65536, {});
  for (std::uint64_t at = 65536; at < 131072; at += 100) add(list, at, at + kBeyond);
  EXPECT_EQ(thinned(list).size(), 656U);
}

TEST(CrowdedCodes, ChunkThatOneInFrontOfTheRegionEndsAtStays) {
  constexpr std::uint64_t kBegin = 5 * CrowdedCodes::kRegion;
  CandidateList list;
  add(list, 1000, kBegin + 800);
  for (std::uint64_t at = kBegin; at < kBegin + 65536; at += 8) add(list, at, at + kBeyond);
  EXPECT_EQ(thinned(list, 1), Offsets{kBegin + 800});
  EXPECT_EQ(list[0].offset(), 1000U);
}

TEST(CrowdedCodes, CodesThatAllLeadOnToOneAnotherComeDownToFewChains) {
  std::mt19937 random(5);
  CandidateList list;
  for (std::uint64_t at = 0; at < CrowdedCodes::kRegion; at += 8) add(list, at, at + 8 + random() % 13 * 8);
  EXPECT_LT(thinned(list).size(), 30'000U);
}

}  // namespace
}  // namespace zelvo::tests
