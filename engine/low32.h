/// Where the engine cuts sizes and positions to 32 bits.
#pragma once

#include <cstdint>

namespace zelvo::engine {

/// The low 32 bits of a size or position.
/// Deliberate: files are handled modulo 4 GiB, and this is where a 64-bit number is cut.
[[nodiscard]] constexpr std::uint32_t low32(std::uint64_t value) {
  return static_cast<std::uint32_t>(value & 0xffffffffU);
}

}  // namespace zelvo::engine
