/// The chunks that an index names, taken from where they lie in the damaged file. Offsets and sizes are in bytes.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "salvage/chain/entry_places.h"
#include "salvage/plan/evidence.h"
#include "salvage/plan/film_plan.h"
#include "salvage/plan/film_streams.h"

namespace zelvo::salvage {

/// A compressed picture into which foreign bytes were put, nobody knows where.
struct OpenCut {
  std::uint32_t slot = 0;     ///< that takes the front of the payload, as long as it should be, for now
  std::uint64_t payload = 0;  ///< where it begins in the file
  std::uint64_t added = 0;    ///< how many bytes too many lie there
};

struct LaidFilm {
  std::vector<Slot> slots;  ///< one for each entry
  std::vector<Piece> pieces;
  std::vector<OpenCut> openCuts;  ///< rising by slot
  bool isGathered = false;        ///< clusters changed places, and each payload was taken from where its own lie
};

/// Makes a slot of each entry. A chunk whose neighbours moved as it did is taken as it stands, even if its own header
/// is damaged. Where bytes are missing a chunk is torn; where bytes were inserted their place is looked for, or left
/// open; a chunk of which nothing is there keeps its time.
/// \pre every entry's stream is in the film's header; `places` is that of `entries`.
/// Thread: any.
[[nodiscard]] LaidFilm layEntries(const Evidence& evidence, const FilmStreams& streams,
                                  std::span<const TemplateEntry> entries, const EntryPlaces& places);

}  // namespace zelvo::salvage
