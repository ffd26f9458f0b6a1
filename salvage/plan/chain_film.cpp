// Each chunk of the chain is held until the next one is known: only then can its end be judged. Where it does not end
// there, headers with dead codes are looked for from the next chunk backwards. The rest is a wrong size or a loss.
#include "salvage/plan/chain_film.h"

#include <algorithm>
#include <array>
#include <optional>

#include "avi/chunk_codes.h"
#include "salvage/payloads/payload_length.h"
#include "salvage/plan/headless_payload.h"

namespace zelvo::salvage {

namespace {

/// Fewer bytes between chunks hold nothing.
constexpr std::uint64_t kSmallestGap = 8;
/// So many bytes are next to nothing.
constexpr std::uint64_t kNearly = 32;

/// A chunk, or another header of the chain, whose end is not judged yet.
struct Link {
  std::uint64_t offset = 0;
  std::uint64_t next = 0;                    ///< where the next header is expected
  std::uint32_t size = 0;                    ///< as it stands there
  std::uint8_t stream = FilmStreams::kNone;  ///< index in the film's header; `kNone` of what is no chunk of it
  bool isData = false;                       ///< a chunk, of whatever stream
  bool isPalette = false;                    ///< a chunk that changes the palette
  SlotState state = SlotState::whole;

  [[nodiscard]] std::uint64_t payload() const { return offset + avi::kChunkHeader; }
  [[nodiscard]] std::uint64_t payloadEnd() const { return payload() + size; }
};

class Filling {
 public:
  Filling(const Evidence& evidence, const FilmStreams& streams, ChunkEnds& ends, const std::vector<Codec>& codecs,
          const std::vector<PayloadShape>& shapes, ByteSpan within)
      : evidence_(evidence),
        streams_(streams),
        within_(within),
        ends_(ends),
        codecs_(codecs),
        shapes_(shapes),
        headless_(evidence, streams, shapes) {}

  void reserve(std::size_t slots) { film_.slots.reserve(slots); }
  [[nodiscard]] std::size_t slots() const { return film_.slots.size(); }
  /// Takes the next header of the chain.
  void take(const Candidate& candidate, bool isForeign);
  ChainFilm end();

 private:
  [[nodiscard]] Link linkOf(const Candidate& candidate) const;
  [[nodiscard]] Link linkOf(const DeadHeader& header) const;
  [[nodiscard]] std::optional<Link> linkBefore(std::uint64_t from, std::uint64_t target);
  void goOnTo(const Link& link);
  void settle(std::uint64_t next);
  void settleAtEnd();
  void keep(std::uint32_t size, SlotState state);
  bool takeHeadless(std::uint64_t begin, std::uint64_t end);
  void noteGap(std::uint64_t begin, std::uint64_t end, std::uint32_t longer = 0);
  void noteTear(std::uint64_t at, std::uint64_t missing, std::uint32_t longer = 0);
  [[nodiscard]] const StreamFacts* factsOf(std::uint8_t stream) const;
  [[nodiscard]] std::optional<std::uint32_t> ownLength(std::uint64_t room) const;
  [[nodiscard]] std::uint32_t lengthIn(std::uint8_t stream, std::uint64_t payload, std::uint64_t room) const;
  /// The same of the held chunk.
  [[nodiscard]] std::uint32_t lengthWithin(std::uint64_t room) const {
    return lengthIn(held_->stream, held_->payload(), room);
  }
  [[nodiscard]] bool isFixed(std::uint64_t room) const;
  [[nodiscard]] Fit completeness(std::uint32_t size) const;
  [[nodiscard]] bool isUsual(std::uint64_t size) const;
  [[nodiscard]] bool isCompleteIn(std::uint64_t room) const;
  [[nodiscard]] bool mayBeLonger(std::uint64_t room) const;

