/// Stretches of an index that match other chunks by chance.
#pragma once

#include <span>

#include "salvage/chain/displacements.h"
#include "salvage/scan/candidate.h"
#include "salvage/scan/chunk_chain.h"
#include "salvage/scan/index_template.h"

namespace zelvo::salvage {

/// Takes back stretches of entries with one displacement that lie in the midst of a chain of sound chunks: at both ends
/// the chain goes on with a chunk other than the one that the index has there. What really moved ends where the film is
/// damaged. Where they stand where a part of the index is lost, one end tells, too: of a few entries beside that part,
/// and of any when the index has the next chunk elsewhere and no entry names what is there.
/// The displacement that explains the first entries stays.
/// Thread: any.
void dropLone(DisplacementCover& cover, std::span<const TemplateEntry> entries, const CandidateList& candidates,
              const ChunkChain& chain);

}  // namespace zelvo::salvage
