#include "engine/repeated_entries.h"

#include <algorithm>
#include <vector>

namespace zelvo::engine {

std::uint64_t repeatedEntries(std::span<const std::uint64_t> offsets, std::uint64_t count) {
  const auto entries = offsets.subspan(1, static_cast<std::size_t>(count));
  std::vector<std::uint64_t> sorted(entries.begin(), entries.end());
  std::sort(sorted.begin(), sorted.end());
  return static_cast<std::uint64_t>(sorted.end() - std::unique(sorted.begin(), sorted.end()));
}

}  // namespace zelvo::engine
