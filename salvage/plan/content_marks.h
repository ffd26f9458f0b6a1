/// Payloads that stand in their place and hold what their codec cannot have made.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "salvage/plan/evidence.h"
#include "salvage/plan/film_plan.h"

namespace zelvo::salvage {

/// Samples or pixels without compression, as far as it matters how neighbours differ.
struct SampleLayout {
  std::size_t stride = 0;  ///< bytes from one to its neighbour
  bool isWide = false;     ///< of 16 bits, the low byte first, and signed; else of 8
};

/// Nothing where it does not matter how neighbours differ.
[[nodiscard]] std::optional<SampleLayout> sampleLayout(const SurvivingStream& stream);

/// How much neighbours differ in the noisiest whole sector of 512 bytes, in thousandths of what random bytes have; 0
/// without a whole sector. `offset`: of the payload in the file, which the sectors lie in.
/// Thread: any.
[[nodiscard]] std::uint32_t noiseOf(std::span<const std::byte> payload, std::uint64_t offset,
                                    const SampleLayout& layout);

/// Marks as damaged what was overwritten inside: JPEG pictures, MPEG audio and AC-3 whose own marks break off; samples
/// and pixels that are random over a whole sector, where the rest of their stream is not. Only streams that are mostly
/// sound are judged, and only a film that is known to be damaged. Reads the payloads of such streams once.
/// Thread: any.
void markContent(const Evidence& evidence, FilmPlan& plan);

}  // namespace zelvo::salvage
