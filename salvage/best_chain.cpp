// From the last candidate to the first: the best that can follow each is known when its turn comes.
#include "salvage/best_chain.h"

#include <algorithm>

namespace zelvo::salvage {

namespace {

constexpr std::size_t kLookAhead = 40;
/// Hundredths.
constexpr std::int64_t kChunk = 100;
constexpr std::int64_t kContainer = 50;
constexpr std::int64_t kSkipped = 20;
constexpr std::int64_t kCloses = 200;
constexpr std::int64_t kClosesUnpadded = 150;
constexpr std::int64_t kBytesBetween = -100;
constexpr std::int64_t kOverlaps = -160;
constexpr std::int64_t kNever = -1'000'000'000'000;

std::int64_t ownScore(const Candidate& candidate, const std::vector<StreamFacts>& facts) {
  if (candidate.isContainer()) return kContainer;
  if (candidate.kind() != CandidateKind::data) return kSkipped;
  if (candidate.stream() >= facts.size()) return kChunk;
  const StreamFacts& known = facts[candidate.stream()];
  return kChunk + known.signature.score(candidate) + known.fixedSizeScore(candidate.size()) -
         known.oversizePenalty(candidate.size());
}

/// Which candidates lie in a chunk that another closes on and that closes itself: even if they are a whole chain from
/// another place, they are none of this one.
std::vector<bool> insideProved(const CandidateList& candidates, const ChunkChain& chain) {
  // Where chunks lie in step a wrong size may close, too; but then the last chunk inside closes there as well.
  std::vector<bool> isClosedOn(candidates.size(), false);
  std::vector<bool> isClosedOnTwice(candidates.size(), false);
  for (std::size_t i = 0; i < candidates.size(); ++i) {
    const std::uint32_t next = chain.next(i);
    if (next == ChunkChain::kNone) continue;
    isClosedOnTwice[next] = isClosedOn[next];
    isClosedOn[next] = true;
  }
  std::vector<bool> isInside(candidates.size(), false);
  std::uint64_t provedEnd = 0;
  for (std::size_t i = 0; i < candidates.size(); ++i) {
    const Candidate& candidate = candidates[i];
    isInside[i] = candidate.offset() < provedEnd;
    const bool isProved = candidate.kind() == CandidateKind::data && chain.is(i, ChainFact::isClosedOn) &&
                          chain.is(i, ChainFact::closesOnCandidate) && !isClosedOnTwice[chain.next(i)];
    if (!isInside[i] && isProved) provedEnd = candidate.next();
  }
  return isInside;
}

}  // namespace

std::vector<std::uint32_t> bestChain(const CandidateList& candidates, const ChunkChain& chain,
                                     const std::vector<StreamFacts>& facts) {
  const std::size_t count = candidates.size();
  std::vector<std::int64_t> best(count);
  std::vector<std::uint32_t> following(count, ChunkChain::kNone);
  const std::vector<bool> isInside = insideProved(candidates, chain);
  std::uint64_t looks = 0;
  for (std::size_t i = count; i-- > 0;) {
    if (isInside[i]) {
      best[i] = kNever;
      continue;
    }
    const Candidate& candidate = candidates[i];
    std::int64_t score = chain.is(i, ChainFact::closesOnEnd) ? kCloses : 0;
    const auto consider = [&](std::size_t next, std::int64_t link) {
      if (best[next] + link <= score) return;
      score = best[next] + link;
      following[i] = static_cast<std::uint32_t>(next);
    };
    const std::uint32_t successor = chain.next(i);
    if (successor != ChunkChain::kNone)
      consider(successor, chain.is(i, ChainFact::closesOnCandidate) ? kCloses : kClosesUnpadded);
    const std::size_t behind = candidates.firstAtOrAfter(candidate.next(), i + 1, looks);
    for (std::size_t j = i + 1; j < std::min(behind, i + 1 + kLookAhead); ++j) consider(j, kOverlaps);
    for (std::size_t j = behind; j < std::min(count, behind + kLookAhead); ++j) consider(j, kBytesBetween);
    best[i] = ownScore(candidate, facts) + score;
  }
  std::vector<std::uint32_t> numbers;
  if (count == 0) return numbers;
  auto at = static_cast<std::uint32_t>(std::ranges::max_element(best) - best.begin());
  for (; at != ChunkChain::kNone; at = following[at]) numbers.push_back(at);
  return numbers;
}

}  // namespace zelvo::salvage
