#include "salvage/payloads/raw_picture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace zelvo::salvage {

namespace {

using Pictures = std::vector<std::span<const std::byte>>;

constexpr std::uint32_t kSmallestSide = 16;
constexpr std::uint32_t kLargestRawSide = 8192;
/// So many bytes of each picture are compared at the most.
constexpr std::size_t kCompared = 32768;
/// Luma and chroma of packed YUV differ by so much more than bytes of RGB.
constexpr double kPackedRatio = 1.35;
constexpr double kLumaRatio = 1.1;

/// The mean difference between bytes that lie `step` apart, of those whose place is `phase` of `every`.
double difference(const Pictures& pictures, std::size_t step, std::size_t every = 1, std::size_t phase = 0) {
  std::uint64_t sum = 0;
  std::uint64_t count = 0;
  for (const auto picture : pictures) {
    if (picture.size() <= step) continue;
    const std::size_t last = picture.size() - step;
    // From the middle on: the edges of a picture are often black.
    const std::size_t begin = last > kCompared ? (last - kCompared) / 2 / every * every : 0;
    for (std::size_t i = begin + phase; i < std::min(last, begin + kCompared); i += every) {
      sum += static_cast<std::uint64_t>(std::abs(static_cast<int>(picture[i]) - static_cast<int>(picture[i + step])));
      ++count;
    }
  }
  return count == 0 ? 255 : static_cast<double>(sum) / static_cast<double>(count);
}

/// Whether two bytes a pixel are luma and chroma in turns, and which comes first.
PixelLayout layoutOf(const Pictures& pictures) {
  const auto ratio = [&](std::size_t phase) {
    return difference(pictures, 2, 2, phase) / std::max(0.01, difference(pictures, 4, 2, phase));
  };
  // The chroma phase holds two kinds in turns, so bytes two apart are less alike there than bytes four apart.
  // Luma is the other way about, which four bytes of RGB are not.
  const double even = ratio(0);
  const double odd = ratio(1);
  if (std::max(even, odd) < kPackedRatio || std::min(even, odd) > kLumaRatio) return PixelLayout::rgb;
  return even > odd ? PixelLayout::uyvy : PixelLayout::yuy2;
}

struct Scored {
  RawShape shape;
  double score = 0;
};

/// How odd a picture's sides are: films are between square and twice as wide as high.
double oddity(PictureSize size) {
  const double ratio = static_cast<double>(size.width) / size.height;
  const double penalty = ratio < 1 ? 1 / ratio : std::max(1.0, ratio / 2);
  return 0.2 * (penalty - 1) + (size.width % 8 != 0 ? 0.1 : 0) + (size.height % 8 != 0 ? 0.05 : 0);
}

}  // namespace

std::vector<RawShape> rawShapes(std::uint32_t size, const Pictures& pictures, std::optional<PictureSize> known) {
  const PixelLayout packed = layoutOf(pictures);
  std::vector<Scored> found;
  constexpr std::uint16_t kPackedBits = 16;
  for (const std::uint16_t bits : {std::uint16_t{24}, std::uint16_t{32}, std::uint16_t{16}, std::uint16_t{8}}) {
    if (packed != PixelLayout::rgb && bits != kPackedBits) continue;
    const double across = difference(pictures, packed != PixelLayout::rgb ? 4 : bits / 8);
    for (std::uint32_t width = kSmallestSide; width <= kLargestRawSide; ++width) {
      const std::uint32_t row = (width * bits + 31) / 32 * 4;
      if (size % row != 0) continue;
      const PictureSize sides{width, size / row};
      if (sides.height < kSmallestSide || sides.height > kLargestRawSide) continue;
      if (known && (sides.width != known->width || sides.height != known->height)) continue;
      if (sides.width > 4 * sides.height || sides.height > 3 * sides.width) continue;
      const double down = difference(pictures, row);
      found.push_back({{sides, bits, packed}, (across + down + 0.5) * (1 + oddity(sides))});
    }
  }
  std::ranges::stable_sort(found, {}, &Scored::score);
  std::vector<RawShape> shapes;
  for (std::size_t i = 0; i < std::min<std::size_t>(found.size(), 3); ++i) shapes.push_back(found[i].shape);
  return shapes;
}

}  // namespace zelvo::salvage
