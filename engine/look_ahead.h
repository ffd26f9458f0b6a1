/// What may lie after a candidate's payload.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zelvo::engine {

/// Bytes that are read after a payload; a code may start at the first three, since an odd payload is padded.
inline constexpr std::size_t kLookAheadSize = 6;

/// Which code starts at one of the first three of them. At most one can: none holds the beginning of another.
enum class LookAheadFind : std::uint8_t { nothing, chunk, padding };

}  // namespace zelvo::engine
