/// The places inside compressed pictures of a laid film where foreign bytes begin.
#pragma once

#include <cstddef>

#include "salvage/plan/evidence.h"
#include "salvage/plan/laid_film.h"

namespace zelvo::salvage {

/// More open cuts than this are left open.
inline constexpr std::size_t kMaxClosedCuts = 32;

/// Decodes each picture that is open with its neighbours, takes it in two parts around the foreign bytes where the
/// place is found, and leaves in `openCuts` those where it is not.
/// \return how many were found
/// Thread: any; seconds at the most.
[[nodiscard]] std::size_t closeCuts(const Evidence& evidence, LaidFilm& film);

}  // namespace zelvo::salvage
