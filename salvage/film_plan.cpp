// 1. The entries of the film's own indexes are laid over the file.
// 2. Where no index reaches, the best chain of chunks fills the room that the original had there.
// 3. Gaps of the chain are filled, so that the film stays in step.
// 4. What is damaged all the same is marked, and all that was lost is told.
#include "salvage/film_plan.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "avi/chunk_codes.h"
#include "salvage/best_chain.h"
#include "salvage/chain_film.h"
#include "salvage/damage_marks.h"
#include "salvage/displacements.h"
#include "salvage/entry_places.h"
#include "salvage/evidence.h"
#include "salvage/film_streams.h"
#include "salvage/laid_film.h"
#include "salvage/plan_spans.h"
#include "salvage/timeline.h"

namespace zelvo::salvage {

namespace {

constexpr std::uint64_t kChunkHeader = 8;
/// Of the original; less holds no chunk that is worth looking for.
constexpr std::uint64_t kSmallestRoom = 16;
constexpr std::uint64_t kEndless = std::numeric_limits<std::uint64_t>::max();

std::uint64_t paddedEnd(const TemplateEntry& entry) { return entry.end() + entry.size % 2; }

class Planner {
 public:
  explicit Planner(const Evidence& evidence) : evidence_(evidence), streams_(evidence.header) {}

  FilmPlan run();

 private:
  /// Bytes of the file that no entry tells of.
  struct Room {
    std::size_t before = 0;  ///< how many slots stand in front of it
    std::int64_t begin = 0;  ///< in the file
    std::int64_t end = 0;
    std::uint64_t size = 0;  ///< in the original
  };

  void chooseEntries();
  [[nodiscard]] DisplacementCover cover(const std::vector<TemplateEntry>& entries, bool isForeign) const;
  [[nodiscard]] bool hasOtherChunks(const std::vector<std::uint8_t>& isClaimed) const;
  [[nodiscard]] std::vector<Room> rooms() const;
  [[nodiscard]] bool tellsAll() const;
  void join(LaidFilm laid);
  void addPart(ChainFilm part, std::uint64_t room, std::uint64_t fileBytes);

