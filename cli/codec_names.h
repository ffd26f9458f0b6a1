/// What the codes of a stream format stand for.
#pragma once

#include <cstdint>
#include <string_view>

namespace zelvo::cli {

/// The common name of a WAVEFORMATEX wFormatTag ("MP3"); empty when it is not known here.
[[nodiscard]] std::string_view audioFormatName(std::uint32_t formatTag);

}  // namespace zelvo::cli
