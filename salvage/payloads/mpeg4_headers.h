/// What MPEG-4 (part 2) says of its pictures: their size, and when each is to be seen.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace zelvo::salvage {

/// video_object_layer: once in a stream's format, or before its key pictures.
struct Mpeg4Layer {
  std::uint32_t resolution = 0;  ///< vop_time_increment_resolution: ticks a second
  std::uint32_t increment = 0;   ///< fixed_vop_time_increment: ticks a picture; 0 when pictures may last differently
  std::uint32_t width = 0;       ///< in pixels; 0 when the layer is not rectangular
  std::uint32_t height = 0;
};

enum class Mpeg4PictureType : std::uint8_t { intra, predicted, bidirectional, sprite };

struct Mpeg4Picture {
  Mpeg4PictureType type = Mpeg4PictureType::intra;
  std::uint32_t seconds = 0;  ///< modulo_time_base: whole seconds begun since the picture before, in display order
  std::uint32_t ticks = 0;    ///< vop_time_increment: since the last whole second
  bool isCoded = false;       ///< vop_coded; otherwise it repeats the picture before
};

/// The layer's header within `bytes`, a stream's extra data or the front of a payload; nothing when there is none.
[[nodiscard]] std::optional<Mpeg4Layer> mpeg4Layer(std::span<const std::byte> bytes);

/// The first picture in a payload that begins with `head`; `resolution` is its layer's, above zero.
[[nodiscard]] std::optional<Mpeg4Picture> mpeg4Picture(std::span<const std::byte> head, std::uint32_t resolution);

}  // namespace zelvo::salvage
