// Entries are taken from one whose header stands in the file to the next such. What lies between the two in the file,
// and whether both moved alike, says what came of the first and of the entries between them.
#include "salvage/plan/laid_film.h"

#include <algorithm>
#include <array>
#include <initializer_list>

#include "avi/byte_order.h"
#include "avi/chunk_codes.h"
#include "salvage/payloads/codec.h"
#include "salvage/payloads/payload_cut.h"
#include "salvage/plan/cluster_order.h"
#include "salvage/scan/number_sort.h"

namespace zelvo::salvage {

namespace {

/// So many times the size of the file is read for that, and these bytes in any case.
constexpr std::uint64_t kMaxRereads = 2;
constexpr std::uint64_t kReadAnyway = std::uint64_t{64} << 20U;
/// So many parts of payloads are told apart; later ones are taken from where they begin.
constexpr std::size_t kMaxPieces = 2'000'000;
/// Where foreign bytes begin in more pictures is not looked for.
constexpr std::size_t kMaxOpenCuts = 65'536;

class Laying {
 public:
  Laying(const Evidence& evidence, const FilmStreams& streams, std::span<const TemplateEntry> entries,
         const EntryPlaces& places)
      : evidence_(evidence),
        streams_(streams),
        entries_(entries),
        places_(places),
        readable_(kReadAnyway + kMaxRereads * evidence.scan.end) {}

  LaidFilm run();

 private:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  [[nodiscard]] bool isSupported(std::size_t entry) const { return places_.places[entry].support != Support::none; }
  [[nodiscard]] std::int64_t displacementOf(std::size_t entry) const {
    return places_.displacements[places_.places[entry].displacement];
  }
  [[nodiscard]] std::uint64_t headerOf(std::size_t entry) const {
    return static_cast<std::uint64_t>(places_.headerOf(entry, entries_));
  }
  [[nodiscard]] bool isThere(std::size_t entry, std::int64_t displacement) const;
  [[nodiscard]] std::uint64_t nextHeader(std::uint64_t header) const;
  [[nodiscard]] bool isPlausible(std::size_t entry, std::uint64_t payload) const;
  void layBetween(std::size_t before, std::size_t after);
  void laySupported(std::size_t entry, std::size_t next);
  void take(std::size_t entry, std::uint64_t payload, SlotState state);
  void takePart(std::size_t entry, std::uint64_t payload, std::uint64_t end, SlotState state);
  void takeAround(std::size_t entry, std::uint64_t payload, std::uint64_t added);
  [[nodiscard]] platform::Bytes readForCut(std::uint64_t payload, std::uint64_t size);
  void setPieces(Slot& slot, std::initializer_list<Piece> pieces);
  [[nodiscard]] const SurvivingStream& headerOf(const Slot& slot) const {
    return evidence_.header.streams[slot.stream].header;
  }
  bool takeEnd(std::size_t entry, std::size_t before, std::size_t after);
  void lose(std::size_t entry);
  void gather(const ClusterOrder& order);

