// Each place costs what the payload that it gives costs as a whole. From one place to the next only a few terms change,
// so that the cheapest is found in one walk.
#include "salvage/payloads/payload_cut.h"

#include <algorithm>
#include <bitset>
#include <cstdlib>
#include <limits>

#include "salvage/payloads/codec.h"

namespace zelvo::salvage {

namespace {

using ByteView = std::span<const std::byte>;

std::int64_t valueAt(ByteView bytes, std::size_t place) { return static_cast<std::int64_t>(bytes[place]); }

std::int64_t apart(ByteView bytes, std::size_t one, std::size_t other) {
  return std::abs(valueAt(bytes, one) - valueAt(bytes, other));
}

/// ByteView of a row; 0 when the format does not tell.
std::size_t rowOf(const SurvivingStream& stream) {
  constexpr std::uint32_t kMaxWidth = 65'536;
  const PictureFormat format = pictureFormat(stream);
  if (format.width == 0 || format.width > kMaxWidth || format.bits == 0 || format.bits > 64) return 0;
  // Of planes, the first and largest one has eight bits a pixel.
  if (format.bits == 12 || format.bits == 9) return format.width;
  return (std::size_t{format.width} * format.bits + 31) / 32 * 4;
}

std::size_t sampleOf(const SurvivingStream& stream) { return soundFormat(stream).bitsPerSample / 8U; }

/// How loud the byte at `place` makes sound as byte number `number` of a payload: only the highest of a sample counts.
std::int64_t loudness(ByteView bytes, std::size_t place, std::size_t number, std::size_t sample) {
  if (number % sample != sample - 1) return 0;
  const std::int64_t value = valueAt(bytes, place);
  if (sample == 1) return std::abs(value - 128);
  return value < 128 ? value : 256 - value;
}

/// The cut with the least cost; the cost of a cut at 0 is left out, and `step` answers what the cost grows by from one
/// cut to the next.
template <class Step>
std::uint32_t cheapest(std::size_t last, const Step& step) {
  std::int64_t cost = 0;
  std::int64_t least = 0;
  std::size_t best = 0;
  for (std::size_t cut = 0; cut < last; ++cut) {
    cost += step(cut);
    if (cost >= least) continue;
    least = cost;
    best = cut + 1;
  }
  return static_cast<std::uint32_t>(best);
}

}  // namespace

std::optional<std::uint32_t> insertionIn(const SurvivingStream& stream, ByteView bytes, std::uint32_t size) {
  const std::size_t added = bytes.size() - size;
  const Codec codec = codecOf(stream);
  if (codec == Codec::rawPicture) {
    const std::size_t row = rowOf(stream);
    if (row == 0 || row >= size) return std::nullopt;
    // Byte number `cut` comes from the front part instead of the back part: its pairs with the rows above and below,
    // and with the pixels beside it.
    const std::size_t pixel = std::max<std::size_t>(1, pictureFormat(stream).bits / 8U);
    return cheapest(size, [&](std::size_t cut) {
      std::int64_t change = 0;
      for (const std::size_t by : {row, pixel}) {
        if (cut >= by) change += apart(bytes, cut - by, cut) - apart(bytes, cut - by, cut + added);
        if (cut + by < size)
          change += apart(bytes, cut, cut + by + added) - apart(bytes, cut + added, cut + by + added);
      }
      return change;
    });
  }
  const std::size_t sample = sampleOf(stream);
  if (codec != Codec::pcm || sample == 0 || sample > 4) return std::nullopt;
  return cheapest(size, [&](std::size_t cut) {
    return loudness(bytes, cut, cut, sample) - loudness(bytes, cut + added, cut, sample);
  });
}

std::optional<std::uint32_t> repetitionIn(ByteView bytes, std::uint32_t size) {
  constexpr std::size_t kShortest = 16;
  constexpr std::size_t kFewestKinds = 8;
  const std::size_t added = bytes.size() - size;
  if (added < kShortest) return std::nullopt;
  std::size_t begin = 0;  // of bytes that are the same so much further on
  for (std::size_t i = 0; i <= size; ++i) {
    if (i < size && bytes[i] == bytes[i + added]) continue;
    if (i - begin >= added) {
      std::bitset<256> kinds;
      for (const std::byte byte : bytes.subspan(begin, added)) kinds.set(static_cast<std::size_t>(byte));
      if (kinds.count() >= kFewestKinds) return static_cast<std::uint32_t>(i);
    }
    begin = i + 1;
  }
  return std::nullopt;
}

std::optional<std::uint32_t> tearIn(const SurvivingStream& stream, ByteView bytes, std::uint32_t size) {
  const std::size_t missing = size - bytes.size();
  const Codec codec = codecOf(stream);
  if (codec == Codec::rawPicture) {
    const std::size_t row = rowOf(stream);
    if (row == 0 || row >= bytes.size() || missing % row == 0) return std::nullopt;
    // The pairs across the cut are not compared.
    return cheapest(bytes.size(), [&](std::size_t cut) {
      std::int64_t change = 0;
      if (cut >= row) change += apart(bytes, cut - row, cut);
      if (cut + row < bytes.size()) change -= apart(bytes, cut, cut + row);
      return change;
    });
  }
  const std::size_t sample = sampleOf(stream);
  if (codec != Codec::pcm || sample < 2 || sample > 4 || missing % sample == 0) return std::nullopt;
  return cheapest(bytes.size(), [&](std::size_t cut) {
    return loudness(bytes, cut, cut, sample) - loudness(bytes, cut, cut + missing, sample);
  });
}

}  // namespace zelvo::salvage
