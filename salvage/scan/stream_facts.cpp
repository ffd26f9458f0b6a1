#include "salvage/scan/stream_facts.h"

#include <algorithm>
#include <array>
#include <bit>
#include <span>

#include "salvage/scan/stream_codes.h"

namespace zelvo::salvage {

namespace {

/// Fewer chunks than this share bits by chance.
constexpr std::uint64_t kFewestForSignature = 8;
constexpr std::uint64_t kConstantPercent = 96;
constexpr std::uint64_t kFixedPercent = 85;

bool isTrusted(const CandidateList& candidates, const ChunkChain& chain, std::size_t number) {
  return candidates[number].kind() == CandidateKind::data && candidates[number].stream() < kMaxStreams &&
         !StreamCodes::isPalette(candidates[number].suffix()) && chain.closes(number);
}

/// How often each bit of the first four bytes is set.
struct BitCounts {
  std::array<std::uint64_t, 32> ones{};
  std::uint64_t heads = 0;

  void add(std::uint32_t head) {
    ++heads;
    for (; head != 0; head &= head - 1) ++ones[static_cast<std::size_t>(std::countr_zero(head))];
  }
  [[nodiscard]] Signature signature() const {
    Signature found;
    if (heads < kFewestForSignature) return found;
    for (unsigned bit = 0; bit < ones.size(); ++bit) {
      const bool isSet = ones[bit] * 100 >= heads * kConstantPercent;
      const bool isClear = (heads - ones[bit]) * 100 >= heads * kConstantPercent;
      if (isSet || isClear) found.mask |= 1U << bit;
      if (isSet) found.bits |= 1U << bit;
    }
    return found;
  }
};

/// The value that a share of `perMille` thousandths do not exceed; of at least one size. Changes the order of `sizes`.
std::uint32_t quantile(std::span<std::uint32_t> sizes, std::uint64_t perMille) {
  const std::uint64_t rank = std::max<std::uint64_t>(1, (sizes.size() * perMille + 999) / 1000);
  const auto place = sizes.begin() + static_cast<std::ptrdiff_t>(rank - 1);
  std::ranges::nth_element(sizes, place);
  return *place;
}

std::optional<std::uint32_t> fixedSize(std::span<std::uint32_t> sizes) {
  // What more than half have stands in the middle.
  const auto middle = sizes.begin() + static_cast<std::ptrdiff_t>(sizes.size() / 2);
  std::ranges::nth_element(sizes, middle);
  const std::uint32_t candidate = *middle;
  const auto alike = static_cast<std::uint64_t>(std::ranges::count(sizes, candidate));
  if (alike * 100 < sizes.size() * kFixedPercent) return std::nullopt;
  return candidate;
}

/// `sizes`: of the chunks that are not empty.
void learnSizes(std::span<std::uint32_t> sizes, StreamFacts& facts) {
  if (sizes.empty()) return;
  for (const std::uint32_t size : sizes) facts.bytes += size;
  facts.mean = static_cast<std::uint32_t>(facts.bytes / sizes.size());
  facts.smallest = quantile(sizes, 5);
  facts.median = quantile(sizes, 500);
  facts.largest = quantile(sizes, 995);
  facts.fixedSize = fixedSize(sizes);
}

}  // namespace

int Signature::constantBits() const { return std::popcount(mask); }

int Signature::score(const Candidate& candidate) const {
  constexpr int kFewest = 4;
  constexpr int kEnough = 14;
  const int count = constantBits();
  if (count < kFewest || candidate.size() < 4 || StreamCodes::isPalette(candidate.suffix())) return 0;
  const int weight = std::min(100, count * 100 / kEnough);
  return (candidate.head() & mask) == bits ? weight : -weight;
}

int StreamFacts::emptyShare() const { return chunks == 0 ? 0 : static_cast<int>(emptyChunks * 100 / chunks); }

int StreamFacts::fixedSizeScore(std::uint32_t size) const {
  if (!fixedSize) return 0;
  return size == *fixedSize ? 50 : -20;
}

int StreamFacts::oversizePenalty(std::uint32_t size) const {
  return largest != 0 && size > std::uint64_t{largest} * 3 ? 100 : 0;
}

std::vector<StreamFacts> learnStreams(const CandidateList& candidates, const ChunkChain& chain) {
  std::vector<StreamFacts> streams;
  std::array<BitCounts, kMaxStreams> bits{};
  for (std::size_t i = 0; i < candidates.size(); ++i) {
    if (!isTrusted(candidates, chain, i)) continue;
    const Candidate& candidate = candidates[i];
    if (candidate.stream() >= streams.size()) streams.resize(candidate.stream() + std::size_t{1});
    StreamFacts& facts = streams[candidate.stream()];
    ++facts.chunks;
    if (candidate.size() == 0) ++facts.emptyChunks;
    if (candidate.size() >= 4) bits[candidate.stream()].add(candidate.head());
  }
  // Sizes of all streams in one table, each stream's together.
  std::vector<std::size_t> begins;
  std::size_t all = 0;
  for (const StreamFacts& facts : streams) {
    begins.push_back(all);
    all += static_cast<std::size_t>(facts.chunks - facts.emptyChunks);
  }
  std::vector<std::uint32_t> sizes(all);
  std::vector<std::size_t> next = begins;
  for (std::size_t i = 0; i < candidates.size(); ++i) {
    if (candidates[i].size() != 0 && isTrusted(candidates, chain, i))
      sizes[next[candidates[i].stream()]++] = candidates[i].size();
  }
  for (std::size_t stream = 0; stream < streams.size(); ++stream) {
    learnSizes(std::span(sizes).subspan(begins[stream], next[stream] - begins[stream]), streams[stream]);
    streams[stream].signature = bits[stream].signature();
  }
  return streams;
}

}  // namespace zelvo::salvage
