/// Chunks that a search found more than once, since positions beyond 4 GiB start at 0 again.
#pragma once

#include <cstdint>
#include <span>

namespace zelvo::engine {

/// How many of the entries 1 to `count` hold an offset that an earlier one holds.
/// \pre    `offsets` holds more than `count` entries
[[nodiscard]] std::uint64_t repeatedEntries(std::span<const std::uint64_t> offsets, std::uint64_t count);

}  // namespace zelvo::engine
