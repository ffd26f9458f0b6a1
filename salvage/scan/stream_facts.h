/// What the chunks of a stream have in common, learnt from those whose ends are proved. No codec is known here, so
/// every codec can be learnt. Sizes are in bytes, scores and shares in hundredths.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "salvage/scan/candidate.h"
#include "salvage/scan/chunk_chain.h"
#include "salvage/scan/surviving_headers.h"

namespace zelvo::salvage {

/// The bits of a payload's first four bytes that nearly all of a stream's chunks share.
struct Signature {
  std::uint32_t mask = 0;  ///< of a candidate's head: bits that are constant
  std::uint32_t bits = 0;  ///< what they are; zero elsewhere

  [[nodiscard]] int constantBits() const;
  /// How well a chunk's first bytes fit: 100 at most when all constant bits agree, the same below zero when one does
  /// not, less for few bits, and 0 when there are too few to tell or the payload has not four bytes.
  [[nodiscard]] int score(const Candidate& candidate) const;
};

/// Of one stream number.
struct StreamFacts {
  std::uint64_t chunks = 0;       ///< trusted ones: what the rest is learnt from
  std::uint64_t emptyChunks = 0;  ///< of these
  std::uint64_t bytes = 0;        ///< of their payloads
  std::uint32_t mean = 0;         ///< of chunks that are not empty, rounded down, as the four below
  std::uint32_t smallest = 0;     ///< the 0.5 % quantile
  std::uint32_t median = 0;
  std::uint32_t largest = 0;               ///< the 99.5 % quantile
  std::optional<std::uint32_t> fixedSize;  ///< when 85 % have one size
  Signature signature;

  /// Share of trusted chunks that are empty.
  [[nodiscard]] int emptyShare() const;
  /// 50 when the size is the stream's fixed size, -20 when it is another, 0 when sizes vary.
  [[nodiscard]] int fixedSizeScore(std::uint32_t size) const;
  /// 100 when the size is beyond three times the 99.5 % quantile, else 0; 0 where nothing was learnt.
  [[nodiscard]] int oversizePenalty(std::uint32_t size) const;
};

/// The facts of each stream, by its number: up to the highest that has a trusted chunk. O(c) in time; takes four
/// bytes of memory a trusted chunk.
/// \pre `chain` is that of `candidates`.
/// Thread: any.
[[nodiscard]] std::vector<StreamFacts> learnStreams(const CandidateList& candidates, const ChunkChain& chain);

}  // namespace zelvo::salvage