  const Evidence& evidence_;
  const FilmStreams streams_;
  std::vector<std::uint32_t> chain_;
  std::vector<TemplateEntry> entries_;   ///< of the film's own indexes
  std::vector<std::uint8_t> isForeign_;  ///< of each candidate, when a foreign index explains some
  EntryPlaces places_;
  FilmPlan plan_;
  std::vector<FilmGap> gaps_;
  std::vector<MissingBytes> missing_;
};

DisplacementCover Planner::cover(const std::vector<TemplateEntry>& entries, bool isForeign) const {
  const auto& tables = evidence_.scan.tables;
  const std::uint64_t indexBegin =
      tables.empty() ? 0 : tables.back().header.value_or(tables.back().begin - kChunkHeader) + kChunkHeader;
  DisplacementCover made = coverEntries(entries, evidence_.scan.candidates, indexBegin, evidence_.scan.end);
  dropChance(made, entries, evidence_.scan.candidates, isForeign);
  return made;
}

/// Whether the chain has chunks that such an index does not explain.
bool Planner::hasOtherChunks(const std::vector<std::uint8_t>& isClaimed) const {
  constexpr std::size_t kFewest = 8;
  std::size_t all = 0;
  std::size_t others = 0;
  for (const std::uint32_t number : chain_) {
    if (evidence_.scan.candidates[number].kind() != CandidateKind::data) continue;
    ++all;
    if (isClaimed[number] == 0) ++others;
  }
  return others >= std::max(kFewest, all / 20);
}

/// An index that contradicts the headers is another film's when there are chunks besides those that it explains.
void Planner::chooseEntries() {
  std::vector<TemplateEntry> all;
  std::vector<TemplateEntry> foreign;
  for (const TemplateEntry& entry : evidence_.index.entries) {
    if (streams_.indexOf(entry.stream) == FilmStreams::kNone) continue;
    all.push_back(entry);
    (entry.isForeign ? foreign : entries_).push_back(entry);
  }
  if (!foreign.empty()) {
    std::vector<std::uint8_t> explained = cover(foreign, true).isClaimed;
    if (hasOtherChunks(explained)) {
      isForeign_ = std::move(explained);
    } else {
      entries_ = std::move(all);
    }
  }
  const DisplacementCover own = cover(entries_, false);
  for (std::size_t i = 0; i < isForeign_.size(); ++i)
    isForeign_[i] = isForeign_[i] != 0 && own.isClaimed[i] == 0 ? 1 : 0;
  places_ = placeEntries(evidence_.input, entries_, evidence_.scan.candidates, evidence_.facts, own);
  if (places_.places.empty()) entries_.clear();
}

/// Whether the entries are as many pictures as the headers count.
bool Planner::tellsAll() const {
  const auto& headers = evidence_.headers;
  const auto pictures = static_cast<std::uint64_t>(std::ranges::count_if(
      entries_, [&](const TemplateEntry& entry) { return streams_.isPicture(streams_.indexOf(entry.stream)); }));
  const auto agrees = [&](std::uint64_t count) { return count != 0 && pictures + 1 >= count; };
  if (headers.openDmlFrames) return agrees(*headers.openDmlFrames);
  return (headers.main && agrees(headers.main->totalFrames)) ||
         std::ranges::any_of(headers.streams, [&](const SurvivingStream& stream) {
           return stream.type == avi::kVids && agrees(stream.length);
         });
}

std::vector<Planner::Room> Planner::rooms() const {
  const auto mediaBegin = evidence_.headers.mediaBegin();
  const auto dataEnd = static_cast<std::int64_t>(evidence_.scan.end);
  if (entries_.empty()) return {{0, static_cast<std::int64_t>(mediaBegin), dataEnd, kEndless}};
  std::vector<Room> rooms;
  const auto add = [&](const Room& room) {
    if (room.size >= kSmallestRoom && room.end > room.begin) rooms.push_back(room);
  };
  const std::uint64_t first = entries_.front().offset;
  add({0, static_cast<std::int64_t>(mediaBegin), places_.headerOf(0, entries_), first - std::min(first, mediaBegin)});
  const auto endOf = [&](std::size_t entry) {
    return places_.headerOf(entry, entries_) +
           static_cast<std::int64_t>(paddedEnd(entries_[entry]) - entries_[entry].offset);
  };
  for (std::size_t i = 0; i + 1 < entries_.size(); ++i) {
    const std::uint64_t end = paddedEnd(entries_[i]);
    const std::uint64_t room = entries_[i + 1].offset - std::min(end, entries_[i + 1].offset);
    if (room >= kSmallestRoom) add({i + 1, endOf(i), places_.headerOf(i + 1, entries_), room});
  }
  if (!tellsAll()) add({entries_.size(), std::max<std::int64_t>(0, endOf(entries_.size() - 1)), dataEnd, kEndless});
  return rooms;
}

/// Adds a part of the chain, unless it is more than the original had room for: then it is a copy, or another film's.
void Planner::addPart(ChainFilm part, std::uint64_t room, std::uint64_t fileBytes) {
  constexpr std::uint64_t kSlack = 64;
  std::uint64_t found = 0;
  for (const Slot& slot : part.slots) found += slot.size + kChunkHeader;
  if (room != kEndless && found > room + kSlack) return;
  std::uint64_t left = room == kEndless ? kEndless : room - std::min(room, found);
  for (ChainGap& gap : part.gaps) {
    const std::uint64_t bytes = std::min(gap.end - gap.begin, left);
    if (left != kEndless) left -= bytes;
    gaps_.push_back({plan_.slots.size() + gap.before, bytes, gap.longer, gap.isTorn});
    if (gap.missing > 0) missing_.push_back({gap.begin, gap.missing});
  }
  if (room != kEndless && room > fileBytes + kSlack && !part.gaps.empty()) gaps_.back().bytes += room - fileBytes;
  plan_.slots.insert(plan_.slots.end(), part.slots.begin(), part.slots.end());
}

void Planner::join(LaidFilm laid) {
  plan_.pieces = std::move(laid.pieces);
  plan_.slots.reserve(laid.slots.size());
  ChainFilms films(evidence_, streams_, chain_, isForeign_);
  std::size_t slot = 0;
  const auto goOnTo = [&](std::size_t end) {
    for (; slot < end; ++slot) plan_.slots.push_back(laid.slots[slot]);
  };
  for (const Room& room : rooms()) {
    goOnTo(room.before);
    const auto begin = static_cast<std::uint64_t>(std::max<std::int64_t>(0, room.begin));
    const auto end = std::min(static_cast<std::uint64_t>(std::max<std::int64_t>(0, room.end)), evidence_.scan.end);
    if (begin < end) addPart(films.part({begin, end}), room.size, end - begin);
  }
  goOnTo(laid.slots.size());
}

FilmPlan Planner::run() {
  chain_ = bestChain(evidence_.scan.candidates, evidence_.chain, evidence_.facts);
  chooseEntries();
  plan_.indexedChunks = entries_.size();
  join(layEntries(evidence_, streams_, entries_, places_));
  fillGaps(evidence_, streams_, gaps_, plan_);
  markDamage(evidence_, plan_);
  plan_.spans = planSpans({evidence_, streams_, entries_, places_, missing_, isForeign_}, plan_);
  return std::move(plan_);
}

}  // namespace

FilmPlan planFilm(const Evidence& evidence) { return Planner(evidence).run(); }

}  // namespace zelvo::salvage
