/// Which displacements explain the entries of an index, worked out by trying every pair and ranking all displacements
/// again after each choice, for comparison with the search that is fast.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <optional>
#include <span>
#include <vector>

#include "salvage/chain/displacements.h"
#include "salvage/scan/candidate.h"
#include "salvage/scan/index_template.h"

namespace zelvo::tests::literal {

/// As salvage::coverEntries with limits that nothing reaches. Takes a time that grows with the square of the pairs.
class Cover {
 public:
  Cover(std::span<const salvage::TemplateEntry> entries, const salvage::CandidateList& candidates,
        std::uint64_t indexBegin, std::uint64_t dataEnd)
      : entries_(entries), candidates_(candidates), dataEnd_(dataEnd) {
    made_.ofEntry.assign(entries.size(), salvage::DisplacementCover::kNone);
    made_.isClaimed.assign(candidates.size(), 0);
    if (indexBegin >= 8 && !entries.empty()) {
      const std::uint64_t end = entries.back().end() + entries.back().size % 2;
      made_.endShift = static_cast<std::int64_t>(indexBegin - 8) - static_cast<std::int64_t>(end);
    }
  }

  [[nodiscard]] salvage::DisplacementCover run() {
    walk(0);
    if (made_.endShift && left() > 0) walk(*made_.endShift);
    for (int round = 0; round < 8 && left() > 0; ++round) {
      const std::size_t before = left();
      bool hasTaken = choose(pairs(true));
      if (left() == 0) break;
      hasTaken = choose(pairs(false)) || hasTaken;
      if (!hasTaken || (round >= 2 && (before - left()) * 16 < before)) break;
    }
    return made_;
  }

 private:
  struct Pair {
    std::size_t entry;
    std::size_t candidate;
  };
  using Groups = std::map<std::int64_t, std::vector<Pair>>;

  [[nodiscard]] bool isOpen(std::size_t entry) const {
    return made_.ofEntry[entry] == salvage::DisplacementCover::kNone;
  }
  [[nodiscard]] bool isOpen(const Pair& pair) const {
    return isOpen(pair.entry) && made_.isClaimed[pair.candidate] == 0;
  }
  [[nodiscard]] std::size_t left() const {
    return static_cast<std::size_t>(std::ranges::count(made_.ofEntry, salvage::DisplacementCover::kNone));
  }
  [[nodiscard]] bool isAlike(std::size_t entry, std::size_t candidate) const {
    return candidates_[candidate].kind() == salvage::CandidateKind::data &&
           candidates_[candidate].stream() == entries_[entry].stream &&
           candidates_[candidate].size() == entries_[entry].size;
  }
  [[nodiscard]] std::int64_t displacementOf(const Pair& pair) const {
    return static_cast<std::int64_t>(candidates_[pair.candidate].offset()) -
           static_cast<std::int64_t>(entries_[pair.entry].offset);
  }
  [[nodiscard]] std::optional<std::size_t> headerOf(std::size_t entry, std::int64_t displacement) const {
    for (std::size_t i = 0; i < candidates_.size(); ++i) {
      if (made_.isClaimed[i] == 0 && isAlike(entry, i) && displacementOf({entry, i}) == displacement) return i;
    }
    return std::nullopt;
  }
  [[nodiscard]] bool isAligned(std::int64_t displacement) const {
    return (displacement - (made_.values.empty() ? 0 : made_.values.front())) % 4096 == 0;
  }
  [[nodiscard]] std::uint16_t numberOf(std::int64_t displacement) {
    const auto known = std::ranges::find(made_.values, displacement);
    const auto number = static_cast<std::uint16_t>(known - made_.values.begin());
    if (known == made_.values.end()) made_.values.push_back(displacement);
    return number;
  }
  void explain(const Pair& pair, std::uint16_t number) {
    made_.ofEntry[pair.entry] = number;
    made_.isClaimed[pair.candidate] = 1;
  }

