/// Which chunks fill a gap to the byte, where all chunks of a stream have one size. Sizes are in bytes, of payloads.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

namespace zelvo::salvage {

struct WholeChunks {
  std::size_t pictures = 0;
  std::size_t sounds = 0;

  friend bool operator==(const WholeChunks&, const WholeChunks&) = default;
};

/// `picture`: the one size of pictures; nothing where sizes vary, then only chunks of sound can be told. `sound`: that
/// of sound. Of several answers the one whose pictures come nearest to `estimate`; nothing when none fills the gap.
/// Thread: any.
[[nodiscard]] std::optional<WholeChunks> wholeChunks(std::uint64_t bytes, std::optional<std::uint32_t> picture,
                                                     std::uint32_t sound, std::size_t estimate);

}  // namespace zelvo::salvage
