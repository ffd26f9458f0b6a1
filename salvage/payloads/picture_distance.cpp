#include "salvage/payloads/picture_distance.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <utility>

namespace zelvo::salvage {

namespace {

int difference(std::byte one, std::byte other) { return static_cast<int>(one) - static_cast<int>(other); }

bool areAlike(const platform::PicturePlane& one, const platform::PicturePlane& other) {
  return one.width == other.width && one.height == other.height;
}

}  // namespace

std::uint64_t pictureDistance(const std::vector<platform::PicturePlane>& one,
                              const std::vector<platform::PicturePlane>& other) {
  constexpr std::size_t kBlock = 8;
  if (one.empty() || one.size() != other.size()) return kNoDistance;
  std::uint64_t apart = 0;
  std::uint64_t edges = 0;
  std::vector<int> above;
  std::vector<int> row;
  for (std::size_t plane = 0; plane < one.size(); ++plane) {
    if (!areAlike(one[plane], other[plane])) return kNoDistance;
    const std::size_t width = one[plane].width;
    row.resize(width);
    for (std::size_t y = 0; y < one[plane].height; ++y) {
      std::swap(above, row);
      row.resize(width);
      for (std::size_t x = 0; x < width; ++x) {
        row[x] = difference(one[plane].samples[y * width + x], other[plane].samples[y * width + x]);
        apart += static_cast<std::uint64_t>(std::abs(row[x]));
      }
      for (std::size_t x = kBlock; x < width; x += kBlock)
        edges += static_cast<std::uint64_t>(std::abs(row[x] - row[x - 1]));
      if (y == 0 || y % kBlock != 0) continue;
      for (std::size_t x = 0; x < width; ++x) edges += static_cast<std::uint64_t>(std::abs(row[x] - above[x]));
    }
  }
  return apart + edges / 2;
}

std::vector<std::uint32_t> stripDistances(const std::vector<platform::PicturePlane>& one,
                                          const std::vector<platform::PicturePlane>& other) {
  constexpr std::size_t kRows = 16;
  std::vector<std::uint32_t> strips;
  if (one.empty() || other.empty() || !areAlike(one.front(), other.front()) || one.front().width == 0) return strips;
  const std::size_t width = one.front().width;
  const std::size_t height = one.front().height;
  for (std::size_t top = 0; top < height; top += kRows) {
    const std::size_t end = std::min(height, top + kRows) * width;
    std::uint64_t apart = 0;
    for (std::size_t i = top * width; i < end; ++i)
      apart += static_cast<std::uint64_t>(std::abs(difference(one.front().samples[i], other.front().samples[i])));
    strips.push_back(static_cast<std::uint32_t>(apart * 100 / (end - top * width)));
  }
  return strips;
}

}  // namespace zelvo::salvage
