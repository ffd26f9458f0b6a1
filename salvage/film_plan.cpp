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
#include "salvage/content_marks.h"
#include "salvage/damage_marks.h"
#include "salvage/displacements.h"
#include "salvage/entry_places.h"
#include "salvage/evidence.h"
#include "salvage/film_streams.h"
#include "salvage/laid_cuts.h"
#include "salvage/laid_film.h"
#include "salvage/lone_stretches.h"
#include "salvage/plan_spans.h"
#include "salvage/repeated_chunks.h"
#include "salvage/timeline.h"

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

  /// Chunks of the chain beside those that an index explains.
  struct Others {
    std::size_t all = 0;  ///< of the chain
    std::size_t unexplained = 0;
    std::size_t inFront = 0;  ///< of these

    [[nodiscard]] bool areMany() const { return unexplained >= std::max<std::size_t>(8, all / 20); }
  };

  void chooseEntries();
  void dropWild();
  [[nodiscard]] DisplacementCover cover(const std::vector<TemplateEntry>& entries, bool isForeign) const;
  [[nodiscard]] std::vector<TemplateEntry> takeEntries() const;
  [[nodiscard]] Others othersBeside(const std::vector<std::uint8_t>& isClaimed) const;
  [[nodiscard]] bool isOfFilmBehind(const DisplacementCover& cover) const;
  [[nodiscard]] bool mayBeOwn(const DisplacementCover& firm) const;
  template <class Visit>
  void eachRoom(const Visit& visit) const;
  [[nodiscard]] bool tellsAll() const;
  void join(LaidFilm laid);
  [[nodiscard]] std::optional<std::uint64_t> countedPictures() const;
  [[nodiscard]] std::optional<std::uint64_t> picturesOfAll() const;
  [[nodiscard]] std::optional<std::uint64_t> missingBytes() const;
  [[nodiscard]] std::vector<MissingBytes> missingWhereTorn() const;
  void addPart(ChainFilm part, const Room& room, std::uint64_t fileBytes);
  void insertParts();

  const Evidence& evidence_;
  SpentEvidence* const spent_;
  const FilmStreams streams_;
  std::vector<std::uint32_t> chain_;
  std::vector<TemplateEntry> entries_;   ///< of the film's own indexes
  std::vector<std::uint8_t> isForeign_;  ///< of each candidate, when a foreign index explains some
  EntryPlaces places_;
  FilmPlan plan_;
  std::vector<Slot> parts_;  ///< of the chain, to be put in between those that the index tells
  std::vector<PartPlace> partPlaces_;
  std::vector<FilmGap> gaps_;
  std::vector<Tear> tears_;
};

DisplacementCover Planner::cover(const std::vector<TemplateEntry>& entries, bool isForeign) const {
  const auto& tables = evidence_.scan.tables;
  const std::uint64_t indexBegin =
      tables.empty() ? 0 : tables.back().header.value_or(tables.back().begin - avi::kChunkHeader) + avi::kChunkHeader;
  DisplacementCover made = coverEntries(entries, evidence_.scan.candidates, indexBegin, evidence_.scan.end);
  dropChance(made, entries, evidence_.scan.candidates, isForeign);
  dropLone(made, entries, evidence_.scan.candidates, evidence_.chain);
  return made;
}

/// The entries of the film's streams.
std::vector<TemplateEntry> Planner::takeEntries() const {
  std::vector<TemplateEntry> entries = spent_ != nullptr ? std::move(spent_->index.entries) : evidence_.index.entries;
  std::erase_if(entries,
                [&](const TemplateEntry& entry) { return streams_.indexOf(entry.stream) == FilmStreams::kNone; });
  return entries;
}

/// How many chunks of the chain such an index does not explain, and how many of them stand in front of all that it
/// does.
Planner::Others Planner::othersBeside(const std::vector<std::uint8_t>& isClaimed) const {
  Others others;
  bool isInFront = true;
  for (const std::uint32_t number : chain_) {
    if (evidence_.scan.candidates[number].kind() != CandidateKind::data) continue;
    ++others.all;
    if (isClaimed[number] != 0) {
      isInFront = false;
      continue;
    }
    ++others.unexplained;
    if (isInFront) ++others.inFront;
  }
  return others;
}

