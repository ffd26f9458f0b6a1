/// Finds where codes may begin, many bytes at a time. Offsets and sizes are in bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace zelvo::salvage {

/// The bytes that must follow the last position, whatever they hold.
inline constexpr std::size_t kSearchMargin = 64;

/// Appends to `found`, rising, each of the first `positions` positions of `bytes` whose bytes begin a code that the
/// scan asks for: two digits that no third follows, or the first two letters of "LIST", "RIFF", "JUNK", "idx1" or
/// "ix00".
/// \pre `bytes` is at least `positions` + `kSearchMargin` long.
void findCodeBeginnings(std::span<const std::byte> bytes, std::size_t positions, std::vector<std::uint32_t>& found);

/// The same, byte by byte: what machines without vectors run, and what the other is tested against.
void findCodeBeginningsPortably(std::span<const std::byte> bytes, std::size_t positions,
                                std::vector<std::uint32_t>& found);

}  // namespace zelvo::salvage
