/// How many pictures are missing in each gap of a film, when the film's own header tells how many it had.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zelvo::salvage {

struct GapEstimate {
  std::size_t pictures = 0;  ///< that seem to be missing
  std::uint64_t bytes = 0;   ///< of the file that are no chunk's
  bool isExact = false;      ///< the pictures' own clock tells
};

/// Changes the estimates that are not exact so that all add up to `pictures`: what is too much is taken off in
/// proportion; what is too little goes to all in equal parts, at most `mostMore`, which is what the missing bytes hold.
/// Where no bytes are missing it goes by the gaps' bytes, and no more than half of what they seemed to lack. False when
/// nothing had to change or nothing may.
/// Thread: any.
bool shareOut(std::vector<GapEstimate>& gaps, std::uint64_t pictures, std::uint64_t mostMore);

}  // namespace zelvo::salvage