/// Whether an index is that of another film after this one: it explains nothing of what
/// stands in front, and what it does not explain stands in front, too.
bool Planner::isOfFilmBehind(const DisplacementCover& cover) const {
  constexpr std::size_t kMaxPercent = 90;
  const Others others = othersBeside(cover.isClaimed);
  if (!others.areMany() || others.inFront * 100 < others.unexplained * kMaxPercent) return false;
  std::size_t lost = 0;
  std::size_t lostInFront = 0;
  bool isInFront = true;
  for (const std::uint16_t number : cover.ofEntry) {
    isInFront = isInFront && number == DisplacementCover::kNone;
    if (number == DisplacementCover::kNone) ++lost;
    if (isInFront) ++lostInFront;
  }
  return lostInFront > 0 && lostInFront * 100 >= lost * kMaxPercent;
}

/// Whether an index that something speaks for explains half of what is left of it, or nearly all chunks of the chain,
/// by stretches too short to count otherwise.
bool Planner::mayBeOwn(const DisplacementCover& firm) const {
  const auto isKnown = [](const TemplateSource& source) { return source.belonging != Belonging::unknown; };
  if (std::ranges::none_of(evidence_.index.tables, isKnown) && std::ranges::none_of(evidence_.index.standard, isKnown))
    return false;
  const DisplacementCover all = cover(entries_, false);
  std::size_t left = 0;
  std::size_t explained = 0;
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    if (firm.ofEntry[i] != DisplacementCover::kNone) continue;
    ++left;
    if (all.ofEntry[i] != DisplacementCover::kNone) ++explained;
  }
  return explained * 2 >= left || !othersBeside(all.isClaimed).areMany();
}

/// An index that contradicts the headers is another film's when there are chunks besides those that it explains.
void Planner::chooseEntries() {
  entries_ = takeEntries();
  // Own ones first, so that the others are cut off.
  const bool hasForeign = std::ranges::any_of(entries_, &TemplateEntry::isForeign);
  std::vector<TemplateEntry> foreign;
  if (hasForeign) {
    std::ranges::sort(entries_, {},
                      [](const TemplateEntry& entry) { return std::pair(entry.isForeign, entry.offset); });
    const auto first = std::ranges::find(entries_, true, &TemplateEntry::isForeign);
    foreign.assign(first, entries_.end());
    entries_.erase(first, entries_.end());
  }
  // Films of one camera may be of one length, so that the headers speak for the other one's index, too.
  if (DisplacementCover explained = cover(entries_, true); isOfFilmBehind(explained) && !mayBeOwn(explained)) {
    isForeign_ = std::move(explained.isClaimed);
    entries_.clear();
  }
  if (hasForeign) {
    std::vector<std::uint8_t> explained = cover(foreign, true).isClaimed;
    if (othersBeside(explained).areMany()) {
      isForeign_ = std::move(explained);
    } else {
      entries_.insert(entries_.end(), foreign.begin(), foreign.end());
      std::ranges::sort(entries_, {}, &TemplateEntry::offset);
    }
    foreign = {};
    if (entries_.size() < entries_.capacity() / 2) entries_.shrink_to_fit();
  }
  const DisplacementCover own = cover(entries_, false);
  for (std::size_t i = 0; i < isForeign_.size(); ++i) {
    if (own.isClaimed[i] != 0) isForeign_[i] = 0;
  }
  places_ = placeEntries(evidence_.input, entries_, evidence_.scan.candidates, evidence_.facts, own);
  if (places_.places.empty()) entries_.clear();
  dropWild();
}

