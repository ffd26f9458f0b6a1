/// A stretch of bytes of a file. Offsets are in bytes.
#pragma once

#include <cstdint>

namespace zelvo::salvage {

/// Bytes from `begin` up to, not including, `end`.
struct ByteSpan {
  std::uint64_t begin = 0;
  std::uint64_t end = 0;

  friend bool operator==(const ByteSpan&, const ByteSpan&) = default;
};

}  // namespace zelvo::salvage
