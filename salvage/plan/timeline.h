/// Keeps a film in step over gaps: how many chunks of each stream are missing in one is told by the clocks of pictures
/// and sound, by the bytes of the gap and by the clock that the codec itself carries.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "salvage/plan/evidence.h"
#include "salvage/plan/film_plan.h"
#include "salvage/plan/film_streams.h"

namespace zelvo::salvage {

/// What a film's own header tells of it as a whole.
struct WholeFilm {
  /// Pictures that it had, lost ones too; nothing when that is unknown or its end is not there.
  std::optional<std::uint64_t> pictures;
  std::optional<std::uint64_t> missing;  ///< bytes of its media that the file lacks; nothing when that is unknown
};

/// A place where chunks of the film may be missing.
struct FilmGap {
  std::size_t before = 0;     ///< how many slots of the plan stand in front of it
  std::uint64_t bytes = 0;    ///< of the file that are no chunk's
  std::uint32_t longer = 0;   ///< the size of the slot before it, should nothing be missing; 0 when that cannot be
  std::uint64_t missing = 0;  ///< bytes that are known to be missing from the file
  bool isTorn = false;        ///< bytes are missing from the file
  std::uint64_t tail = 0;     ///< of `bytes`, the last ones that were not overwritten: no chunk begins in them
};

/// Fills the gaps with slots that are `SlotState::refilled`: empty chunks for pictures, silence for sound, in turn. A
/// gap at the film's very end, or before its first sound, is left as it is. Where nothing is missing, the slot before a
/// gap may take its bytes. `gaps`: rising. Reads the first bytes of some pictures around each gap. Time is linear in
/// slots and gaps.
/// Thread: any.
void fillGaps(const Evidence& evidence, const FilmStreams& streams, std::span<const FilmGap> gaps,
              const WholeFilm& whole, FilmPlan& plan);

}  // namespace zelvo::salvage
