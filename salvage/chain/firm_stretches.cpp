// A stretch is a row of explained entries with one displacement. A few unexplained ones may lie between; where a long
// row of them does, chunks were lost, and what stands on either side is judged by itself.
#include <algorithm>
#include <optional>
#include <utility>

#include "salvage/chain/displacements.h"
#include "salvage/scan/number_sort.h"

namespace zelvo::salvage {

namespace {

constexpr std::size_t kShort = 6;
constexpr std::size_t kShortPercent = 40;
constexpr std::size_t kShortUnique = 3;
constexpr std::size_t kLong = 12;
constexpr std::size_t kLongPercent = 80;
constexpr std::size_t kFirmPercent = 70;
constexpr std::uint32_t kLongHole = 64;
/// So much that clusters in another order explain of an index is no chance.
constexpr std::size_t kReorderedPercent = 90;

struct Stretch {
  std::uint32_t first = 0;
  std::uint32_t last = 0;
  std::uint32_t entries = 0;  ///< that are explained
  std::uint32_t unique = 0;   ///< of these, those whose size no other entry has

  /// `all`: entries of the whole index.
  [[nodiscard]] bool isFirm(std::size_t all) const {
    const std::size_t span = std::size_t{last} - first + 1;
    const bool isDense = std::size_t{entries} * 100 >= span * kLongPercent;
    if (isDense && std::size_t{entries} * 2 > all) return true;
    return (entries >= kShort && unique >= kShortUnique && std::size_t{entries} * 100 >= span * kShortPercent) ||
           (entries >= kLong && isDense);
  }
};

std::uint64_t keyOf(std::uint8_t stream, std::uint32_t size) { return std::uint64_t{stream} << 32U | size; }

/// Streams and sizes that occur once among entries, rising.
std::vector<std::uint64_t> onceOf(std::vector<std::uint64_t> keys) {
  sortNumbers(keys);
  std::size_t kept = 0;
  for (std::size_t i = 0; i < keys.size();) {
    std::size_t end = i;
    while (end < keys.size() && keys[end] == keys[i]) ++end;
    if (end == i + 1) keys[kept++] = keys[i];
    i = end;
  }
  keys.resize(kept);
  return keys;
}

std::uint32_t smallestOf(const Stretch& stretch, std::span<const TemplateEntry> entries) {
  const auto all = entries.subspan(stretch.first, stretch.last - stretch.first + 1);
  return std::ranges::min_element(all, {}, &TemplateEntry::size)->size;
}

/// Where bytes were only put in or only left out, little by little, chunks between two places that are sure moved no
/// less than the one and no more than the other. When that leaves less room than a chunk takes, no header of another
/// chunk stands there, however common its size.
class Bounds {
 public:
  /// `isSure`: of each stretch. The film's beginning has not moved, and its end as far as the index.
  Bounds(const DisplacementCover& cover, const std::vector<Stretch>& stretches, const std::vector<bool>& isSure)
      : behind_(stretches.size()) {
    std::optional<std::int64_t> next = cover.endShift;
    for (std::size_t i = stretches.size(); i > 0; --i) {
      behind_[i - 1] = next;
      if (isSure[i - 1]) next = cover.values[cover.ofEntry[stretches[i - 1].first]];
    }
  }

  /// Stretches are asked for in their order. `smallest`: of the payloads of the stretch.
  [[nodiscard]] bool hold(std::size_t number, std::int64_t value, std::uint32_t smallest) const {
    if (!behind_[number]) return false;
    const auto [least, most] = std::minmax({front_, *behind_[number]});
    return value >= least && value <= most && most - least < std::int64_t{smallest};
  }
  /// The stretch that was asked for last is sure.
  void isFront(std::int64_t value) { front_ = value; }

 private:
  std::vector<std::optional<std::int64_t>> behind_;  ///< of the first sure one behind each
  std::int64_t front_ = 0;
};

/// Notes how many entries of each stretch have a size of their own.
void countUnique(std::vector<Stretch>& stretches, const DisplacementCover& cover,
                 std::span<const TemplateEntry> entries) {
  std::vector<std::uint64_t> keys;
  keys.reserve(entries.size());
  for (const TemplateEntry& entry : entries) keys.push_back(keyOf(entry.stream, entry.size));
  const std::vector<std::uint64_t> once = onceOf(std::move(keys));
  for (Stretch& stretch : stretches) {
    for (std::size_t i = stretch.first; i <= stretch.last; ++i) {
      if (cover.ofEntry[i] == DisplacementCover::kNone) continue;
      if (std::ranges::binary_search(once, keyOf(entries[i].stream, entries[i].size))) ++stretch.unique;
    }
  }
}

}  // namespace

void dropChance(DisplacementCover& cover, std::span<const TemplateEntry> entries, const CandidateList& candidates,
                bool isStrict) {
  std::vector<Stretch> stretches;
  for (std::uint32_t i = 0; i < entries.size(); ++i) {
    if (cover.ofEntry[i] == DisplacementCover::kNone) continue;
    const bool goesOn = !stretches.empty() && cover.ofEntry[stretches.back().last] == cover.ofEntry[i] &&
                        i - stretches.back().last <= kLongHole;
    if (!goesOn) stretches.push_back({i, i, 0, 0});
    stretches.back().last = i;
    ++stretches.back().entries;
  }
  const auto areMostFirm = [&] {
    std::size_t firm = 0;
    for (const Stretch& stretch : stretches) firm += stretch.isFirm(entries.size()) ? stretch.entries : 0;
    return firm * 100 >= entries.size() * kFirmPercent;
  };
  // Whole clusters that changed places leave short stretches, but a whole number of clusters between any two.
  const auto areReordered = [&] {
    std::size_t explained = 0;
    for (const Stretch& stretch : stretches) explained += stretch.entries;
    const auto valueOf = [&](const Stretch& stretch) { return cover.values[cover.ofEntry[stretch.first]]; };
    return explained * 100 >= entries.size() * kReorderedPercent &&
           std::ranges::all_of(stretches, [&](const Stretch& stretch) {
             return DisplacementCover::areAligned(valueOf(stretch), valueOf(stretches.front()));
           });
  };
  if (!isStrict && areReordered()) return;
  // Mostly it is plain before all sizes are counted.
  if (!isStrict && areMostFirm()) return;
  countUnique(stretches, cover, entries);
  if (!isStrict && areMostFirm()) return;
  std::vector<bool> isSure;
  for (const Stretch& stretch : stretches) {
    // In a film's own index a size that no other entry has speaks for itself.
    isSure.push_back(stretch.isFirm(entries.size()) || (!isStrict && stretch.unique * 2 >= stretch.entries));
  }
  Bounds bounds(cover, stretches, isSure);
  std::uint64_t looks = 0;
  for (std::size_t number = 0; number < stretches.size(); ++number) {
    const Stretch& stretch = stretches[number];
    const std::int64_t value = cover.values[cover.ofEntry[stretch.first]];
    if (isSure[number] || (!isStrict && bounds.hold(number, value, smallestOf(stretch, entries)))) {
      bounds.isFront(value);
      continue;
    }
    for (std::size_t i = stretch.first; i <= stretch.last; ++i) {
      if (cover.ofEntry[i] == DisplacementCover::kNone) continue;
      const std::int64_t header = static_cast<std::int64_t>(entries[i].offset) + value;
      const std::size_t at = candidates.firstAtOrAfter(static_cast<std::uint64_t>(header), 0, looks);
      cover.isClaimed[at] = 0;
      cover.ofEntry[i] = DisplacementCover::kNone;
    }
  }
}

}  // namespace zelvo::salvage
