/// A track of sound on its way through a film whose gaps are filled.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace zelvo::salvage {

/// Times are in seconds.
struct SoundTrack {
  std::uint8_t stream = 0;
  double clock = 0;
  std::size_t chunks = 0;
  std::vector<double> lags;  ///< in front of the first gap
  double chunkTime = 0;      ///< of a usual chunk
  std::uint32_t chunkSize = 0;
};

/// \pre `values` is not empty.
[[nodiscard]] inline double median(std::vector<double> values) {
  std::ranges::sort(values);
  return values[values.size() / 2];
}

}  // namespace zelvo::salvage
