/// Pictures of Microsoft Video 1: instructions for blocks of 4 x 4 pixels, row after row from the bottom up.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "salvage/payloads/picture_headers.h"

namespace zelvo::salvage {

/// What the instructions of one payload come to.
struct MsVideoCount {
  std::uint32_t blocks = 0;   ///< those that are skipped too
  std::uint32_t skipped = 0;  ///< that stay as they were in the picture before
};

/// `bits` a pixel: 8 or 16. Nothing unless the last instruction ends with the payload's last byte.
/// Thread: any.
[[nodiscard]] std::optional<MsVideoCount> msVideoCount(std::span<const std::byte> payload, unsigned bits);

/// The size of which a picture with so many blocks most likely is: at its width, blocks go on in the ones above them.
/// `known`: a size that some header says. Nothing where no width does clearly better than others of no relation to it.
/// Thread: any.
[[nodiscard]] std::optional<PictureSize> msVideoSize(std::span<const std::byte> payload, unsigned bits,
                                                     std::optional<PictureSize> known);

}  // namespace zelvo::salvage
