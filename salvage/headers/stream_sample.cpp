#include "salvage/headers/stream_sample.h"

#include <algorithm>
#include <array>

namespace zelvo::salvage {

namespace {

constexpr std::size_t kKeptSizes = 4096;
constexpr std::size_t kPayloads = 48;
constexpr std::size_t kFront = 4096;
constexpr std::size_t kRun = 96;
constexpr std::size_t kRunFront = 256;
constexpr std::size_t kWhole = 3;
constexpr std::size_t kWholeFront = std::size_t{1} << 20U;

SampledPayload payloadOf(avi::InputFile& input, const Candidate& chunk, std::size_t front) {
  return {chunk.size(), input.readBytes(chunk.offset() + 8, std::min<std::size_t>(chunk.size(), front))};
}

}  // namespace

std::uint32_t StreamSample::commonSize() const {
  if (sizes.empty()) return 0;
  const std::uint32_t middle = sizes[sizes.size() / 2];
  const auto same = static_cast<std::size_t>(std::ranges::count(sizes, middle));
  return same * 10 >= sizes.size() * 9 ? middle : 0;
}

std::vector<StreamSample> sampleStreams(avi::InputFile& input, const CandidateList& candidates, const ChunkChain& chain,
                                        const std::vector<SeenStream>& seen) {
  std::array<std::size_t, kMaxStreams> place{};
  place.fill(seen.size());
  std::vector<StreamSample> samples(seen.size());
  for (std::size_t i = 0; i < seen.size(); ++i) {
    samples[i].seen = seen[i];
    place[seen[i].number] = i;
  }
  std::vector<std::uint64_t> met(seen.size());
  for (std::size_t i = 0; i < candidates.size(); ++i) {
    const Candidate& chunk = candidates[i];
    if (chunk.kind() != CandidateKind::data || StreamCodes::isPalette(chunk.suffix())) continue;
    if (!chain.closes(i) || place[chunk.stream()] == seen.size()) continue;
    const std::size_t stream = place[chunk.stream()];
    StreamSample& sample = samples[stream];
    const std::uint64_t number = met[stream]++;
    const std::uint64_t all = sample.seen.chunks;
    if (number >= all / 3 && sample.run.size() < kRun) sample.run.push_back(payloadOf(input, chunk, kRunFront));
    if (chunk.size() == 0) continue;
    // Evenly: each time another share of the stream's chunks is after.
    if (sample.sizes.size() < kKeptSizes && sample.sizes.size() * all <= number * kKeptSizes)
      sample.sizes.push_back(chunk.size());
    if (sample.payloads.size() < kPayloads && sample.payloads.size() * all <= number * kPayloads)
      sample.payloads.push_back(payloadOf(input, chunk, kFront));
    if (sample.whole.size() < kWhole && (sample.whole.size() + 1) * all <= (number + 1) * (kWhole + 1))
      sample.whole.push_back(payloadOf(input, chunk, kWholeFront));
  }
  for (StreamSample& sample : samples) std::ranges::sort(sample.sizes);
  return samples;
}

}  // namespace zelvo::salvage