/// Takes out entries that no header speaks for and that cannot be true: garbage in an index looks so.
void Planner::dropWild() {
  constexpr std::uint64_t kPlain = std::uint64_t{1} << 16U;
  std::size_t end = entries_.size();
  const auto isBeyond = [&](std::size_t entry) {
    return places_.headerOf(entry, entries_) >= static_cast<std::int64_t>(evidence_.scan.end);
  };
  const auto isSupported = [&](std::size_t entry) { return places_.places[entry].support != Support::none; };
  while (end > 0 && !isSupported(end - 1) && isBeyond(end - 1)) --end;
  std::size_t kept = 0;
  for (std::size_t i = 0; i < end; ++i) {
    const std::uint8_t number = entries_[i].stream;
    const std::uint64_t largest = number < evidence_.facts.size() ? evidence_.facts[number].largest : 0;
    if (!isSupported(i) && entries_[i].size > std::max(kPlain, 4 * largest)) continue;
    entries_[kept] = entries_[i];
    places_.places[kept++] = places_.places[i];
  }
  entries_.resize(kept);
  places_.places.resize(kept);
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

template <class Visit>
void Planner::eachRoom(const Visit& visit) const {
  const auto mediaBegin = evidence_.headers.mediaBegin();
  const auto dataEnd = static_cast<std::int64_t>(evidence_.scan.end);
  if (entries_.empty()) {
    visit({0, static_cast<std::int64_t>(mediaBegin), dataEnd, kEndless});
    return;
  }
  const auto add = [&](const Room& room) {
    if (room.size >= kSmallestRoom && room.end > room.begin) visit(room);
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
}

/// Adds a part of the chain, unless it is more than the original had room for: then it is a copy, or another film's.
void Planner::addPart(ChainFilm part, const Room& room, std::uint64_t fileBytes) {
  constexpr std::uint64_t kSlack = 64;
  std::uint64_t found = 0;
  for (const Slot& slot : part.slots) found += slot.size + avi::kChunkHeader;
  if (room.size != kEndless && found > room.size + kSlack) return;
  std::uint64_t left = room.size == kEndless ? kEndless : room.size - std::min(room.size, found);
  const std::size_t planned = plan_.slots.size() + parts_.size();
  part.slots.resize(std::min(part.slots.size(), kMaxSlots - std::min(kMaxSlots, planned)));
  const std::size_t place = room.before + parts_.size();
  for (ChainGap& gap : part.gaps) {
    if (gaps_.size() >= ChainFilm::kMaxGaps || gap.before > part.slots.size()) break;
    const std::uint64_t bytes = std::min(gap.end - gap.begin, left);
    if (left != kEndless) left -= bytes;
    gaps_.push_back({place + gap.before, bytes, gap.longer, gap.missing, gap.isTorn});
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
  parts_ = {};
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
      ChainFilm part = films.part({begin, end});
      dropRepeated(evidence_.input, part);
      addPart(std::move(part), room, end - begin);
    };
    // Where clusters changed places, what lies between two chunks of the file did not in the film.
    if (!laid.isGathered) eachRoom(fill);
  }
  chain_ = {};
  // Foreign chunks are told by their candidates.
  if (spent_ != nullptr && isForeign_.empty()) {
    spent_->scan.candidates = {};
    spent_->chain = {};
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
  if (spent_ != nullptr) spent_->chain.forgetLinks();
  chooseEntries();
  plan_.indexedChunks = entries_.size();
  LaidFilm laid = layEntries(evidence_, streams_, entries_, places_);
  plan_.cutsFound = closeCuts(evidence_, laid);
  plan_.cutsOpen = laid.openCuts.size();
  join(std::move(laid));
  fillGaps(evidence_, streams_, gaps_, {picturesOfAll(), missingBytes()}, plan_);
  markDamage(evidence_, plan_);
  markContent(evidence_, plan_);
  plan_.spans = planSpans({evidence_, streams_, entries_, places_, missingWhereTorn(), isForeign_}, plan_);
  return std::move(plan_);
}

}  // namespace

FilmPlan planFilm(const Evidence& evidence, SpentEvidence* spent) { return Planner(evidence, spent).run(); }

}  // namespace zelvo::salvage
