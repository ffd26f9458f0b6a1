/// Pictures packed as Ut Video does it.
#pragma once

#include <algorithm>
#include <cstdint>
#include <random>
#include <vector>

#include "platform/bytes.h"
#include "tests/support/avi_builder.h"
#include "tests/support/byte_text.h"

namespace zelvo::tests {

/// A slice of so many samples: a value of k is k zeros and a one; 15 are fifteen zeros.
inline platform::Bytes utSlice(std::uint64_t samples, std::mt19937& random) {
  std::vector<bool> bits;
  for (std::uint64_t i = 0; i < samples; ++i) {
    unsigned value = 0;
    while (value < 15 && random() % 2 == 0) ++value;
    bits.insert(bits.end(), value, false);
    if (value < 15) bits.push_back(true);
  }
  bits.resize((bits.size() + 31) / 32 * 32);
  platform::Bytes slice;
  for (std::size_t at = 0; at < bits.size(); at += 32) {
    std::uint32_t word = 0;
    for (std::size_t i = 0; i < 32; ++i) word = word << 1U | (bits[at + i] ? 1U : 0U);
    appendNumber(slice, word);
  }
  return slice;
}

/// A plane of so many samples; of one value when it `isOfOne`.
inline platform::Bytes utPlane(std::uint64_t samples, unsigned slices, std::mt19937& random, bool isOfOne = false) {
  platform::Bytes plane(256, std::byte{0xff});
  for (unsigned value = 0; value < 16; ++value) plane[value] = static_cast<std::byte>(std::min(15U, value + 1));
  if (isOfOne) {
    std::fill(plane.begin(), plane.end(), std::byte{0xff});
    plane[7] = std::byte{0};
  }
  platform::Bytes all;
  for (unsigned i = 0; i < slices; ++i) {
    const platform::Bytes slice = isOfOne ? platform::Bytes() : utSlice(samples / slices, random);
    all.insert(all.end(), slice.begin(), slice.end());
    appendNumber(plane, static_cast<std::uint32_t>(all.size()));
  }
  plane.insert(plane.end(), all.begin(), all.end());
  return plane;
}

/// Planes with so many samples each; as many slices in each of them.
inline platform::Bytes utPicture(const std::vector<std::uint64_t>& planes, unsigned slices, unsigned seed) {
  std::mt19937 random(seed);
  platform::Bytes picture;
  for (const std::uint64_t samples : planes) {
    const platform::Bytes plane = utPlane(samples, slices, random);
    picture.insert(picture.end(), plane.begin(), plane.end());
  }
  appendNumber(picture, 0x100);
  return picture;
}

}  // namespace zelvo::tests
