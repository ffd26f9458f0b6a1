#include "salvage/scan/chunk_chain.h"

#include <algorithm>
#include <bit>

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

/// Most places where no candidate begins, known by one bit each: among false codes nearly every look would be in vain.
/// Takes a byte of memory a candidate at the most.
class Beginnings {
 public:
  explicit Beginnings(const CandidateList& candidates)
      : shift_(64U - static_cast<unsigned>(std::bit_width(kBitsEach * std::max(candidates.size(), kFewest) / 2))),
        bits_((std::size_t{1} << (64U - shift_)) / kWord) {
    for (std::size_t i = 0; i < candidates.size(); ++i) {
      const std::uint64_t place = placeOf(candidates[i].offset());
      bits_[place / kWord] |= std::uint64_t{1} << place % kWord;
    }
  }

  /// False: none begins at `offset`.
  [[nodiscard]] bool mayHave(std::uint64_t offset) const {
    const std::uint64_t place = placeOf(offset);
    return (bits_[place / kWord] >> place % kWord & 1U) != 0;
  }

 private:
  static constexpr std::size_t kWord = 64;
  static constexpr std::size_t kBitsEach = 8;
  static constexpr std::size_t kFewest = 64;

  [[nodiscard]] std::uint64_t placeOf(std::uint64_t offset) const { return offset * 0x9e3779b97f4a7c15U >> shift_; }

  unsigned shift_;
  std::vector<std::uint64_t> bits_;
};

std::uint8_t bit(ChainFact fact) { return static_cast<std::uint8_t>(fact); }

}  // namespace

ChunkChain linkChunks(const CandidateList& candidates, std::span<const std::uint64_t> otherEnds,
                      std::uint64_t dataEnd) {
  const std::vector<std::uint64_t> ends = endsBesidesCandidates(candidates, otherEnds, dataEnd);
  ChunkChain chain;
  const std::size_t count = candidates.size();
  const Beginnings beginnings(candidates);
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
    const bool hasPad = !candidate.isContainer() && candidate.next() != candidate.payloadEnd();
    const bool mayClose =
        beginnings.mayHave(candidate.next()) || (hasPad && beginnings.mayHave(candidate.payloadEnd()));
    const std::size_t behind =
        mayClose ? candidates.firstAtOrAfter(candidate.next(), i + 1, chain.looks_) : ChunkChain::kNone;
    if (mayClose) chain.next_[i] = ifAt(behind, candidate.next());
    if (chain.next_[i] != ChunkChain::kNone) {
      note(i, ChainFact::closesOnCandidate);
      note(chain.next_[i], ChainFact::isClosedOn);
    }
    // A list that is empty closes on its own end. The last pad byte of a file is often left out.
    const bool isLast = !candidate.isContainer() && candidate.payloadEnd() == dataEnd;
    if (isLast || std::ranges::binary_search(ends, candidate.next())) note(i, ChainFact::closesOnEnd);
    if (!hasPad || !mayClose) continue;
    const std::uint32_t unpadded = ifAt(behind - 1, candidate.payloadEnd());
    if (unpadded == ChunkChain::kNone) continue;
    note(i, ChainFact::closesUnpadded);
    if (chain.next_[i] == ChunkChain::kNone) chain.next_[i] = unpadded;
  }
  return chain;
}

}  // namespace zelvo::salvage
