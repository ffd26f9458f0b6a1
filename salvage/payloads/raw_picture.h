/// What shape pictures without compression have, by their length and their pixels: neighbours are alike.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "salvage/payloads/picture_headers.h"

namespace zelvo::salvage {

enum class PixelLayout : std::uint8_t {
  rgb,
  yuy2,
  uyvy,
  planar,  ///< luma, then both chromas with half the width and height (I420, YV12)
};

struct RawShape {
  PictureSize size;
  std::uint16_t bits = 0;  ///< of a pixel: 8, 16, 24 or 32; 12 when planar
  PixelLayout layout = PixelLayout::rgb;

  friend bool operator==(const RawShape&, const RawShape&) = default;
};

/// The likeliest shapes of pictures of `size` bytes, the best first, at most three; none when nothing fits. `pictures`:
/// fronts of some, whole ones where planar pictures are to be told. `known`: the picture's size where a main header
/// says it.
/// Thread: any.
[[nodiscard]] std::vector<RawShape> rawShapes(std::uint32_t size,
                                              const std::vector<std::span<const std::byte>>& pictures,
                                              std::optional<PictureSize> known);

}  // namespace zelvo::salvage
