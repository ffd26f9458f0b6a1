// A stretch is a row of explained entries with one displacement. A few unexplained ones may lie between; where a long
// row of them does, chunks were lost, and what stands on either side is judged by itself.
#include <algorithm>

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
  std::uint64_t looks = 0;
  for (const Stretch& stretch : stretches) {
    // In a film's own index a size that no other entry has speaks for itself.
    if (stretch.isFirm(entries.size()) || (!isStrict && stretch.unique * 2 >= stretch.entries)) continue;
    for (std::size_t i = stretch.first; i <= stretch.last; ++i) {
      if (cover.ofEntry[i] == DisplacementCover::kNone) continue;
      const std::int64_t header = static_cast<std::int64_t>(entries[i].offset) + cover.values[cover.ofEntry[i]];
      const std::size_t at = candidates.firstAtOrAfter(static_cast<std::uint64_t>(header), 0, looks);
      cover.isClaimed[at] = 0;
      cover.ofEntry[i] = DisplacementCover::kNone;
    }
  }
}

}  // namespace zelvo::salvage
