/// What it would bring to rescue more of a film from its disk, stretch by stretch. Offsets and sizes are in bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "avi/input_file.h"
#include "salvage/headers/film_header.h"
#include "salvage/plan/film_plan.h"
#include "salvage/scan/byte_span.h"

namespace zelvo::salvage {

/// One stretch that was not rescued.
struct RescueGain {
  ByteSpan place;             ///< in the map's positions
  double seconds = 0;         ///< of the film that its rescue would bring back
  bool holdsHeaders = false;  ///< it lies among headers that had to be made again; the film's whole time depends on it

  [[nodiscard]] double perMebibyte() const;
};

struct RescueReport {
  std::uint64_t bytes = 0;        ///< that were not rescued
  std::uint64_t places = 0;       ///< stretches that they lie in
  double seconds = 0;             ///< of the film that they cost
  std::vector<RescueGain> gains;  ///< of all places, those first that bring most for a byte
  std::size_t wanted = 0;         ///< so many of the first bring nearly all that can come back
};

struct RescueWeighing {
  avi::InputFile& input;  ///< heads of pictures are read where no index tells the keys
  const FilmPlan& plan;
  const FilmHeader& header;
  const std::vector<ByteSpan>& lost;  ///< in the film's offsets, rising and apart
  const std::vector<ByteSpan>& map;   ///< the same stretches in the map's positions
  std::uint64_t mediaBegin = 0;       ///< headers stand before it
  bool areHeadersHurt = false;        ///< some of them had to be made again
};

/// Seconds are shared among the stretches that cost them by their bytes. A picture counts with those after it up to the
/// next key picture, since these cannot be decoded without it. Where nothing at all was found of a film, everything is
/// wanted.
/// Thread: any.
[[nodiscard]] RescueReport weighRescue(const RescueWeighing& weighing);

/// The places that are wanted, rising.
[[nodiscard]] std::vector<ByteSpan> wantedPlaces(const RescueReport& report);

}  // namespace zelvo::salvage
