/// Payloads whose headers do not tell what they are. Offsets and sizes are in bytes.
#pragma once

#include <cstdint>
#include <vector>

#include "salvage/payloads/payload_shape.h"
#include "salvage/plan/evidence.h"
#include "salvage/plan/film_plan.h"
#include "salvage/plan/film_streams.h"

namespace zelvo::salvage {

/// Thread: one.
class HeadlessPayloads {
 public:
  /// Borrows all. `shapes`: of each stream.
  HeadlessPayloads(const Evidence& evidence, const FilmStreams& streams, const std::vector<PayloadShape>& shapes)
      : evidence_(evidence), streams_(streams), shapes_(shapes) {}

  /// Whether a stream has payloads that fill `room`, a pad byte left out, and by which they are known. Reads nothing.
  [[nodiscard]] bool mayFill(std::uint8_t stream, std::uint64_t room) const;

  /// Whether the payload at `payload` is surely one of a stream: by the one size that the stream's chunks have and
  /// content like that of the last one of `before`, or by bits that all of them begin with.
  /// Failure: what cannot be read is none.
  [[nodiscard]] bool isSurely(std::uint8_t stream, std::uint64_t payload, std::uint32_t size,
                              const std::vector<Slot>& before) const;

 private:
  [[nodiscard]] bool isLike(const Slot* last, std::uint8_t stream, std::uint64_t payload, std::uint32_t size) const;

  const Evidence& evidence_;
  const FilmStreams& streams_;
  const std::vector<PayloadShape>& shapes_;
};

}  // namespace zelvo::salvage