  const Evidence& evidence_;
  const FilmStreams& streams_;
  std::span<const TemplateEntry> entries_;
  const EntryPlaces& places_;
  std::uint64_t readable_;  ///< bytes that may still be read to find cuts
  LaidFilm film_;
  std::vector<std::uint64_t> headers_;  ///< of supported entries, where they stand in the file; rising
};

/// Whether the header of an entry stands where a displacement puts it.
bool Laying::isThere(std::size_t entry, std::int64_t displacement) const {
  const std::int64_t place = static_cast<std::int64_t>(entries_[entry].offset) + displacement;
  if (place < 0) return false;
  const CandidateList& candidates = evidence_.scan.candidates;
  std::uint64_t looks = 0;
  const std::size_t at = candidates.firstAtOrAfter(static_cast<std::uint64_t>(place), 0, looks);
  return at < candidates.size() && candidates[at].offset() == static_cast<std::uint64_t>(place) &&
         candidates[at].kind() == CandidateKind::data && candidates[at].stream() == entries_[entry].stream &&
         candidates[at].size() == entries_[entry].size;
}

std::uint64_t Laying::nextHeader(std::uint64_t header) const {
  const auto next = std::ranges::upper_bound(headers_, header);
  return next == headers_.end() ? evidence_.scan.end : *next;
}

/// Whether a payload without a header looks like one of its stream.
bool Laying::isPlausible(std::size_t entry, std::uint64_t payload) const {
  const TemplateEntry& wanted = entries_[entry];
  if (wanted.stream >= evidence_.facts.size() || wanted.size < 4) return true;
  std::array<std::byte, 4> head{};
  if (evidence_.input.read(payload, head) < head.size()) return false;
  const Candidate candidate(payload - avi::kChunkHeader, CandidateKind::data, wanted.stream, wanted.suffix, wanted.size,
                            avi::loadLittleEndian32(head));
  return evidence_.facts[wanted.stream].signature.score(candidate) >= 0;
}

void Laying::take(std::size_t entry, std::uint64_t payload, SlotState state) {
  takePart(entry, payload, payload + entries_[entry].size, state);
}

/// Takes the payload from where it begins to `end`, or to the end of the data if that comes first.
void Laying::takePart(std::size_t entry, std::uint64_t payload, std::uint64_t end, SlotState state) {
  Slot& slot = film_.slots[entry];
  const std::uint64_t wanted = entries_[entry].size;
  const std::uint64_t stop = std::min({end, payload + wanted, evidence_.scan.end});
  const auto there = static_cast<std::uint32_t>(stop > payload ? stop - payload : 0);
  if (there < wanted && stop == evidence_.scan.end) state = SlotState::cut;
  const bool isFixed = entries_[entry].stream < evidence_.facts.size() &&
                       evidence_.facts[entries_[entry].stream].fixedSize == entries_[entry].size;
  // Cinepak's pictures bear their own length, and players take it amiss when the first one has another.
  const bool bearsLength = codecOf(headerOf(slot)) == Codec::cinepak;
  const bool keepsLength = streams_.countsBytes(slot.stream) || isFixed || bearsLength;
  if (there == 0 && wanted > 0) {
    lose(entry);
    return;
  }
  slot.state = state;
  slot.source = payload & Slot::kSourceMask;
  slot.size = there;
  if (there == wanted || !keepsLength || state == SlotState::cut) return;
  slot.size = entries_[entry].size;
  const std::uint32_t missing = slot.size - there;
  const auto cut = there > kMaxJudgedPayload || state != SlotState::torn
                       ? std::nullopt
                       : tearIn(headerOf(slot), readForCut(payload, there), slot.size);
  const std::uint32_t front = cut.value_or(there);
  setPieces(slot, {{payload, front}, {Piece::kSilence, missing}, {payload + front, there - front}});
}

/// Takes the payload in two parts, around bytes that were put in.
void Laying::takeAround(std::size_t entry, std::uint64_t payload, std::uint64_t added) {
  const std::uint32_t size = entries_[entry].size;
  take(entry, payload, SlotState::torn);
  Slot& slot = film_.slots[entry];
  if (size + added > kMaxJudgedPayload || slot.size != size) return;
  const platform::Bytes bytes = readForCut(payload, size + added);
  const bool isRead = bytes.size() == size + added;
  const Codec codec = codecOf(headerOf(slot));
  const bool isCompressed = codec != Codec::rawPicture && codec != Codec::pcm;
  const auto cut = !isRead        ? std::nullopt
                   : isCompressed ? repetitionIn(bytes, size)
                                  : insertionIn(headerOf(slot), bytes, size);
  if (cut) {
    setPieces(slot, {{payload, *cut}, {payload + *cut + added, size - *cut}});
    if (isCompressed && slot.pieces != Slot::kOnePiece) slot.state = SlotState::rejoined;
  } else if (isCompressed && streams_.isPicture(slot.stream) && film_.openCuts.size() < kMaxOpenCuts) {
    film_.openCuts.push_back({static_cast<std::uint32_t>(entry), payload, added});
  }
}

/// Nothing when too much was read already.
platform::Bytes Laying::readForCut(std::uint64_t payload, std::uint64_t size) {
  if (size > readable_) return {};
  readable_ -= size;
  return evidence_.input.readBytes(payload, static_cast<std::size_t>(size));
}

void Laying::setPieces(Slot& slot, std::initializer_list<Piece> pieces) {
  if (film_.pieces.size() + pieces.size() > kMaxPieces) {
    slot.size = pieces.begin()->size;
    return;
  }
  slot.pieces = static_cast<std::uint32_t>(film_.pieces.size());
  for (const Piece& piece : pieces) {
    if (piece.size > 0) film_.pieces.push_back(piece);
  }
}

void Laying::lose(std::size_t entry) {
  Slot& slot = film_.slots[entry];
  slot.state = SlotState::lost;
  slot.size = streams_.isPicture(slot.stream) ? 0 : entries_[entry].size;
}

/// Bytes are missing between two supported entries, and `entry`, the last one between them, lost its header. What
/// stands there beyond all that the first one can have is the end of its payload; of samples that is worth having.
/// False when there is none.
bool Laying::takeEnd(std::size_t entry, std::size_t before, std::size_t after) {
  Slot& slot = film_.slots[entry];
  const std::uint32_t size = entries_[entry].size;
  const std::uint32_t block = streams_.blockOf(slot.stream);
  if (!streams_.isSound(slot.stream) || !streams_.countsBytes(slot.stream) || block == 0) return false;
  if (displacementOf(after) >= displacementOf(before) || headerOf(after) <= headerOf(before)) return false;
  const TemplateEntry& first = entries_[before];
  const std::uint64_t begin = headerOf(before) + avi::kChunkHeader + first.size + first.size % 2;
  const std::int64_t end = static_cast<std::int64_t>(entries_[entry].end()) + displacementOf(after);
  if (end <= static_cast<std::int64_t>(begin) || static_cast<std::uint64_t>(end) > headerOf(after)) return false;
  const auto stop = static_cast<std::uint64_t>(end);
  const std::uint64_t there = std::min<std::uint64_t>(stop - begin, size);
  const auto kept = static_cast<std::uint32_t>(there - there % block);
  if (kept == 0 || kept == size) return false;
  slot.state = SlotState::torn;
  slot.source = (stop - kept) & Slot::kSourceMask;
  slot.size = size;
  setPieces(slot, {{Piece::kSilence, size - kept}, {stop - kept, kept}});
  return slot.pieces != Slot::kOnePiece;
}

/// `entry` and `next` are supported, and none between them is; `next` may be `kNone`.
void Laying::laySupported(std::size_t entry, std::size_t next) {
  const std::uint64_t payload = headerOf(entry) + avi::kChunkHeader;
  SlotState state = SlotState::whole;
  if (places_.places[entry].support == Support::code) state = SlotState::sizeMended;
  if (places_.places[entry].support == Support::size) state = SlotState::codeMended;
  if (next == kNone || displacementOf(entry) == displacementOf(next)) {
    take(entry, payload, state);
    return;
  }
  const std::int64_t later = displacementOf(next);
  if (next == entry + 1 && later > displacementOf(entry)) {
    // At the seam of a doubled span both copies of a header stand, and one of them has the whole payload after it.
    if (isThere(next, displacementOf(entry))) {
      take(entry, payload, state);
    } else if (isThere(entry, later)) {
      take(entry,
           static_cast<std::uint64_t>(places_.headerOf(next, entries_)) -
               (entries_[next].offset - entries_[entry].offset) + avi::kChunkHeader,
           state);
    } else {
      takeAround(entry, payload, static_cast<std::uint64_t>(later - displacementOf(entry)));
    }
    return;
  }
  const std::uint64_t stop = nextHeader(headerOf(entry));
  takePart(entry, payload, stop, SlotState::torn);
}

/// Entries between two supported ones, or in front of the first, or after the last.
void Laying::layBetween(std::size_t before, std::size_t after) {
  const std::size_t first = before == kNone ? 0 : before + 1;
  const std::size_t end = after == kNone ? entries_.size() : after;
  if (first == end) return;
  const bool isInPlace = before == kNone || after == kNone || displacementOf(before) == displacementOf(after);
  const std::int64_t displacement = displacementOf(before == kNone ? after : before);
  const auto mediaBegin = static_cast<std::int64_t>(evidence_.headers.mediaBegin());
  for (std::size_t i = first; i < end; ++i) {
    const std::int64_t payload = static_cast<std::int64_t>(entries_[i].offset + avi::kChunkHeader) + displacement;
    const bool isInside = payload > mediaBegin && static_cast<std::uint64_t>(payload) < evidence_.scan.end;
    if (isInPlace && isInside && isPlausible(i, static_cast<std::uint64_t>(payload))) {
      take(i, static_cast<std::uint64_t>(payload), SlotState::damaged);
    } else if (isInPlace || i + 1 != end || !takeEnd(i, before, after)) {
      lose(i);
    }
  }
}

/// Takes every payload from where its clusters lie.
void Laying::gather(const ClusterOrder& order) {
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    Slot& slot = film_.slots[i];
    const std::uint64_t payload = entries_[i].offset + avi::kChunkHeader;
    const auto pieces = order.piecesOf(payload, payload + entries_[i].size, evidence_.scan.end);
    std::uint32_t there = 0;
    for (const Piece& piece : pieces) there += piece.size;
    if (there == 0 && entries_[i].size > 0) {
      lose(i);
      continue;
    }
    slot.size = there;
    slot.source = pieces.empty() ? 0 : pieces.front().offset & Slot::kSourceMask;
    if (there < entries_[i].size) slot.state = SlotState::cut;
    if (pieces.size() < 2) continue;
    if (film_.pieces.size() + pieces.size() > kMaxPieces) {
      slot.size = pieces.front().size;
      slot.state = SlotState::cut;
      continue;
    }
    slot.pieces = static_cast<std::uint32_t>(film_.pieces.size());
    film_.pieces.insert(film_.pieces.end(), pieces.begin(), pieces.end());
  }
}

LaidFilm Laying::run() {
  film_.slots.resize(entries_.size());
  headers_.reserve(entries_.size());
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    Slot& slot = film_.slots[i];
    slot.stream = streams_.indexOf(entries_[i].stream);
    slot.isIndexed = true;
    slot.hasKeyFlag = entries_[i].isKey;
    slot.isPalette = StreamCodes::isPalette(entries_[i].suffix);
    if (isSupported(i)) headers_.push_back(headerOf(i));
  }
  if (const auto order = clusterOrder(entries_, places_, evidence_.scan.end)) {
    gather(*order);
    film_.isGathered = true;
    return std::move(film_);
  }
  if (!std::ranges::is_sorted(headers_)) sortNumbers(headers_);
  std::size_t before = kNone;
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    if (!isSupported(i)) continue;
    layBetween(before, i);
    if (before != kNone) laySupported(before, i);
    before = i;
  }
  if (before == kNone) {
    for (std::size_t i = 0; i < entries_.size(); ++i) lose(i);
  } else {
    laySupported(before, kNone);
    layBetween(before, kNone);
  }
  return std::move(film_);
}

}  // namespace

LaidFilm layEntries(const Evidence& evidence, const FilmStreams& streams, std::span<const TemplateEntry> entries,
                    const EntryPlaces& places) {
  return Laying(evidence, streams, entries, places).run();
}

}  // namespace zelvo::salvage
