/// Where foreign bytes were put into a JPEG picture, as far as its codes tell. Offsets and sizes are in bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace zelvo::salvage {

struct JpegCuts {
  std::vector<std::uint32_t> cuts;  ///< the likeliest first
  std::uint64_t walked = 0;         ///< bytes that were read for it
};

/// `bytes`: a picture of `size` and, somewhere in it, the bytes that were put in, as many as it is too long. The cuts
/// are those in front of which and after which all codes are sound and come to the picture's number of blocks, in the
/// order of how smoothly the blocks after them follow on the row above. None where the headers tell nothing or are
/// torn themselves, and none when more than `maxWalked` bytes had to be read, or more than 2^20 units had to be kept in
/// mind.
/// \pre `bytes` is longer than `size`.
/// Thread: any.
[[nodiscard]] JpegCuts jpegCuts(std::span<const std::byte> bytes, std::uint32_t size, std::uint64_t maxWalked);

}  // namespace zelvo::salvage