  void walk(std::int64_t displacement) {
    std::vector<Pair> found;
    std::size_t neighbours = 0;
    for (std::size_t i = 0; i < entries_.size(); ++i) {
      if (!isOpen(i)) continue;
      const auto header = headerOf(i, displacement);
      if (!header) continue;
      if (!found.empty() && found.back().entry + 1 == i) ++neighbours;
      found.push_back({i, *header});
    }
    if ((found.size() < 4 || neighbours == 0) && found.size() * 2 < left()) return;
    if (found.empty() || std::ranges::find(made_.values, displacement) != made_.values.end()) return;
    const std::uint16_t number = numberOf(displacement);
    for (const Pair& pair : found) explain(pair, number);
  }

  /// Pairs of what is left, of rare sizes or of all. Of sizes with more than 40 000 pairs, which films here do not
  /// have, the real search takes near ones alone.
  [[nodiscard]] std::vector<Pair> pairs(bool onlyRare) const {
    const auto alike = [&](std::size_t entry) {
      std::vector<std::size_t> headers;
      for (std::size_t i = 0; i < candidates_.size(); ++i) {
        if (made_.isClaimed[i] == 0 && isAlike(entry, i)) headers.push_back(i);
      }
      return headers;
    };
    std::vector<Pair> made;
    for (std::size_t entry = 0; entry < entries_.size(); ++entry) {
      if (!isOpen(entry)) continue;
      std::size_t others = 0;
      for (std::size_t i = 0; i < entries_.size(); ++i) {
        if (isOpen(i) && entries_[i].stream == entries_[entry].stream && entries_[i].size == entries_[entry].size)
          ++others;
      }
      const auto headers = alike(entry);
      if (onlyRare && (others > 8 || headers.size() > 8)) continue;
      for (const std::size_t header : headers) made.push_back({entry, header});
    }
    return made;
  }

  [[nodiscard]] std::vector<Pair> openOf(const std::vector<Pair>& group) const {
    std::vector<Pair> open;
    for (const Pair& pair : group) {
      if (isOpen(pair)) open.push_back(pair);
    }
    return open;
  }
  [[nodiscard]] std::int64_t rankOf(std::int64_t displacement, std::size_t entries) const {
    const bool isEndShift = made_.endShift == displacement;
    const bool isNear = std::abs(displacement) <= 65'536 + static_cast<std::int64_t>(dataEnd_ / 50);
    std::int64_t rank =
        static_cast<std::int64_t>(entries) * (isNear || isEndShift || isAligned(displacement) ? 200 : 100);
    if (isAligned(displacement)) rank += 300;
    if (isEndShift) rank += 300;
    const std::int64_t first = made_.values.empty() ? 0 : made_.values.front();
    const std::int64_t end = made_.endShift.value_or(0);
    if (end != 0 && std::min(first, end) <= displacement && displacement <= std::max(first, end)) rank += 100;
    return rank;
  }
  /// How many of the headers stand where the original had no chunk that the entries know, and room for one.
  [[nodiscard]] std::size_t unnamed(const std::vector<Pair>& open, bool alsoInSmallGaps) const {
    const std::int64_t first = made_.values.empty() ? 0 : made_.values.front();
    return static_cast<std::size_t>(std::ranges::count_if(open, [&](const Pair& pair) {
      const std::int64_t place = static_cast<std::int64_t>(candidates_[pair.candidate].offset()) - first;
      const std::int64_t end = place + 8 + candidates_[pair.candidate].size();
      const bool hasRoom = std::ranges::none_of(entries_, [&](const salvage::TemplateEntry& entry) {
        const auto begin = static_cast<std::int64_t>(entry.offset);
        return begin > std::max<std::int64_t>(0, place) && begin < end;
      });
      return (hasRoom || alsoInSmallGaps) && !std::ranges::any_of(entries_, [&](const salvage::TemplateEntry& entry) {
               const auto begin = static_cast<std::int64_t>(entry.offset);
               return begin <= place && place <= static_cast<std::int64_t>(entry.end()) + 1 &&
                      std::ranges::none_of(entries_, [&](const salvage::TemplateEntry& later) {
                        return later.offset > entry.offset && static_cast<std::int64_t>(later.offset) <= place;
                      });
             });
    }));
  }

