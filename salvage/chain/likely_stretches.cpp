#include "salvage/chain/likely_stretches.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <utility>
#include <vector>

namespace zelvo::salvage {

namespace {

constexpr int kPasses = 3;
constexpr std::size_t kMaxDisplacements = 1'000;
/// A stretch goes on after so many entries that nothing explains.
constexpr std::size_t kLongestHole = 64;
/// It is tried so many entries before and after, and the likeliest of these places in full.
constexpr std::size_t kFarthest = 4'096;
constexpr std::size_t kTried = 6;
/// Headers and entries that are compared beside a stretch.
constexpr std::size_t kMaxHeaders = 64;
constexpr std::size_t kMaxEntries = 64;

class Moving {
 public:
  Moving(DisplacementCover& cover, std::span<const TemplateEntry> entries, const CandidateList& candidates,
         std::uint64_t dataEnd)
      : cover_(cover), entries_(entries), candidates_(candidates), dataEnd_(dataEnd) {}

  void run();

 private:
  struct Stretch {
    std::size_t first = 0;
    std::size_t last = 0;
    std::int64_t displacement = 0;
  };

  /// A header that stands for a lost entry.
  struct Match {
    std::size_t entry = 0;
    std::size_t candidate = 0;
    std::int64_t displacement = 0;
  };

  /// A stretch at another place, `by` entries further.
  struct Place {
    std::int64_t by = 0;
    std::int64_t displacement = 0;
    std::uint64_t bytes = 0;       ///< missing and added on both sides of it
    std::vector<Match> matches{};  ///< beside it
  };

  struct Move {
    std::size_t stretch = 0;
    std::int64_t matched = 0;  ///< more headers beside it than where it stands
    std::int64_t spared = 0;   ///< bytes that are neither missing nor added any more
    Place place;
  };

  void collect();
  [[nodiscard]] std::int64_t valueOf(std::size_t entry) const { return cover_.values[cover_.ofEntry[entry]]; }
  [[nodiscard]] bool isExplained(std::size_t entry) const { return cover_.ofEntry[entry] != DisplacementCover::kNone; }
  [[nodiscard]] std::optional<std::int64_t> displacementBefore(std::size_t stretch) const;
  [[nodiscard]] std::optional<std::int64_t> displacementAfter(std::size_t stretch) const;
  [[nodiscard]] std::optional<Place> placeBy(std::size_t stretch, std::int64_t by) const;
  [[nodiscard]] bool repeats(const Stretch& stretch, std::int64_t by) const;
  void match(std::size_t stretch, Place& place);
  void matchHole(std::size_t first, std::size_t end, std::int64_t from, std::int64_t to, std::uint64_t begin,
                 std::uint64_t stop, std::vector<Match>& matches);
  [[nodiscard]] std::vector<Place> placesFor(std::size_t stretch);
  [[nodiscard]] std::optional<Move> moveOf(std::size_t stretch);
  void make(const Move& move);
  [[nodiscard]] std::optional<std::uint16_t> numberOf(std::int64_t displacement);

