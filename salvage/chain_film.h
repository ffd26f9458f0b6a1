/// A part of a film that no index tells of: its chunks by their chain, and the gaps in it. Offsets and sizes are in bytes.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "salvage/evidence.h"
#include "salvage/film_plan.h"
#include "salvage/film_streams.h"

namespace zelvo::salvage {

/// A place where chunks may be missing.
struct ChainGap {
  std::size_t before = 0;   ///< how many of the chunks stand in front of it
  std::uint64_t begin = 0;  ///< in the file: bytes that are no chunk's
  std::uint64_t end = 0;
  bool isTorn = false;  ///< the chunk before it lacks its end, so bytes are missing from the file
};

struct ChainFilm {
  std::vector<Slot> slots;
  std::vector<ChainGap> gaps;  ///< rising
};

/// Follows the best chain through the bytes from `begin` to `end` of the file and fills its holes: headers whose code is
/// dead are found backwards from the next good one, wrong sizes are mended where the codec, the stream's usual sizes or
/// the next header tell them. `chain`: numbers of candidates, rising.
/// Reads the bytes of the holes, each about twice.
/// Failure: what cannot be read holds no header.
/// Thread: any.
[[nodiscard]] ChainFilm chainFilm(const Evidence& evidence, const FilmStreams& streams,
                                  std::span<const std::uint32_t> chain, ByteSpan within);

}  // namespace zelvo::salvage
