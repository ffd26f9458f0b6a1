// From the last candidate to the first: the best that can follow each is known when its turn comes. The best of so many
// in a row is kept for each place where such a row may begin, so that looking ahead takes one look.
#include "salvage/chain/best_chain.h"

#include <algorithm>
#include <array>

namespace zelvo::salvage {

namespace {

constexpr std::size_t kLookAhead = 40;
/// Hundredths. A chunk and its link come to 450 at the most, so that four million of them do not overflow.
constexpr std::int32_t kChunk = 100;
constexpr std::int32_t kContainer = 50;
constexpr std::int32_t kSkipped = 20;
constexpr std::int32_t kCloses = 200;
constexpr std::int32_t kClosesUnpadded = 150;
constexpr std::int32_t kBytesBetween = -100;
constexpr std::int32_t kOverlaps = -160;
constexpr std::int32_t kNever = -1'000'000'000;
constexpr std::int32_t kMost = 2'000'000'000;

std::int32_t ownScore(const Candidate& candidate, const std::vector<StreamFacts>& facts) {
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

/// The scores of all chains from one candidate on, and the best of the rows of `kLookAhead` candidates.
/// Filled from the last candidate to the first.
class Scores {
 public:
  explicit Scores(std::size_t count) : best_(count), rows_(count) {}

  [[nodiscard]] std::int32_t operator[](std::size_t number) const { return best_[number]; }
  void set(std::size_t number, std::int32_t score) {
    best_[number] = score;
    // Of those that are worse and lie after it nothing is heard again.
    while (first_ != last_ && best_[open_[(last_ - 1) % kRing]] <= score) --last_;
    open_[last_++ % kRing] = static_cast<std::uint32_t>(number);
    if (open_[first_ % kRing] >= number + kLookAhead) ++first_;
    rows_[number] = open_[first_ % kRing];
  }
  /// The best of the row that begins at `number`; of equal ones the first.
  [[nodiscard]] std::size_t bestOfRow(std::size_t number) const { return rows_[number]; }
  [[nodiscard]] std::size_t bestOfAll() const {
    return static_cast<std::size_t>(std::ranges::max_element(best_) - best_.begin());
  }

 private:
  static constexpr std::size_t kRing = 64;
  static_assert(kRing > kLookAhead);

  std::vector<std::int32_t> best_;
  std::vector<std::uint32_t> rows_;
  std::array<std::uint32_t, kRing> open_{};  ///< of the row at hand: falling scores, the best first
  std::uint64_t first_ = 0;
  std::uint64_t last_ = 0;
};

}  // namespace

std::vector<std::uint32_t> bestChain(const CandidateList& candidates, const ChunkChain& chain,
                                     const std::vector<StreamFacts>& facts) {
  const std::size_t count = candidates.size();
  Scores best(count);
  std::vector<std::uint32_t> following(count, ChunkChain::kNone);
  const std::vector<bool> isInside = insideProved(candidates, chain);
  std::uint64_t looks = 0;
  for (std::size_t i = count; i-- > 0;) {
    if (isInside[i]) {
      best.set(i, kNever);
      continue;
    }
    const Candidate& candidate = candidates[i];
    std::int32_t score = chain.is(i, ChainFact::closesOnEnd) ? kCloses : 0;
    const auto consider = [&](std::size_t next, std::int32_t link) {
      if (best[next] + link <= score) return;
      score = best[next] + link;
      following[i] = static_cast<std::uint32_t>(next);
    };
    const std::uint32_t successor = chain.next(i);
    if (successor != ChunkChain::kNone)
      consider(successor, chain.is(i, ChainFact::closesOnCandidate) ? kCloses : kClosesUnpadded);
    const std::size_t behind = chain.is(i, ChainFact::closesOnCandidate)
                                   ? successor
                                   : candidates.firstAtOrAfter(candidate.next(), i + 1, looks);
    if (behind >= i + 1 + kLookAhead) {
      consider(best.bestOfRow(i + 1), kOverlaps);
    } else {
      for (std::size_t j = i + 1; j < behind; ++j) consider(j, kOverlaps);
    }
    if (behind < count) consider(best.bestOfRow(behind), kBytesBetween);
    best.set(i, std::min(kMost, ownScore(candidate, facts) + score));
  }
  std::vector<std::uint32_t> numbers;
  if (count == 0) return numbers;
  auto at = static_cast<std::uint32_t>(best.bestOfAll());
  for (; at != ChunkChain::kNone; at = following[at]) numbers.push_back(at);
  return numbers;
}

}  // namespace zelvo::salvage
