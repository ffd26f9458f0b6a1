/// Which streams a film's chunks really are of, whatever its headers say.
#pragma once

#include <cstdint>
#include <vector>

#include "salvage/scan/candidate.h"
#include "salvage/scan/chunk_chain.h"
#include "salvage/scan/stream_codes.h"

namespace zelvo::salvage {

struct SeenStream {
  std::uint8_t number = 0;   ///< in its chunks' codes
  avi::FourCC code;          ///< that most of its chunks bear
  std::uint64_t chunks = 0;  ///< whose ends are proved
};

/// Rising by number. A stream counts from two chunks on whose ends are proved, since one may be chance.
/// \pre `chain` is that of `candidates`.
/// Thread: any.
[[nodiscard]] std::vector<SeenStream> seenStreams(const CandidateList& candidates, const ChunkChain& chain,
                                                  const StreamCodes& codes);

/// The type (fccType) of the streams whose chunks bear such a code.
[[nodiscard]] avi::FourCC streamTypeOf(avi::FourCC code);
/// The code of the chunks of such a stream, when none of them was seen.
[[nodiscard]] avi::FourCC usualCode(avi::FourCC type, std::uint8_t number);

}  // namespace zelvo::salvage
