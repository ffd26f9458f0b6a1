/// How long a payload is by what its codec says, whatever its chunk's size field holds. Sizes are in bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "salvage/payloads/codec.h"

namespace zelvo::salvage {

/// The length of the payload that `bytes` begin with: up to the end of a JPEG picture, of both when two fields follow
/// on one another; the whole frames of MPEG audio or AC-3 in a row. Nothing of a codec that does not tell, or when the
/// payload is damaged or does not end within `bytes`.
/// Thread: any.
[[nodiscard]] std::optional<std::uint32_t> payloadLength(Codec codec, std::span<const std::byte> bytes);

}  // namespace zelvo::salvage
