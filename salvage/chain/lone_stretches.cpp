#include "salvage/chain/lone_stretches.h"

namespace zelvo::salvage {

namespace {

/// A chunk that closes on another is looked for so many candidates in front of it.
constexpr std::size_t kMaxBack = 64;

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
  [[nodiscard]] bool isOther(std::size_t candidate, std::size_t entry) const;
  [[nodiscard]] bool goesOnAfter(std::size_t last);
  [[nodiscard]] bool goesOnBefore(std::size_t first);

  DisplacementCover& cover_;
  std::span<const TemplateEntry> entries_;
  const CandidateList& candidates_;
  const ChunkChain& chain_;
  std::uint64_t looks_ = 0;
};

/// Whether a sound chunk is another than an entry's.
bool Dropping::isOther(std::size_t candidate, std::size_t entry) const {
  const Candidate& chunk = candidates_[candidate];
  return chunk.kind() == CandidateKind::data && chain_.closes(candidate) &&
         (chunk.stream() != entries_[entry].stream || chunk.size() != entries_[entry].size);
}

bool Dropping::goesOnAfter(std::size_t last) {
  if (last + 1 >= entries_.size() || !areAdjacent(last)) return false;
  const std::uint32_t next = chain_.next(headerOf(last));
  return next != ChunkChain::kNone && isOther(next, last + 1);
}

bool Dropping::goesOnBefore(std::size_t first) {
  if (first == 0 || !areAdjacent(first - 1)) return false;
  const std::size_t header = headerOf(first);
  for (std::size_t at = header; at > 0 && header - at < kMaxBack; --at) {
    if (chain_.next(at - 1) == header) return isOther(at - 1, first - 1);
  }
  return false;
}

void Dropping::run() {
  for (std::size_t first = 0; first < entries_.size();) {
    std::size_t end = first + 1;
    while (end < entries_.size() && cover_.ofEntry[end] == cover_.ofEntry[first]) ++end;
    const bool mayBeLone = cover_.ofEntry[first] != DisplacementCover::kNone && cover_.ofEntry[first] != 0;
    if (mayBeLone && goesOnAfter(end - 1) && goesOnBefore(first)) {
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
