/// Payloads that stand in their place, but were overwritten inside.
#pragma once

#include "salvage/evidence.h"
#include "salvage/film_plan.h"
#include "salvage/media_scan.h"

namespace zelvo::salvage {

/// Marks the slots as damaged in whose payloads whole sectors are zero, could not be read or were not
/// rescued. Sound and pictures without
/// compression hold zeros of their own: in these, zeros count when they begin and end with a sector.
/// Reads some bytes around such sectors. Time is linear in the slots, times the logarithm of the stretches.
/// Thread: any.
void markDamage(const Evidence& evidence, FilmPlan& plan);

/// Whether one of `spans`, rising and apart, has a byte from `begin` up to `end`.
[[nodiscard]] bool touches(const std::vector<ByteSpan>& spans, std::uint64_t begin, std::uint64_t end);

}  // namespace zelvo::salvage
