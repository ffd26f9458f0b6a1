#include "salvage/headers/picture_texture.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace zelvo::salvage {

namespace {

std::int64_t apart(std::byte one, std::byte other) { return std::abs(static_cast<int>(one) - static_cast<int>(other)); }

Texture planeTexture(const platform::PicturePlane& plane) {
  const std::size_t width = plane.width;
  const std::size_t height = plane.height;
  if (width < 2 || height < 2) return {};
  std::int64_t across = 0;
  std::int64_t down = 0;
  std::int64_t far = 0;
  const auto& samples = plane.samples;
  for (std::size_t y = 0; y + 1 < height; ++y) {
    const std::size_t farRow = (y + height / 2) % height * width;
    for (std::size_t x = 0; x + 1 < width; ++x) {
      const std::size_t at = y * width + x;
      across += apart(samples[at], samples[at + 1]);
      down += apart(samples[at], samples[at + width]);
      far += apart(samples[at], samples[farRow + (x + width / 2) % width]);
    }
  }
  const auto count = static_cast<double>((width - 1) * (height - 1));
  return {static_cast<double>(across + down) / (2 * static_cast<double>(far) + count),
          static_cast<double>(far) / count};
}

}  // namespace

Texture textureOf(const Planes& planes) {
  Texture whole = planeTexture(planes.front());
  for (std::size_t i = 1; i < planes.size(); ++i) whole.roughness += planeTexture(planes[i]).roughness;
  whole.roughness /= static_cast<double>(planes.size());
  return whole;
}

/// Pictures with much noise have a quarter; those that a wrong width shears a half.
bool isRough(const Texture& texture) { return texture.roughness > 0.35; }

bool isPlain(const Texture& texture) {
  constexpr double kOfNoise = 16;
  return isRough(texture) && texture.contrast < kOfNoise;
}

bool isMostlyFlat(const platform::PicturePlane& plane) {
  std::size_t alike = 0;
  for (std::size_t y = 1; y < plane.height; ++y) {
    const auto row = plane.samples.begin() + static_cast<std::ptrdiff_t>(y * plane.width);
    alike += std::equal(row, row + static_cast<std::ptrdiff_t>(plane.width), row - plane.width) ? 1U : 0U;
  }
  return alike * 2 > plane.height;
}

}  // namespace zelvo::salvage
