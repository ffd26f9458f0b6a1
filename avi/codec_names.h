/// What the codes of a stream format stand for, as people call it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace zelvo::avi {

/// The common name of a WAVEFORMATEX wFormatTag ("MP3"); empty when it is not known here.
[[nodiscard]] std::string_view audioFormatName(std::uint32_t formatTag);

/// The common name of what an audio format chunk ("strf", a WAVEFORMATEX or the front of one) describes: that of its
/// wFormatTag, or of its SubFormat where it is extensible. Empty when it is not known here, or cut short.
[[nodiscard]] std::string_view audioFormatName(std::span<const std::byte> format);

/// The common name of a video codec's four characters ("MPEG-4" for "FMP4"): fccHandler or biCompression, in capitals
/// or not. Empty when it is not known here.
[[nodiscard]] std::string_view videoCodecName(std::span<const std::byte> code);

}  // namespace zelvo::avi
