#include "salvage/picture_clock.h"

#include <algorithm>
#include <bit>

#include "salvage/bit_reader.h"
#include "salvage/start_codes.h"

namespace zelvo::salvage {

namespace {

constexpr unsigned kFirstLayer = 0x20;  // video_object_layer_start_code
constexpr unsigned kLastLayer = 0x2f;
constexpr unsigned kPicture = 0xb6;  // vop_start_code
/// Of BITMAPINFOHEADER.
constexpr std::size_t kFormatHead = 40;

/// vop_time_increment_resolution of a video object layer; 0 when it does not tell.
std::uint32_t resolutionOf(std::span<const std::byte> layer) {
  BitReader bits(layer);
  bits.skip(1 + 8);  // random_accessible_vol, video_object_type_indication
  std::uint32_t version = 1;
  if (bits.read(1) != 0) {  // is_object_layer_identifier
    version = bits.read(4);
    bits.skip(3);
  }
  constexpr std::uint32_t kExtended = 15;
  if (bits.read(4) == kExtended) bits.skip(8 + 8);  // aspect_ratio_info, par_width, par_height
  if (bits.read(1) != 0) {                          // vol_control_parameters
    bits.skip(2 + 1);                               // chroma_format, low_delay
    if (bits.read(1) != 0) bits.skip(79);           // vbv_parameters
  }
  constexpr std::uint32_t kGrayscale = 3;
  if (bits.read(2) == kGrayscale && version != 1) bits.skip(4);
  bits.skip(1);
  const std::uint32_t resolution = bits.read(16);
  return bits.isPastEnd() ? 0 : resolution;
}

}  // namespace

PictureClock::PictureClock(const SurvivingStream& header)
    : codec_(codecOf(header)),
      picturesPerSecond_(header.scale == 0 ? 0 : static_cast<double>(header.rate) / header.scale) {
  if (header.format.size() > kFormatHead) learn(std::span<const std::byte>(header.format).subspan(kFormatHead));
}

void PictureClock::learn(std::span<const std::byte> head) {
  if (codec_ != Codec::mpeg4 || turn_ != 0 || picturesPerSecond_ <= 0) return;
  StartCodes codes(head);
  while (const auto code = codes.next()) {
    if (code->type >= kFirstLayer && code->type <= kLastLayer) learnHeader(code->rest);
  }
}

void PictureClock::learnHeader(std::span<const std::byte> header) {
  turn_ = resolutionOf(header);
  if (turn_ == 0) return;
  bits_ = std::max(1U, static_cast<unsigned>(std::bit_width(turn_ - 1)));
  ticksPerPicture_ = turn_ / picturesPerSecond_;
}

std::optional<std::uint32_t> PictureClock::ticks(std::span<const std::byte> head) const {
  constexpr int kMaxSeconds = 64;
  if (!isKnown()) return std::nullopt;
  StartCodes codes(head);
  while (const auto code = codes.next()) {
    if (code->type != kPicture) continue;
    BitReader bits(code->rest);
    bits.skip(2);  // vop_coding_type
    int seconds = 0;
    while (bits.read(1) != 0 && seconds < kMaxSeconds) ++seconds;  // modulo_time_base
    bits.skip(1);
    const std::uint32_t clock = bits.read(bits_);
    if (bits.isPastEnd() || clock >= turn_) return std::nullopt;
    return clock;
  }
  return std::nullopt;
}

}  // namespace zelvo::salvage
