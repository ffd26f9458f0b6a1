// 1. The entries of the film's own indexes are laid over the file.
// 2. Where no index reaches, the best chain of chunks fills the room that the original had there.
// 3. Gaps of the chain are filled, so that the film stays in step.
// 4. What is damaged all the same is marked, and all that was lost is told.
#include "salvage/plan/film_plan.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <optional>
#include <span>
#include <utility>

#include "avi/chunk_codes.h"
#include "salvage/chain/best_chain.h"
#include "salvage/chain/entry_places.h"
#include "salvage/plan/chain_film.h"
#include "salvage/plan/chosen_entries.h"
#include "salvage/plan/content_marks.h"
#include "salvage/plan/damage_marks.h"
#include "salvage/plan/evidence.h"
#include "salvage/plan/film_streams.h"
#include "salvage/plan/laid_cuts.h"
#include "salvage/plan/laid_film.h"
#include "salvage/plan/plan_spans.h"
#include "salvage/plan/repeated_chunks.h"
#include "salvage/plan/timeline.h"

namespace zelvo::salvage {

namespace {

/// Of the original; less holds no chunk that is worth looking for.
constexpr std::uint64_t kSmallestRoom = 16;
/// Chunks of the chain that come to more than this with those of the index are left out.
constexpr std::size_t kMaxSlots = 3'500'000;
constexpr std::uint64_t kEndless = std::numeric_limits<std::uint64_t>::max();

std::uint64_t paddedEnd(const TemplateEntry& entry) { return entry.end() + entry.size % 2; }

class Planner {
 public:
  Planner(const Evidence& evidence, SpentEvidence* spent)
      : evidence_(evidence), spent_(spent), streams_(evidence.header) {}

  FilmPlan run();

 private:
  /// Bytes of the file that no entry tells of.
  struct Room {
    std::size_t before = 0;  ///< how many slots stand in front of it
    std::int64_t begin = 0;  ///< in the file
    std::int64_t end = 0;
    std::uint64_t size = 0;  ///< in the original
  };

  /// The slots of a room, up to number `end` of all that are put in, stand in front of number `before` of the others.
  struct PartPlace {
    std::size_t before = 0;
    std::size_t end = 0;
  };

  /// A chunk of the chain that lacks its end, unless its size is wrong.
  struct Tear {
    MissingBytes missing;
    std::uint64_t source = 0;  ///< of its slot
  };

  [[nodiscard]] std::vector<TemplateEntry> takeEntries() const;
  template <class Visit>
  void eachRoom(const Visit& visit) const;
  [[nodiscard]] bool tellsAll() const;
  [[nodiscard]] std::uint64_t smallestRoom() const;
  void join(LaidFilm laid);
  [[nodiscard]] std::optional<std::uint64_t> countedPictures() const;
  [[nodiscard]] std::optional<std::uint64_t> picturesOfAll() const;
  [[nodiscard]] std::optional<std::uint64_t> missingBytes() const;
  [[nodiscard]] std::vector<MissingBytes> missingWhereTorn() const;
  [[nodiscard]] std::uint64_t tailOf(const ByteSpan& gap) const;
  void addPart(ChainFilm part, const Room& room, std::uint64_t fileBytes);
  void insertParts();

