/// The best chain of candidates, worked out one by one as its rules read, for comparison with the one that is fast.
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <vector>

#include "salvage/scan/candidate.h"
#include "salvage/scan/chunk_chain.h"
#include "salvage/scan/stream_facts.h"

namespace zelvo::tests::literal {

/// The candidate at just this offset; nothing without one. Every candidate is looked at.
[[nodiscard]] inline std::optional<std::size_t> candidateAt(const salvage::CandidateList& candidates,
                                                            std::uint64_t offset) {
  for (std::size_t i = 0; i < candidates.size(); ++i) {
    if (candidates[i].offset() == offset) return i;
  }
  return std::nullopt;
}

/// As salvage::bestChain. Takes a time that grows with the square of the number of candidates.
[[nodiscard]] inline std::vector<std::uint32_t> bestChain(const salvage::CandidateList& candidates,
                                                          std::uint64_t dataEnd,
                                                          const std::vector<std::uint64_t>& otherEnds,
                                                          const std::vector<salvage::StreamFacts>& facts) {
  using salvage::CandidateKind;
  const std::size_t count = candidates.size();
  const auto fits = [&](std::size_t i) { return candidates[i].isContainer() || candidates[i].payloadEnd() <= dataEnd; };
  // The candidate that one ends at, with its pad byte, if that lies after it.
  const auto successor = [&](std::size_t i) -> std::optional<std::size_t> {
    const auto found = fits(i) ? candidateAt(candidates, candidates[i].next()) : std::nullopt;
    return found && *found > i ? found : std::nullopt;
  };
  const auto endsAtAnEnd = [&](std::size_t i) {
    if (!fits(i)) return false;
    if (!candidates[i].isContainer() && candidates[i].payloadEnd() == dataEnd) return true;
    const std::uint64_t next = candidates[i].next();
    if (next == dataEnd || std::ranges::find(otherEnds, next) != otherEnds.end()) return true;
    for (std::size_t j = 0; j < count; ++j) {
      if (candidates[j].isContainer() && candidates[j].payloadEnd() < dataEnd && candidates[j].payloadEnd() == next)
        return true;
    }
    return false;
  };
  const auto linked = [&](std::size_t i) -> std::optional<std::size_t> {
    if (const auto padded = successor(i)) return padded;
    if (!fits(i) || candidates[i].isContainer()) return std::nullopt;
    const auto unpadded = candidateAt(candidates, candidates[i].payloadEnd());
    return unpadded && *unpadded > i ? unpadded : std::nullopt;
  };
  std::vector<std::size_t> closing(count, 0);  // how many close on each, with a pad byte or without
  std::vector<bool> isClosedOn(count, false);  // with a pad byte
  for (std::size_t i = 0; i < count; ++i) {
    if (const auto next = linked(i)) ++closing[*next];
    if (const auto next = successor(i)) isClosedOn[*next] = true;
  }
  std::vector<bool> isInside(count, false);
  std::uint64_t provedEnd = 0;
  for (std::size_t i = 0; i < count; ++i) {
    isInside[i] = candidates[i].offset() < provedEnd;
    const auto next = successor(i);
    const bool isProved = candidates[i].kind() == CandidateKind::data && isClosedOn[i] && next && closing[*next] == 1;
    if (!isInside[i] && isProved) provedEnd = candidates[i].next();
  }
  const auto own = [&](std::size_t i) -> std::int64_t {
    const salvage::Candidate& candidate = candidates[i];
    if (candidate.isContainer()) return 50;
    if (candidate.kind() != CandidateKind::data) return 20;
    if (candidate.stream() >= facts.size()) return 100;
    const salvage::StreamFacts& known = facts[candidate.stream()];
    return 100 + known.signature.score(candidate) + known.fixedSizeScore(candidate.size()) -
           known.oversizePenalty(candidate.size());
  };
  std::vector<std::int64_t> best(count, 0);
  std::vector<std::optional<std::size_t>> following(count);
  for (std::size_t i = count; i-- > 0;) {
    if (isInside[i]) continue;
    std::int64_t score = endsAtAnEnd(i) ? 200 : 0;
    const auto consider = [&](std::size_t j, std::int64_t link) {
      if (isInside[j] || best[j] + link <= score) return;
      score = best[j] + link;
      following[i] = j;
    };
    if (const auto next = linked(i)) consider(*next, successor(i) ? 200 : 150);
    std::size_t overlapping = 0;
    for (std::size_t j = i + 1; j < count && overlapping < 40; ++j) {
      if (candidates[j].offset() >= candidates[i].next()) break;
      consider(j, -160);
      ++overlapping;
    }
    std::size_t behind = 0;
    for (std::size_t j = i + 1; j < count && behind < 40; ++j) {
      if (candidates[j].offset() < candidates[i].next()) continue;
      consider(j, -100);
      ++behind;
    }
    best[i] = own(i) + score;
  }
  std::optional<std::size_t> at;
  for (std::size_t i = 0; i < count; ++i) {
    if (!isInside[i] && (!at || best[i] > best[*at])) at = i;
  }
  std::vector<std::uint32_t> numbers;
  for (; at; at = following[*at]) numbers.push_back(static_cast<std::uint32_t>(*at));
  return numbers;
}

}  // namespace zelvo::tests::literal
