// 1. Blocks are counted; most regions have no crowded one, and nothing else happens.
// 2. Each candidate is linked with the one that it closes on, and the longest chain that leads to each is known when
//    its turn comes.
// 3. From the last to the first those stay that a chain ends with, and those in front of them in their chains.
#include "salvage/scan/crowded_codes.h"

#include <algorithm>
#include <bit>
#include <limits>

namespace zelvo::salvage {

namespace {

constexpr std::uint32_t kNoPlace = std::numeric_limits<std::uint32_t>::max();
constexpr std::size_t kWord = 64;
/// So many candidates in front of the region may close on one of it.
constexpr std::size_t kLookBack = 4096;

}  // namespace

/// The number in the region of the candidate at `offset`; `kNoPlace` without one.
std::uint32_t CrowdedCodes::at(std::uint64_t offset) const {
  if (offset < region_ || offset >= region_ + kRegion) return kNoPlace;
  const auto place = static_cast<std::size_t>(offset - region_);
  const std::uint64_t word = bits_[place / kWord];
  const std::uint64_t bit = std::uint64_t{1} << place % kWord;
  if ((word & bit) == 0) return kNoPlace;
  return firsts_[place / kWord] + static_cast<std::uint32_t>(std::popcount(word & (bit - 1)));
}

void CrowdedCodes::mark(const CandidateList& candidates, std::size_t first) {
  bits_.assign(kRegion / kWord, 0);
  firsts_.assign(kRegion / kWord, 0);
  for (std::size_t i = first; i < candidates.size(); ++i) {
    const auto place = static_cast<std::size_t>(candidates[i].offset() - region_);
    bits_[place / kWord] |= std::uint64_t{1} << place % kWord;
  }
  std::uint32_t number = 0;
  for (std::size_t word = 0; word < bits_.size(); ++word) {
    firsts_[word] = number;
    number += static_cast<std::uint32_t>(std::popcount(bits_[word]));
  }
}

void CrowdedCodes::link(const CandidateList& candidates, std::size_t first) {
  places_.assign(candidates.size() - first, Place{.before = kNoPlace});
  for (std::size_t i = first - std::min(first, kLookBack); i < first; ++i) {
    const std::uint32_t next = at(candidates[i].next());
    if (next != kNoPlace) places_[next].depth = 1;
  }
  for (std::uint32_t i = 0; i < places_.size(); ++i) {
    const std::uint32_t next = at(candidates[first + i].next());
    if (next == kNoPlace) continue;
    places_[i].leadsOn = true;
    if (places_[i].depth < places_[next].depth) continue;
    places_[next].depth = places_[i].depth + 1;
    places_[next].before = i;
  }
}

std::size_t CrowdedCodes::thin(CandidateList& candidates, std::size_t first) {
  const std::size_t count = candidates.size() - first;
  if (count <= kMostInBlock) return 0;
  region_ = candidates[first].offset() / kRegion * kRegion;
  counts_.fill(0);
  const auto blockOf = [&](std::size_t i) {
    return static_cast<std::size_t>((candidates[i].offset() - region_) / kBlock);
  };
  for (std::size_t i = first; i < candidates.size(); ++i) ++counts_[blockOf(i)];
  const auto isCrowded = [](std::size_t inBlock) { return inBlock > kMostInBlock; };
  if (std::ranges::none_of(counts_, isCrowded)) return 0;
  mark(candidates, first);
  link(candidates, first);
  for (std::size_t i = count; i-- > 0;) {
    Place& place = places_[i];
    if (!isCrowded(counts_[blockOf(first + i)]) || (!place.leadsOn && place.depth > 0)) place.stays = true;
    if (place.stays && place.before != kNoPlace) places_[place.before].stays = true;
  }
  candidates.thin([&](std::size_t i) { return places_[i - first].stays; }, first);
  return first + count - candidates.size();
}

}  // namespace zelvo::salvage
