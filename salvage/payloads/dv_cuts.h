/// Where foreign bytes were put into a DV picture, as far as its blocks tell. Offsets and sizes are in bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace zelvo::salvage {

/// `bytes`: a picture of `size` and, somewhere in it, the bytes that were put in, as many as it is too long. Each of
/// its blocks says what it is and where it belongs. The cuts are those that leave as many blocks as can be where they
/// belong, the last one first. None where blocks are missing from their places otherwise, too. Time is linear.
/// \pre `bytes` is longer than `size`.
/// Thread: any.
[[nodiscard]] std::vector<std::uint32_t> dvCuts(std::span<const std::byte> bytes, std::uint32_t size);

}  // namespace zelvo::salvage
