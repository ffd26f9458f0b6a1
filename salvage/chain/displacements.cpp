// 1. The displacement zero, and the one that the index's own place tells, are walked over the entries.
// 2. What is left of entries and headers is joined by stream and size: rare sizes first, common ones near by after.
// 3. The pairs are sorted by displacement. The one that explains most is taken, and followed to both sides of each of
//    its entries; but for the first choice ranks only ever fall, so that a queue of the ranks as they were last seen
//    gives the greedy order.
#include "salvage/chain/displacements.h"

#include <algorithm>
#include <cstdlib>
#include <queue>
#include <utility>

#include "salvage/chain/entry_pairs.h"
#include "salvage/scan/number_sort.h"

namespace zelvo::salvage {

namespace {

/// Of one stream and size there may be so many on both sides for a join of all with all.
constexpr std::size_t kRare = 8;
/// Of common sizes so many headers near an entry are tried.
constexpr std::size_t kNear = 16;
constexpr int kMaxMisses = 4;
/// So many entries bear a displacement out together.
constexpr std::size_t kMany = 4;
/// So unique one entry does so alone, in thousandths.
constexpr std::uint64_t kUnique = 950;

class Cover {
 public:
  Cover(std::span<const TemplateEntry> entries, const CandidateList& candidates, std::uint64_t indexBegin,
        std::uint64_t dataEnd, const DisplacementLimits& limits)
      : entries_(entries), candidates_(candidates), dataEnd_(dataEnd), limits_(limits) {
    cover_.ofEntry.assign(entries.size(), DisplacementCover::kNone);
    cover_.isClaimed.assign(candidates.size(), 0);
    unexplained_ = entries.size();
    if (indexBegin >= 8 && !entries.empty()) {
      const std::uint64_t end = entries.back().end() + entries.back().size % 2;
      cover_.endShift = static_cast<std::int64_t>(indexBegin - 8) - static_cast<std::int64_t>(end);
    }
  }

  DisplacementCover run();

 private:
  using Group = PairGroup;
  using Gain = PairGain;

  [[nodiscard]] std::uint32_t headerOf(std::size_t entry, std::int64_t displacement, std::size_t from) const;
  [[nodiscard]] bool isOpen(const Pair& pair) const {
    return cover_.ofEntry[pair.entry()] == DisplacementCover::kNone && cover_.isClaimed[pair.candidate()] == 0;
  }
  void walk(std::int64_t displacement);
  void explain(std::size_t entry, std::uint32_t candidate, std::uint16_t number);
  void follow(const Pair& seed, std::uint16_t number);
  void joinRare();
  void joinNear();
  void findOpen();
  template <class Join>
  void join(const Join& join);
  void rankAgain(std::priority_queue<Group>& queue) const;
  [[nodiscard]] bool mayBeAcceptable(const Group& group, const Gain& gain) const;
  void addPair(std::uint32_t entry, std::uint32_t candidate);
  bool choose();
  [[nodiscard]] Gain gainOf(const Group& group) const;
  [[nodiscard]] std::int64_t rankOf(const Group& group, const Gain& gain) const;
  [[nodiscard]] std::uint64_t unnamed(const Group& group, bool alsoInSmallGaps) const;
  [[nodiscard]] bool isAcceptable(const Group& group, const Gain& gain) const;
  [[nodiscard]] bool liesBetweenEnds(const Group& group, const Gain& gain) const;
  [[nodiscard]] std::int64_t first() const { return cover_.values.empty() ? 0 : cover_.values.front(); }

