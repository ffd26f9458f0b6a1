#include "salvage/payloads/mpeg4_headers.h"

#include <algorithm>
#include <bit>

#include "salvage/payloads/bit_reader.h"
#include "salvage/payloads/start_codes.h"

namespace zelvo::salvage {

namespace {

constexpr unsigned kFirstLayer = 0x20;
constexpr unsigned kLastLayer = 0x2f;
constexpr unsigned kPicture = 0xb6;
constexpr std::uint32_t kRectangular = 0;
constexpr std::uint32_t kGreyShape = 3;

/// Bits that a number of ticks takes: as many as hold the largest one.
unsigned bitsOfTicks(std::uint32_t resolution) {
  return std::max(1U, static_cast<unsigned>(std::bit_width(resolution - 1)));
}

std::optional<Mpeg4Layer> layerIn(std::span<const std::byte> bytes) {
  BitReader bits(bytes);
  std::uint32_t version = 1;
  bits.skip(1 + 8);         // random_accessible_vol, video_object_type_indication
  if (bits.read(1) == 1) {  // is_object_layer_identifier
    version = bits.read(4);
    bits.skip(3);
  }
  if (bits.read(4) == 15) bits.skip(16);            // aspect_ratio_info: extended
  if (bits.read(1) == 1) {                          // vol_control_parameters
    bits.skip(3);                                   // chroma_format, low_delay
    if (bits.read(1) == 1) bits.skip(4 * 16 + 15);  // vbv_parameters
  }
  const std::uint32_t shape = bits.read(2);
  if (shape == kGreyShape && version != 1) bits.skip(4);
  Mpeg4Layer layer;
  if (bits.read(1) != 1) return std::nullopt;
  layer.resolution = bits.read(16);
  if (bits.read(1) != 1 || layer.resolution == 0) return std::nullopt;
  if (bits.read(1) == 1) layer.increment = bits.read(bitsOfTicks(layer.resolution));
  if (shape == kRectangular) {
    if (bits.read(1) != 1) return std::nullopt;
    layer.width = bits.read(13);
    if (bits.read(1) != 1) return std::nullopt;
    layer.height = bits.read(13);
  }
  if (bits.isPastEnd()) return std::nullopt;
  return layer;
}

}  // namespace

std::optional<Mpeg4Layer> mpeg4Layer(std::span<const std::byte> bytes) {
  for (StartCodes codes(bytes); const auto code = codes.next();) {
    if (code->type == kPicture) break;
    if (code->type >= kFirstLayer && code->type <= kLastLayer) return layerIn(code->rest);
  }
  return std::nullopt;
}

std::optional<Mpeg4Picture> mpeg4Picture(std::span<const std::byte> head, std::uint32_t resolution) {
  /// More seconds between two pictures are no clock.
  constexpr std::uint32_t kMaxSeconds = 60;
  for (StartCodes codes(head); const auto code = codes.next();) {
    if (code->type != kPicture) continue;
    BitReader bits(code->rest);
    Mpeg4Picture picture;
    picture.type = static_cast<Mpeg4PictureType>(bits.read(2));
    while (bits.read(1) == 1) {
      if (++picture.seconds > kMaxSeconds) return std::nullopt;
    }
    if (bits.read(1) != 1) return std::nullopt;
    picture.ticks = bits.read(bitsOfTicks(resolution));
    if (bits.read(1) != 1) return std::nullopt;
    picture.isCoded = bits.read(1) == 1;
    if (bits.isPastEnd() || picture.ticks >= resolution) return std::nullopt;
    return picture;
  }
  return std::nullopt;
}

}  // namespace zelvo::salvage