  const Evidence& evidence_;
  const FilmStreams& streams_;
  const ByteSpan within_;
  ChunkEnds& ends_;
  const std::vector<Codec>& codecs_;
  const std::vector<PayloadShape>& shapes_;
  const HeadlessPayloads headless_;
  std::optional<Link> held_;
  ChainFilm film_;
};

Link Filling::linkOf(const Candidate& candidate) const {
  Link link;
  link.offset = candidate.offset();
  link.next = candidate.next();
  link.size = candidate.size();
  link.isData = candidate.kind() == CandidateKind::data;
  if (link.isData) link.stream = streams_.indexOf(candidate.stream());
  link.isPalette = link.isData && StreamCodes::isPalette(candidate.suffix());
  return link;
}

Link Filling::linkOf(const DeadHeader& header) const {
  Link link;
  link.offset = header.offset;
  link.next = header.payloadEnd() + header.size % 2;
  link.size = header.size;
  link.stream = header.stream;
  link.isData = true;
  link.state = SlotState::codeMended;
  return link;
}

const StreamFacts* Filling::factsOf(std::uint8_t stream) const {
  if (stream == FilmStreams::kNone) return nullptr;
  const std::uint8_t number = streams_.numberOf(stream);
  return number < evidence_.facts.size() ? &evidence_.facts[number] : nullptr;
}

void Filling::keep(std::uint32_t size, SlotState state) {
  if (held_->stream == FilmStreams::kNone) return;
  Slot slot;
  slot.source = held_->payload() & Slot::kSourceMask;
  slot.size = size;
  slot.stream = held_->stream;
  slot.state = state;
  slot.isPalette = held_->isPalette;
  film_.slots.push_back(slot);
}

void Filling::noteGap(std::uint64_t begin, std::uint64_t end, std::uint32_t longer) {
  if (end >= begin + kSmallestGap && film_.gaps.size() < ChainFilm::kMaxGaps)
    film_.gaps.push_back({film_.slots.size(), begin, end, 0, longer, false});
}

/// Takes what lies between two chunks as one whose header is lost, if it is one to the byte.
bool Filling::takeHeadless(std::uint64_t begin, std::uint64_t end) {
  constexpr std::uint64_t kSmallest = 16;
  if (end < begin + avi::kChunkHeader + kSmallest || end - begin > kMaxJudgedPayload) return false;
  const std::uint64_t payload = begin + avi::kChunkHeader;
  constexpr int kMaxTries = 8;
  int tries = 0;
  for (std::size_t i = 0; i < streams_.count() && tries < kMaxTries; ++i) {
    const auto stream = static_cast<std::uint8_t>(i);
    if (!headless_.mayFill(stream, end - payload)) continue;
    ++tries;
    const std::uint32_t size = lengthIn(stream, payload, end - payload);
    if (!headless_.isSurely(stream, payload, size, film_.slots)) continue;
    Slot slot;
    slot.source = payload & Slot::kSourceMask;
    slot.size = size;
    slot.stream = stream;
    slot.state = SlotState::codeMended;
    film_.slots.push_back(slot);
    return true;
  }
  return false;
}

void Filling::noteTear(std::uint64_t at, std::uint64_t missing, std::uint32_t longer) {
  if (film_.gaps.size() < ChainFilm::kMaxGaps)
    film_.gaps.push_back({film_.slots.size(), at, at, missing, longer, true});
}

/// The length that the codec of the held chunk finds within `room` bytes.
std::optional<std::uint32_t> Filling::ownLength(std::uint64_t room) const {
  if (held_->stream == FilmStreams::kNone || held_->stream >= codecs_.size() || room > kMaxJudgedPayload)
    return std::nullopt;
  const Codec codec = codecs_[held_->stream];
  const platform::Bytes bytes = evidence_.input.readBytes(held_->payload(), static_cast<std::size_t>(room));
  return payloadLength(codec, bytes);
}

/// The length of a payload that fills `room` up to the next header, one pad byte left out.
std::uint32_t Filling::lengthIn(std::uint8_t stream, std::uint64_t payload, std::uint64_t room) const {
  const StreamFacts* facts = factsOf(stream);
  const auto size = static_cast<std::uint32_t>(room);
  if (facts != nullptr && facts->fixedSize && (*facts->fixedSize == size || *facts->fixedSize + 1 == size))
    return *facts->fixedSize;
  if (streams_.countsBytes(stream)) return size - size % streams_.blockOf(stream);
  std::array<std::byte, 1> last{};
  const bool hasLast = evidence_.input.read(payload + room - 1, last) == 1;
  return hasLast && last[0] == std::byte{0} ? size - 1 : size;
}

/// Whether the held chunk's payload is complete when it is so long.
Fit Filling::completeness(std::uint32_t size) const {
  constexpr std::uint32_t kEdge = 64;
  const std::size_t length = std::min(kEdge, size);
  const platform::Bytes head = evidence_.input.readBytes(held_->payload(), length);
  const platform::Bytes tail = evidence_.input.readBytes(held_->payload() + size - length, length);
  return shapes_[held_->stream].isComplete(head, tail, size);
}

/// Whether a chunk of the stream's one size fills the room.
bool Filling::isFixed(std::uint64_t room) const {
  const StreamFacts* facts = factsOf(held_->stream);
  return facts != nullptr && facts->fixedSize && (*facts->fixedSize == room || *facts->fixedSize + 1 == room);
}

/// Whether a size is about as usual in the held chunk's stream as the one that stands there.
bool Filling::isUsual(std::uint64_t size) const {
  if (const StreamFacts* facts = factsOf(held_->stream)) {
    // Where all sizes are near each other, one that stands apart is odd.
    const std::uint64_t spread = std::max<std::uint64_t>((facts->largest - facts->smallest) / 2, facts->mean / 32);
    const auto isWithin = [&](std::uint64_t one) {
      return one + spread >= facts->smallest && one <= facts->largest + spread;
    };
    if (isWithin(held_->size) && !isWithin(size)) return false;
  }
  const std::uint8_t number = streams_.numberOf(held_->stream);
  return ends_.usualness(number, static_cast<std::uint32_t>(size)) * 2 >= ends_.usualness(number, held_->size);
}

/// Whether the held chunk's payload is complete when it fills all of `room`. What only looks so, since the front of one
/// payload and the end of another are left, has no usual size.
bool Filling::isCompleteIn(std::uint64_t room) const {
  return completeness(lengthWithin(room)) == Fit::fits && isUsual(lengthWithin(room));
}

/// Whether the held chunk rather fills all of `room` than ends where it says and is followed by a lost one.
bool Filling::mayBeLonger(std::uint64_t room) const {
  const StreamFacts* facts = factsOf(held_->stream);
  if (facts == nullptr || completeness(lengthWithin(room)) == Fit::contradicts) return false;
  const auto longer = static_cast<std::uint32_t>(room);
  if (facts->fixedSize) return false;
  return longer <= std::uint64_t{facts->largest} * 3 / 2 && isUsual(longer);
}

/// The held chunk is followed by a header at `next`, and none is between.
void Filling::settle(std::uint64_t next) {
  if (!held_) {
    noteGap(within_.begin, next);
    return;
  }
  const std::uint64_t room = next - std::min(next, held_->payload());
  const bool closes = held_->next == next || (held_->isData && held_->payloadEnd() == next);
  if (closes || !held_->isData || held_->stream == FilmStreams::kNone || room > 0xfffffffe) {
    keep(held_->size, held_->state);
    if (!closes && held_->next < next) noteGap(held_->next, next);
    return;
  }
  if (held_->isPalette) {
    // What is known of the stream's pictures says nothing of it.
    const bool isThere = held_->next < next;
    if (isThere) keep(held_->size, held_->state);
    noteGap(isThere ? held_->next : held_->payload(), next);
    return;
  }
  const StreamFacts* facts = factsOf(held_->stream);
  auto own = room == 0 ? std::nullopt : ownLength(room);
  if (own && *own != held_->size && !isUsual(*own)) own.reset();
  if (own && *own + 1 >= room) {
    keep(*own, *own == held_->size ? held_->state : SlotState::sizeMended);
    return;
  }
  if (held_->next < next) {
    if (own && *own != held_->size) {
      keep(*own, SlotState::sizeMended);
      noteGap(held_->payload() + *own, next);
    } else if (!own && (isFixed(room) || isCompleteIn(room))) {
      keep(lengthWithin(room), SlotState::sizeMended);
    } else {
      keep(held_->size, held_->state);
      const std::uint32_t longer = !own && mayBeLonger(room) ? lengthWithin(room) : 0;
      if (!takeHeadless(held_->next, next)) noteGap(held_->next, next, longer);
    }
    return;
  }
  // A size that nearly ends on the next header is no chance: some bytes are missing.
  const bool isImplausible = held_->next - next > kNearly && facts != nullptr && facts->largest != 0 &&
                             held_->size > std::uint64_t{facts->largest} * 3 / 2;
  if (isImplausible && facts->fixedSize && !isFixed(room) && *facts->fixedSize < room) {
    keep(*facts->fixedSize, SlotState::sizeMended);
    noteGap(held_->payload() + *facts->fixedSize + *facts->fixedSize % 2, next);
    return;
  }
  if (room > 0 && (isFixed(room) || isImplausible || isCompleteIn(room))) {
    keep(lengthWithin(room), SlotState::sizeMended);
    return;
  }
  const bool mayBeWhole =
      room > 0 && !own && isUsual(lengthWithin(room)) && completeness(lengthWithin(room)) != Fit::contradicts;
  keep(static_cast<std::uint32_t>(room), SlotState::torn);
  noteTear(next, held_->next - next, mayBeWhole ? lengthWithin(room) : 0);
}

/// The data end after the held chunk.
void Filling::settleAtEnd() {
  if (!held_) {
    noteGap(within_.begin, within_.end);
    return;
  }
  if (!held_->isData || held_->payloadEnd() <= within_.end) {
    keep(held_->size, held_->state);
    noteGap(std::min(held_->next, within_.end), within_.end);
    return;
  }
  if (within_.end != evidence_.scan.end) {
    settle(within_.end);
    return;
  }
  if (held_->stream == FilmStreams::kNone) return;
  if (!streams_.isSound(held_->stream)) {
    noteTear(within_.end, 0);
    return;
  }
  auto left = static_cast<std::uint32_t>(within_.end - std::min(within_.end, held_->payload()));
  if (streams_.countsBytes(held_->stream)) left -= left % streams_.blockOf(held_->stream);
  if (left > 0) keep(left, SlotState::cut);
}

/// A chunk that ends at `target` though the chain does not have it: its code is dead, or its size is wrong.
std::optional<Link> Filling::linkBefore(std::uint64_t from, std::uint64_t target) {
  if (const auto header = ends_.closingOn(from, target)) return linkOf(*header);
  constexpr std::size_t kMaxBack = 16;
  const CandidateList& candidates = evidence_.scan.candidates;
  std::uint64_t looks = 0;
  const std::size_t behind = candidates.firstAtOrAfter(target, 0, looks);
  for (std::size_t i = behind; i > 0 && behind - i < kMaxBack && candidates[i - 1].offset() >= from; --i) {
    Link link = linkOf(candidates[i - 1]);
    if (link.stream == FilmStreams::kNone || link.isPalette || target <= link.payload()) continue;
    const std::uint64_t room = target - link.payload();
    if (room > kMaxJudgedPayload) break;
    // A code in its place says much: what goes with it need only be usual.
    const StreamFacts* facts = factsOf(link.stream);
    const std::uint32_t size = lengthIn(link.stream, link.payload(), room);
    const bool isUsualSize = facts != nullptr && size >= facts->smallest / 2 && size <= facts->largest * 3 / 2;
    const bool isFilled =
        isUsualSize && facts->signature.score(candidates[i - 1]) >= 0 && facts->fixedSizeScore(size) >= 0;
    const std::uint32_t fixed = facts != nullptr ? facts->fixedSize.value_or(0) : 0;
    if (!isFilled && (fixed == 0 || fixed > room)) continue;
    link.size = isFilled ? size : fixed;
    link.next = isFilled ? target : link.payloadEnd() + fixed % 2;
    link.state = SlotState::sizeMended;
    return link;
  }
  return std::nullopt;
}

void Filling::goOnTo(const Link& link) {
  const bool closes = held_ && (held_->next == link.offset || (held_->isData && held_->payloadEnd() == link.offset));
  std::vector<Link> found;  // from the last to the first
  if (!closes) {
    const std::uint64_t from = held_ ? held_->payload() : within_.begin;
    std::uint64_t target = link.offset;
    // Each that has a wrong size makes the whole hole be searched for dead codes once more.
    constexpr int kMaxSizes = 4;
    int sizes = 0;
    while (auto header = linkBefore(from, target)) {
      if (header->state == SlotState::sizeMended && ++sizes > kMaxSizes) break;
      found.push_back(*header);
      target = header->offset;
      if (held_ && held_->next == target) break;
    }
  }
  for (; !found.empty(); found.pop_back()) {
    settle(found.back().offset);
    held_ = found.back();
  }
  settle(link.offset);
  held_ = link;
}

void Filling::take(const Candidate& candidate, bool isForeign) {
  Link link = linkOf(candidate);
  if (isForeign) link.stream = FilmStreams::kNone;
  goOnTo(link);
}

ChainFilm Filling::end() {
  settleAtEnd();
  return std::move(film_);
}

}  // namespace

ChainFilms::ChainFilms(const Evidence& evidence, const FilmStreams& streams, std::span<const std::uint32_t> chain,
                       std::span<const std::uint8_t> isForeign)
    : evidence_(evidence), streams_(streams), chain_(chain), isForeign_(isForeign), ends_(evidence, streams) {
  for (const FilmStream& stream : evidence.header.streams) {
    codecs_.push_back(codecOf(stream.header));
    shapes_.emplace_back(stream.header);
  }
}

ChainFilm ChainFilms::part(ByteSpan within, std::size_t most) {
  const CandidateList& candidates = evidence_.scan.candidates;
  Filling filling(evidence_, streams_, ends_, codecs_, shapes_, within);
  const auto offsetOf = [&](std::uint32_t number) { return candidates[number].offset(); };
  const auto first = std::ranges::lower_bound(chain_, within.begin, {}, offsetOf);
  const auto last = std::ranges::lower_bound(first, chain_.end(), within.end, {}, offsetOf);
  filling.reserve(std::min(most, static_cast<std::size_t>(last - first)));
  auto at = first;
  for (; at != last && filling.slots() < most; ++at)
    filling.take(candidates[*at], !isForeign_.empty() && isForeign_[*at] != 0);
  ChainFilm film = filling.end();
  film.leftOut = static_cast<std::size_t>(last - at) + film.slots.size() - std::min(film.slots.size(), most);
  film.slots.resize(std::min(film.slots.size(), most));
  return film;
}

}  // namespace zelvo::salvage