  DisplacementCover& cover_;
  std::span<const TemplateEntry> entries_;
  const CandidateList& candidates_;
  const std::uint64_t dataEnd_;
  std::vector<Stretch> stretches_;
  std::uint64_t looks_ = 0;
};

void Moving::collect() {
  stretches_.clear();
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    if (!isExplained(i)) continue;
    const bool goesOn = !stretches_.empty() && stretches_.back().displacement == valueOf(i) &&
                        i - stretches_.back().last <= kLongestHole;
    if (!goesOn) stretches_.push_back({i, i, valueOf(i)});
    stretches_.back().last = i;
  }
}

std::optional<std::int64_t> Moving::displacementBefore(std::size_t stretch) const {
  if (stretch == 0) return std::nullopt;
  return stretches_[stretch - 1].displacement;
}

std::optional<std::int64_t> Moving::displacementAfter(std::size_t stretch) const {
  if (stretch + 1 == stretches_.size()) return cover_.endShift;
  return stretches_[stretch + 1].displacement;
}

/// The stretch so many entries further, when its first header would do.
std::optional<Moving::Place> Moving::placeBy(std::size_t stretch, std::int64_t by) const {
  const Stretch& own = stretches_[stretch];
  const TemplateEntry& first = entries_[own.first];
  const TemplateEntry& other = entries_[static_cast<std::size_t>(static_cast<std::int64_t>(own.first) + by)];
  if (first.stream != other.stream || first.size != other.size) return std::nullopt;
  Place place{by, own.displacement + static_cast<std::int64_t>(first.offset) - static_cast<std::int64_t>(other.offset)};
  for (const auto beside : {displacementBefore(stretch), displacementAfter(stretch)}) {
    if (beside) place.bytes += static_cast<std::uint64_t>(std::abs(place.displacement - *beside));
  }
  return place;
}

/// Whether all of its headers would do.
bool Moving::repeats(const Stretch& stretch, std::int64_t by) const {
  const auto moved = [&](std::size_t entry) -> const TemplateEntry& {
    return entries_[static_cast<std::size_t>(static_cast<std::int64_t>(entry) + by)];
  };
  const std::uint64_t apart = entries_[stretch.first].offset - moved(stretch.first).offset;
  for (std::size_t i = stretch.first; i <= stretch.last; ++i) {
    if (!isExplained(i)) continue;
    const TemplateEntry& other = moved(i);
    if (entries_[i].stream != other.stream || entries_[i].size != other.size ||
        entries_[i].offset - other.offset != apart)
      return false;
  }
  return true;
}

/// Headers from `begin` to `stop` that may stand for lost entries from `first` to `end`, so that chunks move more and
/// more the one way.
void Moving::matchHole(std::size_t first, std::size_t end, std::int64_t from, std::int64_t to, std::uint64_t begin,
                       std::uint64_t stop, std::vector<Match>& matches) {
  std::size_t at = candidates_.firstAtOrAfter(begin, 0, looks_);
  std::size_t entry = first;
  std::int64_t last = from;
  for (std::size_t headers = 0; headers < kMaxHeaders && at < candidates_.size(); ++at, ++headers) {
    const Candidate& header = candidates_[at];
    if (header.offset() >= stop) break;
    if (cover_.isClaimed[at] != 0 || header.kind() != CandidateKind::data) continue;
    for (std::size_t i = entry; i < std::min(end, entry + kMaxEntries); ++i) {
      const std::int64_t value =
          static_cast<std::int64_t>(header.offset()) - static_cast<std::int64_t>(entries_[i].offset);
      const bool isBetween = from <= to ? value >= last && value <= to : value <= last && value >= to;
      if (!isBetween || entries_[i].stream != header.stream() || entries_[i].size != header.size()) continue;
      matches.push_back({i, at, value});
      last = value;
      entry = i + 1;
      break;
    }
  }
}

void Moving::match(std::size_t stretch, Place& place) {
  const Stretch& own = stretches_[stretch];
  const auto shifted = [&](std::size_t entry) {
    return static_cast<std::size_t>(static_cast<std::int64_t>(entry) + place.by);
  };
  const auto headerOf = [&](std::size_t entry, std::int64_t displacement) {
    return static_cast<std::uint64_t>(static_cast<std::int64_t>(entries_[entry].offset) + displacement);
  };
  const std::uint64_t begin = headerOf(own.first, own.displacement);
  const std::uint64_t end = headerOf(own.last, own.displacement) + 1;
  if (const auto before = displacementBefore(stretch)) {
    const std::size_t last = stretches_[stretch - 1].last;
    matchHole(last + 1, shifted(own.first), *before, place.displacement, headerOf(last, *before) + 1, begin,
              place.matches);
  }
  if (const auto after = displacementAfter(stretch)) {
    const bool isLast = stretch + 1 == stretches_.size();
    const std::size_t next = isLast ? entries_.size() : stretches_[stretch + 1].first;
    matchHole(shifted(own.last) + 1, next, place.displacement, *after, end, isLast ? dataEnd_ : headerOf(next, *after),
              place.matches);
  }
}

/// The place that it has, and others with the least bytes missing and added.
std::vector<Moving::Place> Moving::placesFor(std::size_t stretch) {
  const Stretch& own = stretches_[stretch];
  const std::size_t before = stretch == 0 ? 0 : stretches_[stretch - 1].last + 1;
  const std::size_t after = stretch + 1 == stretches_.size() ? entries_.size() : stretches_[stretch + 1].first;
  std::vector<Place> places;
  for (std::size_t by = 1; by <= std::min(kFarthest, own.first - before); ++by) {
    if (const auto place = placeBy(stretch, -static_cast<std::int64_t>(by))) places.push_back(*place);
  }
  for (std::size_t by = 1; by <= std::min(kFarthest, after - own.last - 1); ++by) {
    if (const auto place = placeBy(stretch, static_cast<std::int64_t>(by))) places.push_back(*place);
  }
  std::ranges::stable_sort(places, {}, &Place::bytes);
  places.resize(std::min(places.size(), kTried));
  std::erase_if(places, [&](const Place& place) { return !repeats(own, place.by); });
  return places;
}

std::optional<std::uint16_t> Moving::numberOf(std::int64_t displacement) {
  const auto known = std::ranges::find(cover_.values, displacement);
  if (known == cover_.values.end()) {
    if (cover_.values.size() >= kMaxDisplacements) return std::nullopt;
    cover_.values.push_back(displacement);
    return static_cast<std::uint16_t>(cover_.values.size() - 1);
  }
  return static_cast<std::uint16_t>(known - cover_.values.begin());
}

/// The likeliest place of a stretch; nothing when that is where it stands.
std::optional<Moving::Move> Moving::moveOf(std::size_t stretch) {
  if (stretches_[stretch].displacement == 0) return std::nullopt;
  std::vector<Place> places = placesFor(stretch);
  auto own = placeBy(stretch, 0);
  if (places.empty() || !own) return std::nullopt;
  match(stretch, *own);
  for (Place& place : places) match(stretch, place);
  const auto best = std::ranges::min_element(places, [](const Place& one, const Place& other) {
    return one.matches.size() != other.matches.size() ? one.matches.size() > other.matches.size()
                                                      : one.bytes < other.bytes;
  });
  const auto matched = static_cast<std::int64_t>(best->matches.size()) - static_cast<std::int64_t>(own->matches.size());
  const auto spared = static_cast<std::int64_t>(own->bytes) - static_cast<std::int64_t>(best->bytes);
  if (matched < 0 || (matched == 0 && spared <= 0)) return std::nullopt;
  return Move{stretch, matched, spared, std::move(*best)};
}

void Moving::make(const Move& move) {
  const auto number = numberOf(move.place.displacement);
  if (!number) return;
  const Stretch& moved = stretches_[move.stretch];
  std::vector<std::size_t> explained;
  for (std::size_t i = moved.first; i <= moved.last; ++i) {
    if (isExplained(i)) explained.push_back(i);
    cover_.ofEntry[i] = DisplacementCover::kNone;
  }
  for (const std::size_t entry : explained)
    cover_.ofEntry[static_cast<std::size_t>(static_cast<std::int64_t>(entry) + move.place.by)] = *number;
  for (const Match& match : move.place.matches) {
    const auto ofMatch = numberOf(match.displacement);
    if (!ofMatch) continue;
    cover_.ofEntry[match.entry] = *ofMatch;
    cover_.isClaimed[match.candidate] = 1;
  }
}

void Moving::run() {
  for (int pass = 0; pass < kPasses; ++pass) {
    collect();
    std::vector<Move> moves;
    for (std::size_t i = 0; i < stretches_.size(); ++i) {
      if (auto move = moveOf(i)) moves.push_back(std::move(*move));
    }
    if (moves.empty()) break;
    // The surest first. What stands beside it is looked at again in the next pass.
    std::ranges::stable_sort(moves, [](const Move& one, const Move& other) {
      return one.matched != other.matched ? one.matched > other.matched : one.spared > other.spared;
    });
    std::vector<bool> isFixed(stretches_.size() + 2, false);
    for (const Move& move : moves) {
      if (isFixed[move.stretch + 1]) continue;
      make(move);
      for (std::size_t i = move.stretch; i <= move.stretch + 2; ++i) isFixed[i] = true;
    }
  }
}

}  // namespace

void moveToLikelier(DisplacementCover& cover, std::span<const TemplateEntry> entries, const CandidateList& candidates,
                    std::uint64_t dataEnd) {
  Moving(cover, entries, candidates, dataEnd).run();
}

}  // namespace zelvo::salvage
