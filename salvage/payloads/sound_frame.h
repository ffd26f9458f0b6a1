/// What the front of a compressed sound frame says of it. Sizes are in bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "salvage/payloads/codec.h"

namespace zelvo::salvage {

struct SoundFrame {
  std::uint32_t size = 0;     ///< with its header
  std::uint32_t samples = 0;  ///< of each channel
  std::uint32_t rate = 0;     ///< samples a second
  std::uint8_t channels = 0;
  std::uint8_t layer = 0;  ///< of MPEG audio, 1 to 3
};

/// The header of MPEG audio that `head` begins with; nothing when it is none, or of a free bit rate.
[[nodiscard]] std::optional<SoundFrame> mpegAudioFrame(std::span<const std::byte> head);

/// Gives the header of MPEG audio that `head` begins with another bit rate or padding, so that its frame is `size`
/// long. False, and nothing changed, where there is no such.
[[nodiscard]] bool fitMpegFrame(std::span<std::byte> head, std::size_t size);

/// The same as `mpegAudioFrame` of AC-3.
[[nodiscard]] std::optional<SoundFrame> ac3Frame(std::span<const std::byte> head);

/// The same of the codec's own kind; nothing of codecs without such headers.
[[nodiscard]] std::optional<SoundFrame> soundFrame(Codec codec, std::span<const std::byte> head);

}  // namespace zelvo::salvage
