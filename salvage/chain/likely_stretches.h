/// Stretches of an index that chunks of constant sizes let slide along the film.
#pragma once

#include <cstdint>
#include <span>

#include "salvage/chain/displacements.h"
#include "salvage/scan/candidate.h"
#include "salvage/scan/index_template.h"

namespace zelvo::salvage {

/// Where chunks repeat their sizes, the headers of a stretch stand for the entries some places before or after as well.
/// Moves a stretch there when that lets more headers beside it stand for lost entries between it and its neighbours, or
/// as many with less bytes missing and added in all. `dataEnd`: where the file ends, in bytes.
/// Time is linear in the entries, but for what is lost beside each stretch.
/// Thread: any.
void moveToLikelier(DisplacementCover& cover, std::span<const TemplateEntry> entries, const CandidateList& candidates,
                    std::uint64_t dataEnd);

}  // namespace zelvo::salvage
