/// The sequence of chunk headers that the evidence bears out best, where no index tells it. Offsets are in bytes.
#pragma once

#include <cstdint>
#include <vector>

#include "salvage/scan/candidate.h"
#include "salvage/scan/chunk_chain.h"
#include "salvage/scan/stream_facts.h"

namespace zelvo::salvage {

/// Numbers of the candidates that make the chain of the highest score, rising. Of equal ones the one whose chunks lie
/// further in front is taken. A chunk's own score grows with its stream's signature and falls with an unusual size; a
/// link scores most where one chunk closes on the next, and costs where bytes lie between or where it overlaps.
/// What lies inside a chunk with proved ends on both sides, and closes not where it does, is left out. Headers that no
/// other closes on are found up to 40 candidates on, so the time is linear. Takes twelve bytes of memory a candidate.
/// \pre `chain` and `facts` are those of `candidates`.
/// Thread: any.
[[nodiscard]] std::vector<std::uint32_t> bestChain(const CandidateList& candidates, const ChunkChain& chain,
                                                   const std::vector<StreamFacts>& facts);

}  // namespace zelvo::salvage
