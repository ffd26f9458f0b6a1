/// Payloads that foreign bytes were put into.
#pragma once

#include <cstddef>
#include <random>

#include "platform/bytes.h"

namespace zelvo::tests {

/// The payload with `count` random bytes at `cut`, in bytes.
[[nodiscard]] inline platform::Bytes withForeign(const platform::Bytes& payload, std::size_t cut, std::size_t count,
                                                 unsigned seed = 5) {
  std::mt19937 random(seed);
  platform::Bytes foreign(count);
  for (std::byte& byte : foreign) byte = static_cast<std::byte>(random() % 256);
  platform::Bytes bytes = payload;
  bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(cut), foreign.begin(), foreign.end());
  return bytes;
}

}  // namespace zelvo::tests
