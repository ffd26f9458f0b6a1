#include "salvage/chain/lone_stretches.h"

#include <algorithm>
#include <iterator>

#include "avi/chunk_codes.h"

namespace zelvo::salvage {

namespace {

/// A chunk that closes on another is looked for so many candidates in front of it.
constexpr std::size_t kMaxBack = 64;
/// So many entries may have found chunks of their sizes by chance where the index knows of none.
constexpr std::size_t kFew = 4;

class Dropping {
 public:
  Dropping(DisplacementCover& cover, std::span<const TemplateEntry> entries, const CandidateList& candidates,
           const ChunkChain& chain)
      : cover_(cover), entries_(entries), candidates_(candidates), chain_(chain) {}

  void run();

 private:
  [[nodiscard]] std::size_t headerOf(std::size_t entry) {
    const std::int64_t header =
        static_cast<std::int64_t>(entries_[entry].offset) + cover_.values[cover_.ofEntry[entry]];
    return candidates_.firstAtOrAfter(static_cast<std::uint64_t>(header), 0, looks_);
  }
  [[nodiscard]] bool areAdjacent(std::size_t entry) const {
    return entries_[entry].end() + entries_[entry].size % 2 == entries_[entry + 1].offset;
  }
  /// How the chain goes on at an end of a stretch.
  enum class Neighbour {
    expected,  ///< as the index has it, for all that is known
    other,     ///< with a chunk that the index has not there
    claimed,   ///< with one that would do, but the index has its own one elsewhere, and this one for another entry
    unknown,   ///< the same, and no entry names this one
  };

  [[nodiscard]] Neighbour neighbour(std::size_t candidate, std::size_t entry);
  [[nodiscard]] Neighbour after(std::size_t last);
  [[nodiscard]] Neighbour before(std::size_t first);
  [[nodiscard]] bool standsInHole(std::size_t entry);
  [[nodiscard]] bool isLone(std::size_t first, std::size_t last);

  DisplacementCover& cover_;
  std::span<const TemplateEntry> entries_;
  const CandidateList& candidates_;
  const ChunkChain& chain_;
  std::uint64_t looks_ = 0;
};

/// What a chunk is that stands where an entry's should.
Dropping::Neighbour Dropping::neighbour(std::size_t candidate, std::size_t entry) {
  const Candidate& chunk = candidates_[candidate];
  if (chunk.kind() != CandidateKind::data || !chain_.closes(candidate)) return Neighbour::expected;
  if (chunk.stream() != entries_[entry].stream || chunk.size() != entries_[entry].size) return Neighbour::other;
  if (cover_.ofEntry[entry] == DisplacementCover::kNone || headerOf(entry) == candidate) return Neighbour::expected;
  return cover_.isClaimed[candidate] != 0 ? Neighbour::claimed : Neighbour::unknown;
}

Dropping::Neighbour Dropping::after(std::size_t last) {
  if (last + 1 >= entries_.size() || !areAdjacent(last)) return Neighbour::expected;
  const std::uint32_t next = chain_.next(headerOf(last));
  return next == ChunkChain::kNone ? Neighbour::expected : neighbour(next, last + 1);
}

Dropping::Neighbour Dropping::before(std::size_t first) {
  if (first == 0 || !areAdjacent(first - 1)) return Neighbour::expected;
  const std::size_t header = headerOf(first);
  for (std::size_t at = header; at > 0 && header - at < kMaxBack; --at) {
    if (chain_.next(at - 1) == header) return neighbour(at - 1, first - 1);
  }
  return Neighbour::expected;
}

/// Whether a header stands where, but for what moved, the index knows of no chunk, though there was room for some.
bool Dropping::standsInHole(std::size_t entry) {
  const Candidate& header = candidates_[headerOf(entry)];
  const std::int64_t place = static_cast<std::int64_t>(header.offset()) - cover_.values.front();
  if (place < 0) return false;
  const auto next = std::ranges::upper_bound(entries_, static_cast<std::uint64_t>(place), {}, &TemplateEntry::offset);
  if (next == entries_.begin() || next == entries_.end()) return false;
  return std::prev(next)->end() <= static_cast<std::uint64_t>(place) &&
         next->offset >= static_cast<std::uint64_t>(place) + avi::kChunkHeader + header.size();
}

/// Where chunks have one size, those that a lost part of the index named look like lost ones of another part.
bool Dropping::isLone(std::size_t first, std::size_t last) {
  const Neighbour behind = after(last);
  const Neighbour inFront = before(first);
  // Beside a part of the index that is lost, only one end tells. A few entries are then no match for the chunks there.
  const bool isBesideHole = first > 0 && last + 1 < entries_.size() && areAdjacent(first - 1) != areAdjacent(last);
  if (isBesideHole && last - first < kFew && (behind == Neighbour::other || inFront == Neighbour::other)) {
    return standsInHole(first);
  }
  if (behind == Neighbour::expected || inFront == Neighbour::expected) return false;
  if (behind == Neighbour::other && inFront == Neighbour::other) return true;
  // Doubled chunks are named by no entry, either, but then the index knows of chunks there.
  return (behind == Neighbour::unknown || inFront == Neighbour::unknown) && (standsInHole(first) || standsInHole(last));
}

void Dropping::run() {
  for (std::size_t first = 0; first < entries_.size();) {
    std::size_t end = first + 1;
    while (end < entries_.size() && cover_.ofEntry[end] == cover_.ofEntry[first]) ++end;
    const bool mayBeLone = cover_.ofEntry[first] != DisplacementCover::kNone && cover_.ofEntry[first] != 0;
    if (mayBeLone && isLone(first, end - 1)) {
      for (std::size_t i = first; i < end; ++i) {
        cover_.isClaimed[headerOf(i)] = 0;
        cover_.ofEntry[i] = DisplacementCover::kNone;
      }
    }
    first = end;
  }
}

}  // namespace

void dropLone(DisplacementCover& cover, std::span<const TemplateEntry> entries, const CandidateList& candidates,
              const ChunkChain& chain) {
  Dropping(cover, entries, candidates, chain).run();
}

}  // namespace zelvo::salvage
