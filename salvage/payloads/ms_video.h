/// Pictures of Microsoft Video 1: instructions for blocks of 4 x 4 pixels, row after row from the bottom up.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "salvage/payloads/picture_headers.h"

namespace zelvo::salvage {

/// What one instruction is for.
struct MsVideoInstruction {
  static constexpr std::size_t kMostBytes = 18;

  std::uint32_t blocks = 0;
  std::uint8_t size = 0;  ///< in bytes, with the colours that belong to it
  bool isEnd = false;     ///< of the picture
};

/// The instruction that `bytes` begin with; nothing where they end within it. `bits` a pixel: 8 or 16.
/// Thread: any.
[[nodiscard]] std::optional<MsVideoInstruction> msVideoInstruction(std::span<const std::byte> bytes, unsigned bits);

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

/// How many blocks a picture of a size has.
/// Thread: any.
[[nodiscard]] std::uint64_t msVideoBlocks(PictureSize picture);

/// How much unlike the ones below them pixels are at the borders of blocks: the more of them are and, of 16 bits, the
/// further apart, the larger. What is skipped is not compared.
/// Thread: any.
[[nodiscard]] std::uint64_t msVideoRoughness(std::span<const std::byte> payload, unsigned bits, PictureSize picture);

}  // namespace zelvo::salvage
