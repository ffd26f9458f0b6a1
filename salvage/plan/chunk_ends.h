/// Looks for chunk headers by where their chunks end, and learns which sizes a stream's chunks have. Offsets and sizes
/// are in bytes.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "salvage/plan/evidence.h"
#include "salvage/plan/film_streams.h"

namespace zelvo::salvage {

/// A header whose code is lost: its size leads to where the next chunk begins.
struct DeadHeader {
  std::uint64_t offset = 0;
  std::uint32_t size = 0;
  std::uint8_t stream = 0;  ///< index in the film's header

  [[nodiscard]] std::uint64_t payloadEnd() const { return offset + 8 + size; }
};

/// Thread: one.
class ChunkEnds {
 public:
  ChunkEnds(const Evidence& evidence, const FilmStreams& streams);

  /// The last header from `from` on whose chunk ends, with its pad byte, at `end`, and whose payload looks like one of
  /// a stream of the film. Such a header is true but for one chance in a hundred thousand.
  [[nodiscard]] std::optional<DeadHeader> closingOn(std::uint64_t from, std::uint64_t end);
  /// How many of the stream's proved chunks have about this size, within 30 %; of a large film a sample.
  [[nodiscard]] std::size_t usualness(std::uint8_t number, std::uint32_t size) const;

 private:
  [[nodiscard]] std::uint8_t streamOf(std::uint64_t offset, std::uint32_t size);

  const Evidence& evidence_;
  const FilmStreams& streams_;
  std::vector<std::vector<std::uint32_t>> sizes_;  ///< by stream number; rising
};

}  // namespace zelvo::salvage
