/// Pictures as emulators record them: blocks that moved, zipped (ZMBV).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "salvage/payloads/picture_headers.h"

namespace zelvo::salvage {

struct ZippedKey {
  std::uint16_t bits = 0;  ///< a pixel
};

/// Screens of old computers that are not among usual sizes of films.
inline constexpr std::array kScreenSizes = {
    PictureSize{160, 200}, PictureSize{320, 400}, PictureSize{360, 480}, PictureSize{640, 200}, PictureSize{640, 350},
    PictureSize{720, 348}, PictureSize{720, 350}, PictureSize{256, 224}, PictureSize{160, 144}, PictureSize{160, 100},
    PictureSize{320, 224}, PictureSize{512, 448}, PictureSize{960, 600}, PictureSize{960, 720}, PictureSize{1280, 800},
    PictureSize{320, 350}, PictureSize{320, 480}, PictureSize{384, 272},
};

/// Whether a payload of so many bytes is a picture of this codec, as far as its front tells. Where `front` is all of it
/// its end is looked at, too.
[[nodiscard]] bool mayBeZipped(std::span<const std::byte> front, std::size_t size);

/// Whether these are the first four bytes of a key, the first one lowest: it is zipped, of the one version there is.
[[nodiscard]] bool beginsZippedKey(std::uint32_t head);

/// What the head of a key tells; nothing when it is none.
[[nodiscard]] std::optional<ZippedKey> zippedKey(std::span<const std::byte> payload);

}  // namespace zelvo::salvage
