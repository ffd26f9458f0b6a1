/// A stretch of bytes of a file. Offsets are in bytes.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

namespace zelvo::salvage {

/// Bytes from `begin` up to, not including, `end`.
struct ByteSpan {
  std::uint64_t begin = 0;
  std::uint64_t end = 0;

  friend bool operator==(const ByteSpan&, const ByteSpan&) = default;
};

/// Whether one of `spans`, rising and apart, has a byte from `begin` up to `end`.
[[nodiscard]] inline bool touches(const std::vector<ByteSpan>& spans, std::uint64_t begin, std::uint64_t end) {
  const auto found = std::ranges::upper_bound(spans, begin, {}, &ByteSpan::end);
  return found != spans.end() && found->begin < end;
}

}  // namespace zelvo::salvage
