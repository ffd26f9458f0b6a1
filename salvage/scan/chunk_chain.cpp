#include "salvage/scan/chunk_chain.h"

#include <algorithm>

namespace zelvo::salvage {

namespace {

/// Where lists and forms say that they end, and the other ends; sorted.
std::vector<std::uint64_t> endsBesidesCandidates(const CandidateList& candidates,
                                                 std::span<const std::uint64_t> otherEnds, std::uint64_t dataEnd) {
  std::vector<std::uint64_t> ends(otherEnds.begin(), otherEnds.end());
  ends.push_back(dataEnd);
  for (std::size_t i = 0; i < candidates.size(); ++i) {
    const Candidate& candidate = candidates[i];
    if (candidate.isContainer() && candidate.payloadEnd() < dataEnd) ends.push_back(candidate.payloadEnd());
  }
  std::ranges::sort(ends);
  ends.erase(std::unique(ends.begin(), ends.end()), ends.end());
  return ends;
}

std::uint8_t bit(ChainFact fact) { return static_cast<std::uint8_t>(fact); }

}  // namespace

ChunkChain linkChunks(const CandidateList& candidates, std::span<const std::uint64_t> otherEnds,
                      std::uint64_t dataEnd) {
  const std::vector<std::uint64_t> ends = endsBesidesCandidates(candidates, otherEnds, dataEnd);
  ChunkChain chain;
  const std::size_t count = candidates.size();
  chain.next_.assign(count, ChunkChain::kNone);
  chain.facts_.assign(count, 0);
  const auto ifAt = [&](std::size_t found, std::uint64_t offset) {
    return found < count && candidates[found].offset() == offset ? static_cast<std::uint32_t>(found)
                                                                 : ChunkChain::kNone;
  };
  const auto note = [&](std::size_t number, ChainFact fact) {
    chain.facts_[number] = static_cast<std::uint8_t>(chain.facts_[number] | bit(fact));
  };
  for (std::size_t i = 0; i < count; ++i) {
    const Candidate& candidate = candidates[i];
    if (!candidate.isContainer() && candidate.payloadEnd() > dataEnd) {
      note(i, ChainFact::exceedsData);
      continue;
    }
    const std::size_t behind = candidates.firstAtOrAfter(candidate.next(), i + 1, chain.looks_);
    chain.next_[i] = ifAt(behind, candidate.next());
    if (chain.next_[i] != ChunkChain::kNone) {
      note(i, ChainFact::closesOnCandidate);
      note(chain.next_[i], ChainFact::isClosedOn);
    }
    // A list that is empty closes on its own end. The last pad byte of a file is often left out.
    const bool isLast = !candidate.isContainer() && candidate.payloadEnd() == dataEnd;
    if (isLast || std::ranges::binary_search(ends, candidate.next())) note(i, ChainFact::closesOnEnd);
    if (candidate.isContainer() || candidate.next() == candidate.payloadEnd()) continue;
    const std::uint32_t unpadded = ifAt(behind - 1, candidate.payloadEnd());
    if (unpadded == ChunkChain::kNone) continue;
    note(i, ChainFact::closesUnpadded);
    if (chain.next_[i] == ChunkChain::kNone) chain.next_[i] = unpadded;
  }
  return chain;
}

}  // namespace zelvo::salvage
