/// What a file is by its first bytes, when it is no AVI film.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace zelvo::salvage {

/// The format's common name, such as "MP4 film"; empty when the first bytes are no signature that is known here, or
/// that of an AVI film. `front`: 12 bytes are enough for most; MPEG transport streams want 400.
/// Thread: any.
[[nodiscard]] std::string_view formatBySignature(std::span<const std::byte> front);

}  // namespace zelvo::salvage
