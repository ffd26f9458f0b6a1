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

/// More than bytes can differ.
constexpr double kUnknown = 255;

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
  return count == 0 ? kUnknown : static_cast<double>(sum) / static_cast<double>(count);
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

/// The mean difference between the bytes of the last third that lie `step` apart.
double differenceBehindLuma(const Pictures& pictures, std::uint32_t size, std::size_t step) {
  Pictures ends;
  for (const auto picture : pictures) {
    if (picture.size() == size) ends.push_back(picture.subspan(size - size / 3));
  }
  return difference(ends, step);
}

/// What the planes of a picture have for sides that would have such ones with eight bits a pixel; nothing when these
/// are no planes. Rows of chroma have half the width: as pixels of one row, their halves would be unlike.
std::optional<PictureSize> planarSize(const Pictures& pictures, std::uint32_t size, PictureSize sides) {
  constexpr double kAsAlike = 1.1;
  const PictureSize planes{sides.width, sides.height / 3 * 2};
  // Usual pictures of eight bits would be too wide, so that dark ones are not taken for planes.
  const bool isUsual = planes.width * 10 >= planes.height * 11 && planes.width * 10 <= planes.height * 19;
  if (sides.width % 4 != 0 || sides.height % 3 != 0 || !isUsual) return std::nullopt;
  const double half = differenceBehindLuma(pictures, size, sides.width / 2);
  const double whole = differenceBehindLuma(pictures, size, sides.width);
  return half <= kAsAlike * whole && half < kUnknown ? std::optional(planes) : std::nullopt;
}

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
  constexpr std::uint16_t kPlanarBits = 12;
  for (const std::uint16_t bits : {std::uint16_t{24}, std::uint16_t{32}, std::uint16_t{16}, std::uint16_t{8}}) {
    if (packed != PixelLayout::rgb && bits != kPackedBits) continue;
    const double across = difference(pictures, packed != PixelLayout::rgb ? 4 : bits / 8);
    const auto add = [&](const RawShape& shape, double down) {
      const PictureSize of = shape.size;
      if (known && (of.width != known->width || of.height != known->height)) return;
      if (of.width > 4 * of.height || of.height > 3 * of.width) return;
      found.push_back({shape, (across + down + 0.5) * (1 + oddity(of))});
    };
    for (std::uint32_t width = kSmallestSide; width <= kLargestRawSide; ++width) {
      const std::uint32_t row = (width * bits + 31) / 32 * 4;
      if (size % row != 0) continue;
      const PictureSize sides{width, size / row};
      if (sides.height < kSmallestSide || sides.height > kLargestRawSide) continue;
      const double down = difference(pictures, row);
      const auto planar = bits == 8 ? planarSize(pictures, size, sides) : std::nullopt;
      add(planar ? RawShape{*planar, kPlanarBits, PixelLayout::planar} : RawShape{sides, bits, packed}, down);
    }
  }
  std::ranges::stable_sort(found, {}, &Scored::score);
  std::vector<RawShape> shapes;
  for (std::size_t i = 0; i < std::min<std::size_t>(found.size(), 3); ++i) shapes.push_back(found[i].shape);
  return shapes;
}

}  // namespace zelvo::salvage
