/// Payloads that stand in their place, but were overwritten inside.
#pragma once

#include "salvage/plan/evidence.h"
#include "salvage/plan/film_plan.h"
#include "salvage/scan/media_scan.h"

namespace zelvo::salvage {

/// Marks the slots as damaged in whose payloads whole sectors are zero, could not be read or were not rescued. Sound
/// and pictures without compression hold zeros of their own: in these, zeros count when they begin and end with a
/// sector. Reads some bytes around such sectors. Time is linear in the slots, times the logarithm of the stretches.
/// Thread: any.
void markDamage(const Evidence& evidence, FilmPlan& plan);

}  // namespace zelvo::salvage