  const Evidence& evidence_;
  SpentEvidence* const spent_;
  const FilmStreams streams_;
  std::vector<std::uint32_t> chain_;
  std::vector<TemplateEntry> entries_;   ///< of the film's own indexes
  std::vector<std::uint8_t> isForeign_;  ///< of each candidate, when a foreign index explains some
  EntryPlaces places_;
  FileMarks marks_;
  FilmPlan plan_;
  std::vector<Slot> parts_;  ///< of the chain, to be put in between those that the index tells
  std::vector<PartPlace> partPlaces_;
  std::vector<FilmGap> gaps_;
  std::vector<Tear> tears_;
};

/// The entries of the film's streams.
std::vector<TemplateEntry> Planner::takeEntries() const {
  std::vector<TemplateEntry> entries = spent_ != nullptr ? std::move(spent_->index.entries) : evidence_.index.entries;
  std::erase_if(entries,
                [&](const TemplateEntry& entry) { return streams_.indexOf(entry.stream) == FilmStreams::kNone; });
  return entries;
}

/// Whether the entries are as many pictures as the headers count.
bool Planner::tellsAll() const {
  const auto& headers = evidence_.headers;
  const auto pictures = static_cast<std::uint64_t>(std::ranges::count_if(entries_, [&](const TemplateEntry& entry) {
    return streams_.isPicture(streams_.indexOf(entry.stream)) && !StreamCodes::isPalette(entry.suffix);
  }));
  const auto agrees = [&](std::uint64_t count) { return count != 0 && pictures + 1 >= count; };
  if (headers.openDmlFrames) return agrees(*headers.openDmlFrames);
  return (headers.main && agrees(headers.main->totalFrames)) ||
         std::ranges::any_of(headers.streams, [&](const SurvivingStream& stream) {
           return stream.type == avi::kVids && agrees(stream.length);
         });
}

/// Some films fill up between all of their chunks: what is smaller than any chunk held none.
std::uint64_t Planner::smallestRoom() const {
  std::uint64_t smallest = kEndless;
  for (const StreamFacts& facts : evidence_.facts) {
    if (facts.chunks > facts.emptyChunks) smallest = std::min<std::uint64_t>(smallest, facts.smallest);
  }
  return smallest == kEndless ? kSmallestRoom : std::max(kSmallestRoom, smallest / 2);
}

template <class Visit>
void Planner::eachRoom(const Visit& visit) const {
  const auto mediaBegin = evidence_.headers.mediaBegin();
  const auto dataEnd = static_cast<std::int64_t>(evidence_.scan.end);
  if (entries_.empty()) {
    visit({0, static_cast<std::int64_t>(mediaBegin), dataEnd, kEndless});
    return;
  }
  const std::uint64_t smallest = smallestRoom();
  const auto add = [&](const Room& room) {
    if (room.size >= smallest && room.end > room.begin) visit(room);
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
    if (room >= smallest) add({i + 1, endOf(i), places_.headerOf(i + 1, entries_), room});
  }
  if (!tellsAll()) add({entries_.size(), std::max<std::int64_t>(0, endOf(entries_.size() - 1)), dataEnd, kEndless});
}

/// The bytes at the end of a gap that follow what was overwritten in it; 0 where nothing tells of that.
std::uint64_t Planner::tailOf(const ByteSpan& gap) const {
  std::uint64_t begin = gap.begin;
  for (const auto* spans : {&evidence_.scan.zeroed, &evidence_.scan.unreadable, &evidence_.scan.unrescued}) {
    const auto behind = std::ranges::lower_bound(*spans, gap.end, {}, &ByteSpan::begin);
    if (behind != spans->begin()) begin = std::max(begin, std::prev(behind)->end);
  }
  return begin == gap.begin ? 0 : gap.end - std::min(gap.end, begin);
}

/// Adds a part of the chain, unless it is more than the original had room for: then it is a copy, or another film's.
void Planner::addPart(ChainFilm part, const Room& room, std::uint64_t fileBytes) {
  constexpr std::uint64_t kSlack = 64;
  std::uint64_t found = 0;
  for (const Slot& slot : part.slots) found += slot.size + avi::kChunkHeader;
  for (const ChainGap& gap : part.gaps) found += gap.isTorn && gap.longer == 0 ? gap.missing : 0;
  if (room.size != kEndless && found > room.size + kSlack) return;
  std::uint64_t left = room.size == kEndless ? kEndless : room.size - std::min(room.size, found);
  const std::size_t place = room.before + parts_.size();
  for (ChainGap& gap : part.gaps) {
    if (gaps_.size() >= ChainFilm::kMaxGaps || gap.before > part.slots.size()) break;
    const std::uint64_t bytes = std::min(gap.end - gap.begin, left);
    if (left != kEndless) left -= bytes;
    const std::uint64_t tail = gap.isTorn ? 0 : std::min(bytes, tailOf({gap.begin, gap.end}));
    gaps_.push_back({place + gap.before, bytes, gap.longer, gap.missing, gap.isTorn, tail});
    if (gap.missing > 0 && gap.before > 0)
      tears_.push_back({{gap.begin, gap.missing}, part.slots[gap.before - 1].source});
  }
  if (room.size != kEndless && room.size > fileBytes + kSlack && !part.gaps.empty() && !gaps_.empty())
    gaps_.back().bytes += room.size - fileBytes;
  if (part.slots.empty()) return;
  if (parts_.empty()) {
    parts_ = std::move(part.slots);
  } else {
    parts_.insert(parts_.end(), part.slots.begin(), part.slots.end());
  }
  partPlaces_.push_back({room.before, parts_.size()});
}

/// Puts the parts in between the slots of the index.
void Planner::insertParts() {
  std::vector<Slot> laid = std::move(plan_.slots);
  plan_.slots.clear();
  if (laid.empty() || parts_.empty()) {
    plan_.slots = std::move(laid.empty() ? parts_ : laid);
    return;
  }
  plan_.slots.reserve(laid.size() + parts_.size());
  std::size_t slot = 0;
  std::size_t part = 0;
  for (const PartPlace& place : partPlaces_) {
    for (; slot < place.before; ++slot) plan_.slots.push_back(laid[slot]);
    for (; part < place.end; ++part) plan_.slots.push_back(parts_[part]);
  }
  for (; slot < laid.size(); ++slot) plan_.slots.push_back(laid[slot]);
  parts_ = std::vector<Slot>();
}

void Planner::join(LaidFilm laid) {
  plan_.pieces = std::move(laid.pieces);
  plan_.slots = std::move(laid.slots);
  {
    ChainFilms films(evidence_, streams_, chain_, isForeign_);
    const auto fill = [&](const Room& room) {
      const auto begin = static_cast<std::uint64_t>(std::max<std::int64_t>(0, room.begin));
      const auto end = std::min(static_cast<std::uint64_t>(std::max<std::int64_t>(0, room.end)), evidence_.scan.end);
      if (begin >= end) return;
      const std::size_t planned = plan_.slots.size() + parts_.size();
      ChainFilm part = films.part({begin, end}, kMaxSlots - std::min(kMaxSlots, planned));
      plan_.leftOut += part.leftOut;
      dropRepeated(evidence_.input, part);
      addPart(std::move(part), room, end - begin);
    };
    // Where clusters changed places, what lies between two chunks of the file did not in the film.
    if (!laid.isGathered) eachRoom(fill);
  }
  marks_ = fileMarks(evidence_, isForeign_);
  // An assignment of braces would empty a vector and keep its memory.
  chain_ = std::vector<std::uint32_t>();
  isForeign_ = std::vector<std::uint8_t>();
  if (spent_ != nullptr) {
    spent_->scan.candidates = CandidateList();
    spent_->chain = ChunkChain();
  }
  insertParts();
}

/// How many pictures the headers count; nothing when they do not tell.
std::optional<std::uint64_t> Planner::countedPictures() const {
  const auto& headers = evidence_.headers;
  if (headers.openDmlFrames && *headers.openDmlFrames != 0) return headers.openDmlFrames;
  for (const FilmStream& stream : evidence_.header.streams) {
    if (stream.header.type != avi::kVids) continue;
    if (stream.origin == HeaderOrigin::own && stream.header.length != 0) return stream.header.length;
    break;
  }
  if (headers.main && headers.main->totalFrames != 0) return headers.main->totalFrames;
  return std::nullopt;
}

/// How many pictures the film had, when all are there or its end is.
std::optional<std::uint64_t> Planner::picturesOfAll() const {
  const auto counted = countedPictures();
  if (!counted || plan_.slots.empty()) return std::nullopt;
  const auto there = std::ranges::count_if(plan_.slots, [&](const Slot& slot) { return streams_.isPicture(slot); });
  const bool endsWithin =
      plan_.slots.back().state == SlotState::cut || (!gaps_.empty() && gaps_.back().before == plan_.slots.size());
  return endsWithin && static_cast<std::uint64_t>(there) < *counted ? std::nullopt : counted;
}

/// How many bytes of the media the file lacks by the size of their list, when there is one list and its end is there.
std::optional<std::uint64_t> Planner::missingBytes() const {
  const auto& media = evidence_.headers.media;
  if (!picturesOfAll() || !media || media->size <= avi::kChunkHeader || evidence_.headers.openDmlFrames)
    return std::nullopt;
  const Slot& last = plan_.slots.back();
  const std::uint64_t declared = media->offset + avi::kChunkHeader + media->size;
  const std::uint64_t found = last.source + last.size + last.size % 2;
  return declared - std::min(declared, found);
}

/// Of tears, those that are still some when the gaps are filled.
std::vector<MissingBytes> Planner::missingWhereTorn() const {
  std::vector<MissingBytes> missing;
  auto tear = tears_.begin();
  for (const Slot& slot : plan_.slots) {
    if (tear == tears_.end()) break;
    if (slot.isIndexed || slot.source != tear->source) continue;
    if (slot.state == SlotState::torn) missing.push_back(tear->missing);
    ++tear;
  }
  return missing;
}

FilmPlan Planner::run() {
  chain_ = bestChain(evidence_.scan.candidates, evidence_.chain, evidence_.facts);
  ChosenEntries chosen = chooseEntries(evidence_, takeEntries(), chain_);
  entries_ = std::move(chosen.entries);
  places_ = std::move(chosen.places);
  isForeign_ = std::move(chosen.isForeign);
  if (spent_ != nullptr) spent_->chain.forgetLinks();
  plan_.indexedChunks = entries_.size();
  LaidFilm laid = layEntries(evidence_, streams_, entries_, places_);
  plan_.cutsFound = closeCuts(evidence_, laid);
  plan_.cutsOpen = laid.openCuts.size();
  join(std::move(laid));
  fillGaps(evidence_, streams_, gaps_, {picturesOfAll(), missingBytes()}, plan_);
  markDamage(evidence_, plan_);
  markContent(evidence_, plan_);
  plan_.spans = planSpans({evidence_, streams_, entries_, places_, missingWhereTorn(), marks_}, plan_);
  return std::move(plan_);
}

}  // namespace

FilmPlan planFilm(const Evidence& evidence, SpentEvidence* spent) { return Planner(evidence, spent).run(); }

}  // namespace zelvo::salvage
