/// The code of a codec as a person reads it.
#pragma once

#include <cstddef>
#include <span>
#include <string>

namespace zelvo::avi {

/// The bytes up to the first zero byte, or all of them (four), as UTF-8. What is not UTF-8 shows as U+FFFD, one for
/// each byte that no character can be made of. // Decision: scan, Codec text is UTF-8 with replacements
[[nodiscard]] std::string codecText(std::span<const std::byte> code);

}  // namespace zelvo::avi
