#include "salvage/plan/chunk_ends.h"

#include <algorithm>
#include <array>

#include "avi/byte_order.h"
#include "avi/chunk_codes.h"

namespace zelvo::salvage {

namespace {

/// Zeros and small numbers are everywhere.
constexpr std::uint32_t kSmallestPayload = 16;
/// A chunk that is longer is not looked for.
constexpr std::uint64_t kReach = std::uint64_t{8} << 20U;
constexpr std::size_t kMaxSizes = 65'536;

}  // namespace

ChunkEnds::ChunkEnds(const Evidence& evidence, const FilmStreams& streams) : evidence_(evidence), streams_(streams) {
  const CandidateList& candidates = evidence.scan.candidates;
  sizes_.resize(kMaxStreams);
  const std::size_t step = std::max<std::size_t>(1, candidates.size() / kMaxSizes);
  for (std::size_t i = 0; i < candidates.size(); i += step) {
    if (candidates[i].kind() == CandidateKind::data && !StreamCodes::isPalette(candidates[i].suffix()) &&
        evidence.chain.closes(i))
      sizes_[candidates[i].stream()].push_back(candidates[i].size());
  }
  for (auto& sizes : sizes_) std::ranges::sort(sizes);
}

std::size_t ChunkEnds::usualness(std::uint8_t number, std::uint32_t size) const {
  const auto& sizes = sizes_[number];
  const auto least = static_cast<std::uint32_t>(std::uint64_t{size} * 7 / 10);
  const auto most = static_cast<std::uint32_t>(std::min<std::uint64_t>(std::uint64_t{size} * 13 / 10, 0xffffffff));
  return static_cast<std::size_t>(std::ranges::upper_bound(sizes, most) - std::ranges::lower_bound(sizes, least));
}

/// The stream whose chunks look most like it, by first bytes and size; `FilmStreams::kNone` when it looks like none.
std::uint8_t ChunkEnds::streamOf(std::uint64_t offset, std::uint32_t size) {
  std::array<std::byte, 12> bytes{};
  if (evidence_.input.read(offset, bytes) < bytes.size()) return FilmStreams::kNone;
  const std::span<const std::byte> view = bytes;
  const auto known = evidence_.codes.find(avi::FourCC::at(view));
  if (known && streams_.indexOf(known->stream) != FilmStreams::kNone) return streams_.indexOf(known->stream);
  const std::uint32_t head = avi::loadLittleEndian32(view.subspan<8, 4>());
  int best = 0;
  std::uint8_t found = FilmStreams::kNone;
  for (std::size_t index = 0; index < streams_.count(); ++index) {
    const std::uint8_t number = streams_.numberOf(static_cast<std::uint8_t>(index));
    if (number >= evidence_.facts.size()) continue;
    const StreamFacts& facts = evidence_.facts[number];
    const Candidate candidate(offset, CandidateKind::data, number, 0, size, head);
    const bool isUsual = size >= facts.smallest / 2 && size <= std::uint64_t{facts.largest} * 3 / 2;
    const int score = facts.signature.score(candidate) + facts.fixedSizeScore(size) + (isUsual ? 50 : -50);
    if (score <= best) continue;
    best = score;
    found = static_cast<std::uint8_t>(index);
  }
  return found;
}

std::optional<DeadHeader> ChunkEnds::closingOn(std::uint64_t from, std::uint64_t end) {
  constexpr std::uint64_t kWindow = 65'536;
  if (end < avi::kChunkHeader + kSmallestPayload) return std::nullopt;
  const std::uint64_t first = std::max(from, end > kReach ? end - kReach : 0);
  std::uint64_t stop = end - avi::kChunkHeader - kSmallestPayload + 1;  // headers in front of here
  platform::Bytes window(static_cast<std::size_t>(std::min(kWindow, stop - std::min(stop, first)) + avi::kChunkHeader));
  while (stop > first) {
    const std::uint64_t begin = std::max(first, stop > kWindow ? stop - kWindow : 0);
    const auto wanted = static_cast<std::size_t>(stop - begin + avi::kChunkHeader - 1);
    const std::size_t held = evidence_.input.read(begin, std::span(window).first(wanted));
    for (std::uint64_t at = stop; at-- > begin;) {
      const auto place = static_cast<std::size_t>(at - begin);
      if (place + avi::kChunkHeader > held) continue;
      const std::uint32_t size =
          avi::loadLittleEndian32(std::span<const std::byte>(window).subspan(place + 4).first<4>());
      // With its pad byte it must be as long as that; most are not even nearly.
      const auto wantedSize = static_cast<std::uint32_t>(end - at - avi::kChunkHeader);
      if (wantedSize - size > 1 || size < kSmallestPayload || size + size % 2 != wantedSize) continue;
      const std::uint8_t stream = streamOf(at, size);
      if (stream != FilmStreams::kNone) return DeadHeader{at, size, stream};
    }
    stop = begin;
  }
  return std::nullopt;
}

}  // namespace zelvo::salvage
