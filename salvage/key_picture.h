/// Whether a picture can be decoded without the pictures before it, by the bits that its codec has for that.
#pragma once

#include <cstddef>
#include <optional>
#include <span>

#include "salvage/codec.h"

namespace zelvo::salvage {

/// So much of a payload is enough to tell, for nearly all writers.
inline constexpr std::size_t kKeyHead = 4096;

/// `head`: the front of a payload, or all of it. Nothing when its codec or these bytes do not tell; an empty payload is
/// no key.
/// Thread: any.
[[nodiscard]] std::optional<bool> isKeyPicture(Codec codec, std::span<const std::byte> head);

}  // namespace zelvo::salvage
