/// Whether a picture can be decoded without the pictures before it, by the bits that its codec has for that.
#pragma once

#include <cstddef>
#include <optional>
#include <span>

#include "salvage/payloads/codec.h"

namespace zelvo::salvage {

/// So much of a payload is enough to tell, for nearly all writers.
inline constexpr std::size_t kKeyHead = 4096;

/// `head`: the front of a payload, or all of it. Nothing when its codec does not tell; an empty payload is no key, and
/// neither is one that holds no picture of its codec.
/// Thread: any.
[[nodiscard]] std::optional<bool> isKeyPicture(Codec codec, std::span<const std::byte> head);

/// Whether pictures of this codec may be keys for its decoders though no bit says so: H.264 and HEVC have points to
/// begin at that are no key pictures in their own sense.
[[nodiscard]] constexpr bool hasOtherKeys(Codec codec) { return codec == Codec::h264 || codec == Codec::hevc; }

}  // namespace zelvo::salvage
