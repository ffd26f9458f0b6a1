/// Which entries of the indexes are the film's own, and where each one's chunk lies in the damaged file.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "salvage/chain/entry_places.h"
#include "salvage/plan/evidence.h"

namespace zelvo::salvage {

struct ChosenEntries {
  std::vector<TemplateEntry> entries;  ///< rising
  EntryPlaces places;
  /// Of each candidate, 1 for a chunk of another film that an index names; empty when no index is another film's.
  std::vector<std::uint8_t> isForeign;
};

/// Lays the entries over the file. Those of an index that contradicts the headers, or that explains nothing of the
/// film's front, are left out when there are chunks besides those that they name. So are entries at the end and of a
/// wild size that nothing speaks for.
/// `entries`: of streams of the film, rising. `chain`: numbers of the candidates of the best chain.
/// Failure: what cannot be read bears nothing out.
/// Thread: any.
[[nodiscard]] ChosenEntries chooseEntries(const Evidence& evidence, std::vector<TemplateEntry> entries,
                                          std::span<const std::uint32_t> chain);

}  // namespace zelvo::salvage