  /// Whether what moved from the film's beginning to its index is less than one of the chunks.
  [[nodiscard]] bool liesBetweenEnds(std::int64_t displacement, const std::vector<Pair>& open) const {
    if (!made_.endShift || made_.values.empty()) return false;
    const std::int64_t least = std::min<std::int64_t>(0, *made_.endShift);
    const std::int64_t most = std::max<std::int64_t>(0, *made_.endShift);
    return least <= displacement && displacement <= most && std::ranges::any_of(open, [&](const Pair& pair) {
             return static_cast<std::int64_t>(entries_[pair.entry].size) > most - least;
           });
  }

  bool choose(const std::vector<Pair>& all) {
    Groups groups;
    std::map<std::size_t, std::uint64_t> ofEntry;
    std::map<std::size_t, std::uint64_t> ofCandidate;
    for (const Pair& pair : all) {
      groups[displacementOf(pair)].push_back(pair);
      ++ofEntry[pair.entry];
      ++ofCandidate[pair.candidate];
    }
    for (auto& [displacement, group] : groups) std::ranges::sort(group, {}, &Pair::entry);
    bool hasTaken = false;
    while (true) {
      std::optional<std::int64_t> best;
      std::int64_t bestRank = 0;
      for (const auto& [displacement, group] : groups) {
        const auto open = openOf(group);
        if (open.empty()) continue;
        const std::int64_t rank = rankOf(displacement, open.size());
        if (best && rank <= bestRank) continue;
        best = displacement;
        bestRank = rank;
      }
      if (!best) return hasTaken;
      const std::vector<Pair> open = openOf(groups[*best]);
      std::size_t neighbours = 0;
      std::uint64_t uniqueness = 0;
      for (std::size_t i = 0; i < open.size(); ++i) {
        uniqueness += 1000 / std::max(ofEntry[open[i].entry], ofCandidate[open[i].candidate]);
        if (i > 0 && open[i - 1].entry + 1 == open[i].entry) ++neighbours;
      }
      const bool isNearlyAll = left() * 20 <= entries_.size();
      const bool mayBeUnnamed = uniqueness < 950 && !made_.values.empty() && unnamed(open, false) * 2 > open.size();
      const bool isGood =
          liesBetweenEnds(*best, open) ||
          (!mayBeUnnamed &&
           ((open.size() >= 4 && (neighbours > 0 || isNearlyAll)) || uniqueness >= 950 || neighbours >= 2 ||
            (isAligned(*best) && left() * 4 <= entries_.size() && unnamed(open, true) == 0)));
      if (isGood) {
        take(*best, groups[*best]);
        hasTaken = true;
      }
      groups.erase(*best);
    }
  }

  void take(std::int64_t displacement, const std::vector<Pair>& group) {
    const std::uint16_t number = numberOf(displacement);
    for (const Pair& pair : group) {
      if (!isOpen(pair)) continue;
      explain(pair, number);
      for (const int step : {1, -1}) {
        int misses = 0;
        for (auto at = static_cast<std::ptrdiff_t>(pair.entry) + step;
             at >= 0 && at < std::ssize(entries_) && isOpen(static_cast<std::size_t>(at)); at += step) {
          const auto header = headerOf(static_cast<std::size_t>(at), displacement);
          if (header) {
            explain({static_cast<std::size_t>(at), *header}, number);
            misses = 0;
          } else if (++misses > 4) {
            break;
          }
        }
      }
    }
  }

  std::span<const salvage::TemplateEntry> entries_;
  const salvage::CandidateList& candidates_;
  const std::uint64_t dataEnd_;
  salvage::DisplacementCover made_;
};

}  // namespace zelvo::tests::literal
