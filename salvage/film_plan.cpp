// 1. The entries of the film's own indexes are laid over the file.
// 2. Where no index reaches, the best chain of chunks goes on.
#include "salvage/film_plan.h"

#include <algorithm>
#include <utility>

#include "salvage/best_chain.h"
#include "salvage/chain_film.h"
#include "salvage/displacements.h"
#include "salvage/entry_places.h"
#include "salvage/evidence.h"
#include "salvage/film_streams.h"
#include "salvage/laid_film.h"
#include "salvage/timeline.h"

namespace zelvo::salvage {

namespace {

constexpr std::uint64_t kChunkHeader = 8;

class Planner {
 public:
  explicit Planner(const Evidence& evidence) : evidence_(evidence), streams_(evidence.header) {}

  FilmPlan run();

 private:
  void layIndex();
  void layChain(std::uint64_t from);
  [[nodiscard]] std::uint64_t indexBegin() const {
    const auto& tables = evidence_.scan.tables;
    return tables.empty() ? 0 : tables.back().header.value_or(tables.back().begin - kChunkHeader) + kChunkHeader;
  }

  const Evidence& evidence_;
  const FilmStreams streams_;
  std::vector<TemplateEntry> entries_;  ///< of the film's own indexes
  FilmPlan plan_;
};

void Planner::layIndex() {
  for (const TemplateEntry& entry : evidence_.index.entries) {
    if (streams_.indexOf(entry.stream) != FilmStreams::kNone && !entry.isForeign) entries_.push_back(entry);
  }
  const CandidateList& candidates = evidence_.scan.candidates;
  const DisplacementCover cover = coverEntries(entries_, candidates, indexBegin(), evidence_.scan.end);
  const EntryPlaces places = placeEntries(evidence_.input, entries_, candidates, evidence_.facts, cover);
  if (places.places.empty()) return;
  LaidFilm laid = layEntries(evidence_, streams_, entries_, places);
  plan_.slots = std::move(laid.slots);
  plan_.pieces = std::move(laid.pieces);
  plan_.indexedChunks = plan_.slots.size();
}

void Planner::layChain(std::uint64_t from) {
  const std::vector<std::uint32_t> chain = bestChain(evidence_.scan.candidates, evidence_.chain, evidence_.facts);
  const ChainFilm film = chainFilm(evidence_, streams_, chain, {from, evidence_.scan.end});
  std::vector<FilmGap> gaps;
  for (const ChainGap& gap : film.gaps)
    gaps.push_back({plan_.slots.size() + gap.before, gap.end - gap.begin, gap.isTorn});
  plan_.slots.insert(plan_.slots.end(), film.slots.begin(), film.slots.end());
  fillGaps(evidence_, streams_, gaps, plan_);
}

FilmPlan Planner::run() {
  layIndex();
  std::uint64_t end = evidence_.headers.mediaBegin();
  for (const Slot& slot : plan_.slots) end = std::max(end, slot.source + slot.size);
  layChain(end);
  return std::move(plan_);
}

}  // namespace

FilmPlan planFilm(const Evidence& evidence) { return Planner(evidence).run(); }

}  // namespace zelvo::salvage
