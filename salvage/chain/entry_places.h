/// Where each chunk that the index names lies in the damaged file. Offsets are in bytes.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "avi/input_file.h"
#include "salvage/chain/displacements.h"
#include "salvage/scan/candidate.h"
#include "salvage/scan/index_template.h"
#include "salvage/scan/stream_facts.h"

namespace zelvo::salvage {

/// What stands where an entry's header should be.
enum class Support : std::uint8_t {
  none,   ///< nothing of it
  code,   ///< a code of its stream with another size
  size,   ///< its size after another code
  exact,  ///< both
};

struct EntryPlace {
  std::uint16_t displacement = 0;  ///< number of the displacement
  Support support = Support::none;
};

struct EntryPlaces {
  std::vector<std::int64_t> displacements;
  std::vector<EntryPlace> places;  ///< of each entry; empty when no entry is anywhere

  /// Where the header of entry `number` lies, or would; it may be in front of the file.
  [[nodiscard]] std::int64_t headerOf(std::size_t number, std::span<const TemplateEntry> entries) const {
    return static_cast<std::int64_t>(entries[number].offset) + displacements[places[number].displacement];
  }
};

/// Gives each entry a displacement: where neighbours agree the one that explains them; elsewhere the sequence that the
/// headers, sizes and first bytes at each place bear out best, where every change costs. Time is linear in the entries.
/// Failure: a header that cannot be read bears nothing out.
/// Thread: any.
[[nodiscard]] EntryPlaces placeEntries(avi::InputFile& input, std::span<const TemplateEntry> entries,
                                       const CandidateList& candidates, const std::vector<StreamFacts>& facts,
                                       const DisplacementCover& cover);

}  // namespace zelvo::salvage