  std::span<const TemplateEntry> entries_;
  const CandidateList& candidates_;
  const std::uint64_t dataEnd_;
  const DisplacementLimits& limits_;
  DisplacementCover cover_;
  std::size_t unexplained_;
  std::vector<Keyed> openEntries_;  ///< sorted
  std::vector<Keyed> openHeaders_;  ///< sorted
  bool areOpenFound_ = false;
  std::vector<Pair> pairs_;
  std::vector<std::uint16_t> multiplicity_;  ///< of each pair: how often its size occurs on either side
  mutable std::uint64_t looks_ = 0;
};

std::uint32_t Cover::headerOf(std::size_t entry, std::int64_t displacement, std::size_t from) const {
  constexpr auto kNowhere = std::numeric_limits<std::uint32_t>::max();
  const std::int64_t place = static_cast<std::int64_t>(entries_[entry].offset) + displacement;
  if (place < 0) return kNowhere;
  const std::size_t at = candidates_.firstAtOrAfter(static_cast<std::uint64_t>(place), from, looks_);
  if (at == candidates_.size()) return kNowhere;
  const Candidate& candidate = candidates_[at];
  const bool isIt = candidate.offset() == static_cast<std::uint64_t>(place) && cover_.isClaimed[at] == 0 &&
                    candidate.kind() == CandidateKind::data && candidate.stream() == entries_[entry].stream &&
                    candidate.size() == entries_[entry].size;
  return isIt ? static_cast<std::uint32_t>(at) : kNowhere;
}

void Cover::explain(std::size_t entry, std::uint32_t candidate, std::uint16_t number) {
  cover_.ofEntry[entry] = number;
  cover_.isClaimed[candidate] = 1;
  --unexplained_;
}

/// Takes a displacement that needs no pairs to be found, if it explains some neighbours.
void Cover::walk(std::int64_t displacement) {
  constexpr std::size_t kFewest = 4;
  constexpr auto kNowhere = std::numeric_limits<std::uint32_t>::max();
  if (std::ranges::find(cover_.values, displacement) != cover_.values.end()) return;
  const auto eachExplained = [&](const auto& visit) {
    std::size_t from = 0;
    for (std::size_t i = 0; i < entries_.size(); ++i) {
      if (cover_.ofEntry[i] != DisplacementCover::kNone) continue;
      const std::uint32_t header = headerOf(i, displacement, from);
      if (header == kNowhere) continue;
      from = header;
      visit(i, header);
    }
  };
  std::size_t found = 0;
  std::size_t neighbours = 0;
  std::size_t last = 0;
  eachExplained([&](std::size_t entry, std::uint32_t) {
    if (found > 0 && last + 1 == entry) ++neighbours;
    last = entry;
    ++found;
  });
  const bool isFew = found < kFewest || neighbours == 0;
  if (found == 0 || (isFew && found * 2 < unexplained_)) return;
  cover_.values.push_back(displacement);
  const auto number = static_cast<std::uint16_t>(cover_.values.size() - 1);
  eachExplained([&](std::size_t entry, std::uint32_t header) { explain(entry, header, number); });
}

/// Entries to both sides of one that is explained are, mostly, explained likewise.
void Cover::follow(const Pair& seed, std::uint16_t number) {
  constexpr auto kNowhere = std::numeric_limits<std::uint32_t>::max();
  for (const bool isForward : {true, false}) {
    std::size_t at = seed.entry();
    int misses = 0;
    while (isForward ? at + 1 < entries_.size() : at > 0) {
      at = isForward ? at + 1 : at - 1;
      if (cover_.ofEntry[at] != DisplacementCover::kNone) break;
      const std::uint32_t header = headerOf(at, seed.displacement(), isForward ? seed.candidate() : 0);
      if (header != kNowhere) {
        explain(at, header, number);
        misses = 0;
      } else if (++misses > kMaxMisses) {
        break;
      }
    }
  }
}

void Cover::addPair(std::uint32_t entry, std::uint32_t candidate) {
  if (pairs_.size() >= limits_.pairs) return;
  pairs_.emplace_back(
      static_cast<std::int64_t>(candidates_[candidate].offset()) - static_cast<std::int64_t>(entries_[entry].offset),
      entry, candidate);
}

/// Finds the entries and the headers that are left.
void Cover::findOpen() {
  if (areOpenFound_) {
    std::erase_if(openEntries_,
                  [&](const Keyed& entry) { return cover_.ofEntry[entry.number()] != DisplacementCover::kNone; });
    std::erase_if(openHeaders_, [&](const Keyed& header) { return cover_.isClaimed[header.number()] != 0; });
    return;
  }
  areOpenFound_ = true;
  const auto isOpenHeader = [&](std::size_t i) {
    return cover_.isClaimed[i] == 0 && candidates_[i].kind() == CandidateKind::data;
  };
  std::size_t headers = 0;
  for (std::size_t i = 0; i < candidates_.size(); ++i) headers += isOpenHeader(i) ? 1U : 0U;
  openHeaders_.reserve(headers);
  for (std::size_t i = 0; i < candidates_.size(); ++i) {
    if (isOpenHeader(i)) openHeaders_.emplace_back(candidates_[i].stream(), candidates_[i].size(), i);
  }
  sortByNumber(std::span(openHeaders_), &Keyed::value);
  // Entries of sizes that no header has are joined with nothing. Most of them are known by a bit.
  constexpr unsigned kBits = 22;
  const auto bitOf = [](std::uint64_t key) {
    return static_cast<std::size_t>(key * 0x9e3779b97f4a7c15U >> (64U - kBits));
  };
  std::vector<bool> isHeaders(std::size_t{1} << kBits);
  for (const Keyed& header : openHeaders_) isHeaders[bitOf(header.key())] = true;
  openEntries_.reserve(unexplained_);
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    const Keyed entry(entries_[i].stream, entries_[i].size, i);
    if (cover_.ofEntry[i] == DisplacementCover::kNone && isHeaders[bitOf(entry.key())]) openEntries_.push_back(entry);
  }
  sortByNumber(std::span(openEntries_), &Keyed::value);
}

/// Calls `join` with the entries and the headers of each stream and size, among those that are left.
template <class Join>
void Cover::join(const Join& join) {
  findOpen();
  pairs_.clear();
  const std::span<const Keyed> entries = openEntries_;
  const std::span<const Keyed> headers = openHeaders_;
  std::size_t header = 0;
  for (std::size_t i = 0; i < entries.size() && pairs_.size() < limits_.pairs;) {
    const std::uint64_t key = entries[i].key();
    std::size_t end = i;
    while (end < entries.size() && entries[end].key() == key) ++end;
    while (header < headers.size() && headers[header].key() < key) ++header;
    const std::size_t firstHeader = header;
    while (header < headers.size() && headers[header].key() == key) ++header;
    join(entries.subspan(i, end - i), headers.subspan(firstHeader, header - firstHeader));
    i = end;
  }
}

void Cover::joinRare() {
  join([&](std::span<const Keyed> entries, std::span<const Keyed> headers) {
    if (entries.size() > kRare || headers.size() > kRare) return;
    for (const Keyed& entry : entries) {
      for (const Keyed& header : headers) addPair(entry.number(), header.number());
    }
  });
}

void Cover::joinNear() {
  constexpr std::size_t kAllWithAll = 40'000;
  join([&](std::span<const Keyed> entries, std::span<const Keyed> headers) {
    const bool areFew =
        entries.size() <= kAllWithAll && headers.size() <= kAllWithAll / std::max<std::size_t>(1, entries.size());
    std::size_t at = 0;  // the first header that stands no earlier than the entry did
    for (const Keyed& entry : entries) {
      if (areFew) {
        for (const Keyed& header : headers) addPair(entry.number(), header.number());
        continue;
      }
      if (pairs_.size() >= limits_.pairs) return;
      const std::uint64_t place = entries_[entry.number()].offset;
      while (at < headers.size() && candidates_[headers[at].number()].offset() < place) ++at;
      const std::size_t begin = at > kNear / 2 ? at - kNear / 2 : 0;
      for (std::size_t i = begin; i < std::min(headers.size(), begin + kNear); ++i)
        addPair(entry.number(), headers[i].number());
    }
  });
}

Cover::Gain Cover::gainOf(const Group& group) const {
  Gain gain;
  std::uint32_t last = std::numeric_limits<std::uint32_t>::max();
  for (std::size_t i = group.begin; i < group.end; ++i) {
    if (!isOpen(pairs_[i])) continue;
    ++gain.entries;
    gain.uniqueness += 1000U / multiplicity_[i];
    gain.largest = std::max(gain.largest, entries_[pairs_[i].entry()].size);
    if (last != std::numeric_limits<std::uint32_t>::max() && last + 1 == pairs_[i].entry()) ++gain.neighbours;
    last = pairs_[i].entry();
  }
  return gain;
}

std::int64_t Cover::rankOf(const Group& group, const Gain& gain) const {
  constexpr std::int64_t kNearBytes = 64 * 1024;
  constexpr std::int64_t kBonus = 300;
  const std::int64_t value = pairs_[group.begin].displacement();
  const bool isEndShift = cover_.endShift == value;
  const bool isNear = std::abs(value) <= kNearBytes + static_cast<std::int64_t>(dataEnd_ / 50);
  const bool isLikely = isNear || isEndShift || DisplacementCover::areAligned(value, first());
  std::int64_t rank = static_cast<std::int64_t>(gain.entries) * (isLikely ? 200 : 100);
  if (DisplacementCover::areAligned(value, first())) rank += kBonus;
  if (isEndShift) rank += kBonus;
  // Where bytes are only missing, or only too many, chunks move more and more the one way.
  const std::int64_t end = cover_.endShift.value_or(0);
  if (end != 0 && value >= std::min(first(), end) && value <= std::max(first(), end)) rank += kBonus / 3;
  return rank;
}

/// How many of the headers stand where the original had nothing that the entries know: they may be of chunks that the
/// index does not name. Some films leave less than a chunk between all of their chunks, where none can have been.
std::uint64_t Cover::unnamed(const Group& group, bool alsoInSmallGaps) const {
  std::uint64_t count = 0;
  for (std::size_t i = group.begin; i < group.end; ++i) {
    if (!isOpen(pairs_[i])) continue;
    const Candidate& header = candidates_[pairs_[i].candidate()];
    const std::int64_t place = static_cast<std::int64_t>(header.offset()) - first();
    const auto after = std::ranges::upper_bound(entries_, static_cast<std::uint64_t>(std::max<std::int64_t>(0, place)),
                                                {}, &TemplateEntry::offset);
    const bool isBetween =
        place < 0 || after == entries_.begin() || std::prev(after)->end() + 1 < static_cast<std::uint64_t>(place);
    const bool hasRoom =
        after == entries_.end() || static_cast<std::int64_t>(after->offset) >= place + 8 + header.size();
    if (isBetween && (hasRoom || alsoInSmallGaps)) ++count;
  }
  return count;
}

/// Whether the film moved so little from its beginning to its index that between these two no header of another chunk
/// can stand where this one is looked for.
bool Cover::liesBetweenEnds(const Group& group, const Gain& gain) const {
  if (!cover_.endShift || cover_.values.empty()) return false;
  const auto [least, most] = std::minmax({std::int64_t{0}, *cover_.endShift});
  const std::int64_t value = pairs_[group.begin].displacement();
  return value >= least && value <= most && most - least < std::int64_t{gain.largest};
}

bool Cover::isAcceptable(const Group& group, const Gain& gain) const {
  if (liesBetweenEnds(group, gain)) return true;
  // Common sizes fit anywhere.
  if (gain.uniqueness < kUnique && !cover_.values.empty() && unnamed(group, false) * 2 > gain.entries) return false;
  const bool isNearlyAll = unexplained_ * 20 <= entries_.size();
  if (gain.entries >= kMany && (gain.neighbours > 0 || isNearlyAll)) return true;
  if (gain.uniqueness >= kUnique || gain.neighbours >= 2) return true;
  return DisplacementCover::areAligned(pairs_[group.begin].displacement(), first()) &&
         unexplained_ * 4 <= entries_.size() && unnamed(group, true) == 0;
}

/// Whether what explains so much may be acceptable when all others are chosen. It never comes to more.
bool Cover::mayBeAcceptable(const Group& group, const Gain& gain) const {
  return gain.entries >= kMany || gain.uniqueness >= kUnique || gain.neighbours >= 2 || cover_.values.empty() ||
         liesBetweenEnds(group, gain) || DisplacementCover::areAligned(pairs_[group.begin].displacement(), first());
}

void Cover::rankAgain(std::priority_queue<Group>& queue) const {
  std::priority_queue<Group> ranked;
  for (; !queue.empty(); queue.pop()) {
    Group group = queue.top();
    group.rank = rankOf(group, gainOf(group));
    ranked.push(group);
  }
  queue = std::move(ranked);
}

/// Takes displacements of the joined pairs until none explains enough. True when one was taken.
bool Cover::choose() {
  sortByNumber(std::span(pairs_), &Pair::key);
  // How often each entry and each header is paired says how much one pair is worth.
  std::vector<std::uint16_t> ofEntry(entries_.size());
  std::vector<std::uint16_t> ofCandidate(candidates_.size());
  const auto countUp = [](std::uint16_t& count) {
    // More than 1000 are worth nothing.
    if (count < 0xffff) ++count;
  };
  for (const Pair& pair : pairs_) {
    countUp(ofEntry[pair.entry()]);
    countUp(ofCandidate[pair.candidate()]);
  }
  multiplicity_.clear();
  multiplicity_.reserve(pairs_.size());
  for (const Pair& pair : pairs_)
    multiplicity_.push_back(std::max(ofEntry[pair.entry()], ofCandidate[pair.candidate()]));
  std::priority_queue<Group> queue;
  for (std::size_t begin = 0; begin < pairs_.size();) {
    Group group{begin, begin, 0};
    while (group.end < pairs_.size() && pairs_[group.end].displacement() == pairs_[begin].displacement()) ++group.end;
    begin = group.end;
    const Gain gain = gainOf(group);
    if (!mayBeAcceptable(group, gain)) continue;
    group.rank = rankOf(group, gain);
    queue.push(group);
  }
  bool hasTaken = false;
  while (!queue.empty() && cover_.values.size() < limits_.displacements) {
    Group group = queue.top();
    queue.pop();
    const Gain gain = gainOf(group);
    if (gain.entries == 0) continue;
    const std::int64_t rank = rankOf(group, gain);
    if (rank < group.rank) {
      group.rank = rank;
      queue.push(group);
      continue;
    }
    if (!isAcceptable(group, gain)) continue;
    const std::int64_t value = pairs_[group.begin].displacement();
    const auto known = std::ranges::find(cover_.values, value);
    const auto number = static_cast<std::uint16_t>(known - cover_.values.begin());
    const bool isFirst = cover_.values.empty();
    if (known == cover_.values.end()) cover_.values.push_back(value);
    for (std::size_t i = group.begin; i < group.end; ++i) {
      if (!isOpen(pairs_[i])) continue;
      explain(pairs_[i].entry(), pairs_[i].candidate(), number);
      follow(pairs_[i], number);
    }
    // Only now is it known which others are aligned with the first, and these rise.
    if (isFirst) rankAgain(queue);
    hasTaken = true;
  }
  return hasTaken;
}

DisplacementCover Cover::run() {
  walk(0);
  if (cover_.endShift && unexplained_ > 0) walk(*cover_.endShift);
  // Where sizes are common, a round has pairs for a part of the film alone.
  constexpr int kRounds = 8;
  constexpr int kSureRounds = 3;
  constexpr std::size_t kWorthAnother = 16;
  for (int round = 0; round < kRounds && unexplained_ > 0; ++round) {
    const std::size_t before = unexplained_;
    joinRare();
    bool hasTaken = choose();
    if (unexplained_ == 0) break;
    joinNear();
    hasTaken = choose() || hasTaken;
    const bool isWorthIt = round + 1 < kSureRounds || (before - unexplained_) * kWorthAnother >= before;
    if (!hasTaken || !isWorthIt) break;
  }
  return std::move(cover_);
}

}  // namespace

DisplacementCover coverEntries(std::span<const TemplateEntry> entries, const CandidateList& candidates,
                               std::uint64_t indexBegin, std::uint64_t dataEnd, const DisplacementLimits& limits) {
  return Cover(entries, candidates, indexBegin, dataEnd, limits).run();
}

}  // namespace zelvo::salvage
