#include "salvage/plan/headless_payload.h"

#include <algorithm>
#include <span>

#include "avi/byte_order.h"
#include "avi/chunk_codes.h"
#include "salvage/plan/content_marks.h"

namespace zelvo::salvage {

namespace {

constexpr int kFewestBits = 16;

}  // namespace

bool HeadlessPayloads::mayFill(std::uint8_t stream, std::uint64_t room) const {
  const std::uint8_t number = streams_.numberOf(stream);
  if (number >= evidence_.facts.size() || room > kMaxJudgedPayload) return false;
  const StreamFacts& facts = evidence_.facts[number];
  if (facts.fixedSize) return *facts.fixedSize == room || *facts.fixedSize + std::uint64_t{1} == room;
  return facts.signature.constantBits() >= kFewestBits && room >= facts.smallest / 2 &&
         room <= std::uint64_t{facts.largest} * 3 / 2;
}

bool HeadlessPayloads::isSurely(std::uint8_t stream, std::uint64_t payload, std::uint32_t size,
                                const std::vector<Slot>& before) const {
  const std::uint8_t number = streams_.numberOf(stream);
  if (number >= evidence_.facts.size() || size == 0 || size > kMaxJudgedPayload) return false;
  const StreamFacts& facts = evidence_.facts[number];
  if (facts.fixedSize) {
    if (*facts.fixedSize != size) return false;
    const auto last = std::ranges::find(before.rbegin(), before.rend(), stream, &Slot::stream);
    return isLike(last == before.rend() ? nullptr : &*last, stream, payload, size);
  }
  if (!mayFill(stream, size)) return false;
  constexpr std::uint32_t kEdge = 64;
  const std::size_t length = std::min(kEdge, size);
  const platform::Bytes head = evidence_.input.readBytes(payload, length);
  const platform::Bytes tail = evidence_.input.readBytes(payload + size - length, length);
  if (head.size() < 4) return false;
  const Candidate candidate(payload - avi::kChunkHeader, CandidateKind::data, number, 0, size,
                            avi::loadLittleEndian32(std::span(head).first<4>()));
  return facts.signature.score(candidate) > 0 && shapes_[stream].isComplete(head, tail, size) != Fit::contradicts;
}

/// Whether samples or pixels are about as rough as those of the stream's last chunk, and not all one: what was
/// overwritten differs. Of other codecs nothing is said against it.
bool HeadlessPayloads::isLike(const Slot* last, std::uint8_t stream, std::uint64_t payload, std::uint32_t size) const {
  constexpr std::uint32_t kSlack = 100;
  const platform::Bytes bytes = evidence_.input.readBytes(payload, size);
  if (bytes.size() < size || std::ranges::all_of(bytes, [&](std::byte byte) { return byte == bytes.front(); }))
    return false;
  const auto layout = sampleLayout(evidence_.header.streams[stream].header);
  if (!layout || last == nullptr || last->size > kMaxJudgedPayload) return true;
  const std::uint32_t own = noiseOf(bytes, 0, *layout);
  const std::uint32_t before = noiseOf(evidence_.input.readBytes(last->source, last->size), 0, *layout);
  return own <= 4 * before + kSlack && before <= 4 * own + kSlack;
}

}  // namespace zelvo::salvage
