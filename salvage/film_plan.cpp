#include "salvage/film_plan.h"

#include <array>
#include <limits>

#include "avi/chunk_codes.h"
#include "salvage/best_chain.h"
#include "salvage/evidence.h"

namespace zelvo::salvage {

namespace {

constexpr std::uint64_t kChunkHeader = 8;

class Planner {
 public:
  explicit Planner(const Evidence& evidence) : evidence_(evidence) {
    places_.fill(kNowhere);
    for (std::size_t i = 0; i < evidence.header.streams.size() && i < kMaxStreams; ++i)
      places_[evidence.header.streams[i].number] = static_cast<std::uint8_t>(i);
  }

  FilmPlan run();

 private:
  static constexpr std::uint8_t kNowhere = 0xff;

  void layIndex();
  void layChain(std::uint64_t from);

  const Evidence& evidence_;
  std::array<std::uint8_t, kMaxStreams> places_{};  ///< of a stream number in the film's header
  FilmPlan plan_;
};

void Planner::layIndex() {
  const CandidateList& candidates = evidence_.scan.candidates;
  std::uint64_t looks = 0;
  std::size_t at = 0;
  for (const TemplateEntry& entry : evidence_.index.entries) {
    const std::uint8_t stream = places_[entry.stream];
    if (stream == kNowhere || entry.isForeign) continue;
    ++plan_.indexedChunks;
    at = candidates.firstAtOrAfter(entry.offset, at, looks);
    Slot slot;
    slot.stream = stream;
    slot.isIndexed = true;
    slot.hasKeyFlag = entry.isKey;
    const bool isThere = at < candidates.size() && candidates[at].offset() == entry.offset &&
                         candidates[at].kind() == CandidateKind::data && candidates[at].stream() == entry.stream &&
                         candidates[at].size() == entry.size;
    slot.state = isThere ? SlotState::whole : SlotState::lost;
    slot.source = isThere ? entry.offset + kChunkHeader : 0;
    const bool isPicture = evidence_.header.streams[stream].header.type == avi::kVids;
    slot.size = isThere || !isPicture ? entry.size : 0;
    plan_.slots.push_back(slot);
  }
}

void Planner::layChain(std::uint64_t from) {
  const CandidateList& candidates = evidence_.scan.candidates;
  for (const std::uint32_t number : bestChain(candidates, evidence_.chain, evidence_.facts)) {
    const Candidate& candidate = candidates[number];
    if (candidate.kind() != CandidateKind::data || candidate.offset() < from) continue;
    if (places_[candidate.stream()] == kNowhere || candidate.payloadEnd() > evidence_.scan.end) continue;
    Slot slot;
    slot.source = candidate.offset() + kChunkHeader;
    slot.size = candidate.size();
    slot.stream = places_[candidate.stream()];
    plan_.slots.push_back(slot);
  }
}

FilmPlan Planner::run() {
  layIndex();
  layChain(plan_.indexedChunks == 0 ? 0 : evidence_.index.entries.back().end());
  return std::move(plan_);
}

}  // namespace

FilmPlan planFilm(const Evidence& evidence) { return Planner(evidence).run(); }

}  // namespace zelvo::salvage
