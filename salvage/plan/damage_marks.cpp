#include "salvage/plan/damage_marks.h"

#include <algorithm>
#include <array>

#include "salvage/payloads/codec.h"

namespace zelvo::salvage {

namespace {

constexpr std::uint64_t kHeader = 8;

bool mayHoldZeros(Codec codec) {
  switch (codec) {
    case Codec::rawPicture:
    case Codec::pcm:
    case Codec::aLaw:
    case Codec::muLaw:
    case Codec::imaAdpcm:
    case Codec::msAdpcm:
    case Codec::unknown:
      return true;
    default:
      return false;
  }
}

/// Whether zeros end just where their sectors do: zeros of a payload's own end anywhere.
bool hasSharpEnds(avi::InputFile& input, const ByteSpan& zeros) {
  constexpr std::size_t kEdge = 4;
  const auto isClear = [&](std::uint64_t from) {
    std::array<std::byte, kEdge> bytes{};
    const std::size_t held = input.read(from, bytes);
    return std::ranges::all_of(std::span(bytes).first(held), [](std::byte byte) { return byte == std::byte{0}; });
  };
  return zeros.begin >= kEdge && !isClear(zeros.begin - kEdge) && !isClear(zeros.end);
}

/// The first of `spans` that ends after `begin`.
std::vector<ByteSpan>::const_iterator firstBehind(const std::vector<ByteSpan>& spans, std::uint64_t begin) {
  return std::ranges::upper_bound(spans, begin, {}, &ByteSpan::end);
}

}  // namespace

void markDamage(const Evidence& evidence, FilmPlan& plan) {
  const auto& zeroed = evidence.scan.zeroed;
  const auto& unreadable = evidence.scan.unreadable;
  const auto& unrescued = evidence.scan.unrescued;
  if (zeroed.empty() && unreadable.empty() && unrescued.empty()) return;
  std::vector<ByteSpan> sharp;
  for (const ByteSpan& zeros : zeroed) {
    if (hasSharpEnds(evidence.input, zeros)) sharp.push_back(zeros);
  }
  std::vector<bool> holdsZeros;
  for (const FilmStream& stream : evidence.header.streams) holdsZeros.push_back(mayHoldZeros(codecOf(stream.header)));
  const auto isHurt = [&](const Slot& slot, std::uint64_t begin, std::uint64_t size) {
    const std::uint64_t end = begin + size;
    const bool holds = holdsZeros[slot.stream] || slot.isPalette;
    if (touches(unreadable, begin, end) || touches(unrescued, begin, end)) return true;
    if (touches(holds ? sharp : zeroed, begin, end)) return true;
    // A payload's own zeros do not go on over the next header.
    const auto behind = firstBehind(zeroed, end + kHeader - 1);
    return behind != zeroed.end() && behind->begin < end;
  };
  for (Slot& slot : plan.slots) {
    const bool isSound = slot.state < SlotState::damaged;
    if (!isSound || !slot.hasSource()) continue;
    if (slot.pieces == Slot::kOnePiece) {
      if (isHurt(slot, slot.source, slot.size)) slot.state = SlotState::damaged;
      continue;
    }
    std::uint64_t left = slot.size;
    for (std::size_t i = slot.pieces; left > 0 && i < plan.pieces.size(); ++i) {
      const Piece& piece = plan.pieces[i];
      left -= std::min<std::uint64_t>(left, piece.size);
      if (piece.offset != Piece::kSilence && isHurt(slot, piece.offset, piece.size)) slot.state = SlotState::damaged;
    }
  }
}

}  // namespace zelvo::salvage
