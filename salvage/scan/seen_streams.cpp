#include "salvage/scan/seen_streams.h"

#include <algorithm>
#include <array>

namespace zelvo::salvage {

namespace {

constexpr std::uint64_t kFewestChunks = 2;
constexpr avi::FourCC kTxts{"txts"};
constexpr avi::FourCC kIavs{"iavs"};

std::uint32_t suffixBits(avi::FourCC code) { return code.value & 0xffff0000U; }

}  // namespace

std::vector<SeenStream> seenStreams(const CandidateList& candidates, const ChunkChain& chain,
                                    const StreamCodes& codes) {
  std::array<std::array<std::uint64_t, StreamCodes::kMaxSuffixes>, kMaxStreams> counts{};
  for (std::size_t i = 0; i < candidates.size(); ++i) {
    const Candidate& candidate = candidates[i];
    if (candidate.kind() == CandidateKind::data && chain.closes(i) && candidate.suffix() < StreamCodes::kMaxSuffixes &&
        !StreamCodes::isPalette(candidate.suffix()))
      ++counts[candidate.stream()][candidate.suffix()];
  }
  std::vector<SeenStream> seen;
  for (std::size_t stream = 0; stream < counts.size(); ++stream) {
    std::uint64_t chunks = 0;
    for (const std::uint64_t count : counts[stream]) chunks += count;
    if (chunks < kFewestChunks) continue;
    const auto most = static_cast<std::size_t>(std::ranges::max_element(counts[stream]) - counts[stream].begin());
    const auto number = static_cast<std::uint8_t>(stream);
    seen.push_back({number, codes.codeOf({number, static_cast<std::uint8_t>(most)}), chunks});
  }
  return seen;
}

avi::FourCC streamTypeOf(avi::FourCC code) {
  const std::uint32_t suffix = suffixBits(code);
  if (suffix == suffixBits(avi::FourCC{"00wb"})) return avi::kAuds;
  if (suffix == suffixBits(avi::FourCC{"00tx"}) || suffix == suffixBits(avi::FourCC{"00sb"})) return kTxts;
  if (suffix == suffixBits(avi::FourCC{"00__"})) return kIavs;
  return avi::kVids;
}

avi::FourCC usualCode(avi::FourCC type, std::uint8_t number) {
  constexpr std::uint32_t kZero = 0x30;
  avi::FourCC code{"00dc"};
  if (type == avi::kAuds || type == avi::FourCC{"mids"}) code = avi::FourCC{"00wb"};
  if (type == kTxts) code = avi::FourCC{"00tx"};
  if (type == kIavs) code = avi::FourCC{"00__"};
  code.value = suffixBits(code) | (kZero + number / 10U) | (kZero + number % 10U) << 8U;
  return code;
}

}  // namespace zelvo::salvage
