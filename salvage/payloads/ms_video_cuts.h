/// Where foreign bytes were put into a picture of Microsoft Video 1, as far as its instructions tell. Offsets and sizes
/// are in bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "salvage/payloads/picture_headers.h"

namespace zelvo::salvage {

struct MsVideoCuts {
  std::vector<std::uint32_t> cuts;  ///< the likeliest first
  std::uint64_t walked = 0;         ///< bytes that were read for it
};

/// `bytes`: a picture of `size` and, somewhere in it, the bytes that were put in, as many as it is too long. `bits` a
/// pixel: 8 or 16. The cuts are those that leave instructions for every block of the picture and no more, in the order
/// of how usual the bytes around them are in this picture and how smoothly its blocks follow on those below: some of
/// the most usual ones. None when more than `maxWalked` bytes had to be read.
/// \pre `bytes` is longer than `size`.
/// Thread: any.
[[nodiscard]] MsVideoCuts msVideoCuts(std::span<const std::byte> bytes, std::uint32_t size, unsigned bits,
                                      PictureSize picture, std::uint64_t maxWalked);

}  // namespace zelvo::salvage
