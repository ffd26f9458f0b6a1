/// Some payloads of a stream whose header is lost, to recognise it by. Sizes are in bytes.
#pragma once

#include <cstdint>
#include <vector>

#include "avi/input_file.h"
#include "platform/bytes.h"
#include "salvage/scan/candidate.h"
#include "salvage/scan/chunk_chain.h"
#include "salvage/scan/seen_streams.h"

namespace zelvo::salvage {

struct SampledPayload {
  std::uint32_t size = 0;  ///< of the whole payload
  platform::Bytes bytes;   ///< its front
};

struct StreamSample {
  SeenStream seen;
  std::vector<std::uint32_t> sizes;      ///< of chunks that are not empty, evenly taken from the film; rising
  std::vector<SampledPayload> payloads;  ///< evenly taken: fronts of 4 KiB
  std::vector<SampledPayload> run;       ///< one after the other in the film, empty ones too: fronts of 256 bytes
  std::vector<SampledPayload> whole;     ///< three from the middle of the film: up to 1 MiB of each

  /// The size that 90 % of the chunks have; 0 without one.
  [[nodiscard]] std::uint32_t commonSize() const;
};

/// Of each stream in `seen`, from chunks whose ends are proved. Reads and keeps a MiB a stream at the most.
/// \pre `chain` is that of `candidates`.
/// Thread: any.
[[nodiscard]] std::vector<StreamSample> sampleStreams(avi::InputFile& input, const CandidateList& candidates,
                                                      const ChunkChain& chain, const std::vector<SeenStream>& seen);

}  // namespace zelvo::salvage
