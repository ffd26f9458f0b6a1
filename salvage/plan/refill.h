/// Slots that stand for chunks which only clocks tell of.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "salvage/plan/film_plan.h"

namespace zelvo::salvage {

/// Chunks of one stream that are missing.
struct Refill {
  std::uint8_t stream = 0;  ///< index in the repaired film's list of streams
  std::size_t count = 0;
  std::uint32_t size = 0;  ///< of each one's silence, in bytes; 0 for pictures
};

/// Slots for all of them, at most `most`, evenly in turn.
/// Thread: any.
[[nodiscard]] std::vector<Slot> refillInTurn(const std::vector<Refill>& missing, std::size_t most);

/// Sizes of chunks that are in the film, by stream and from the smallest on: of up to 65,536 of each, and of none that
/// is empty.
/// Thread: any.
[[nodiscard]] std::vector<std::vector<std::uint32_t>> sampledSizes(const std::vector<Slot>& slots, std::size_t streams);

}  // namespace zelvo::salvage
