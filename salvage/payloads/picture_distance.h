/// How far decoded pictures are from one another.
#pragma once

#include <cstdint>
#include <limits>
#include <vector>

#include "platform/trial_decoder.h"

namespace zelvo::salvage {

/// Of pictures that cannot be compared.
inline constexpr std::uint64_t kNoDistance = std::numeric_limits<std::uint64_t>::max();

/// What the samples of two pictures are apart, and half of what that changes by at the borders of blocks, where wrong
/// blocks show. `kNoDistance` for pictures of different sizes, or of none.
/// Thread: any.
[[nodiscard]] std::uint64_t pictureDistance(const std::vector<platform::PicturePlane>& one,
                                            const std::vector<platform::PicturePlane>& other);

/// How far apart two pictures are in each strip of 16 rows of the first plane, in hundredths of a sample; none where
/// they cannot be compared.
/// Thread: any.
[[nodiscard]] std::vector<std::uint32_t> stripDistances(const std::vector<platform::PicturePlane>& one,
                                                        const std::vector<platform::PicturePlane>& other);

}  // namespace zelvo::salvage
