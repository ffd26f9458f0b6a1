/// A part of a film that no index tells of: its chunks by their chain, and the gaps in it. Offsets and sizes are in
/// bytes.
#pragma once

#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "salvage/payloads/codec.h"
#include "salvage/payloads/payload_shape.h"
#include "salvage/plan/chunk_ends.h"
#include "salvage/plan/evidence.h"
#include "salvage/plan/film_plan.h"
#include "salvage/plan/film_streams.h"

namespace zelvo::salvage {

/// A place where chunks may be missing.
struct ChainGap {
  std::size_t before = 0;   ///< how many of the chunks stand in front of it
  std::uint64_t begin = 0;  ///< in the file: bytes that are no chunk's
  std::uint64_t end = 0;
  std::uint64_t missing = 0;  ///< bytes that are known to be missing from the file
  std::uint32_t longer = 0;   ///< the size of the chunk before it, should its size field be wrong and nothing be
                              ///< missing; 0 when that cannot be
  bool isTorn = false;        ///< the chunk before it lacks its end, so bytes are missing from the file
};

struct ChainFilm {
  /// What is missing in later gaps is not asked.
  static constexpr std::size_t kMaxGaps = 262'144;

  std::vector<Slot> slots;
  std::vector<ChainGap> gaps;  ///< rising
  std::uint64_t leftOut = 0;   ///< chunks beyond the number that was wanted
};

/// Follows the best chain through parts of the file and fills its holes: headers whose code is dead are found backwards
/// from the next good one, wrong sizes are mended where the codec, the stream's usual sizes or the next header tell
/// them.
/// Thread: one.
class ChainFilms {
 public:
  /// `chain`: numbers of candidates, rising. `isForeign`: of each candidate, whether it is another film's, which ends a
  /// chunk of this one but is no chunk of it; may be empty.
  ChainFilms(const Evidence& evidence, const FilmStreams& streams, std::span<const std::uint32_t> chain,
             std::span<const std::uint8_t> isForeign);

  /// The part from `within.begin` to `within.end`, but no more than `most` chunks of it. Reads the bytes of the holes
  /// there, each about twice.
  /// Failure: what cannot be read holds no header.
  [[nodiscard]] ChainFilm part(ByteSpan within, std::size_t most = std::numeric_limits<std::size_t>::max());

 private:
  const Evidence& evidence_;
  const FilmStreams& streams_;
  std::span<const std::uint32_t> chain_;
  std::span<const std::uint8_t> isForeign_;
  ChunkEnds ends_;
  std::vector<Codec> codecs_;
  std::vector<PayloadShape> shapes_;
};

}  // namespace zelvo::salvage
