#include "salvage/payloads/picture_clock.h"

#include "salvage/payloads/mpeg4_headers.h"

namespace zelvo::salvage {

namespace {

/// Of BITMAPINFOHEADER.
constexpr std::size_t kFormatHead = 40;

}  // namespace

PictureClock::PictureClock(const SurvivingStream& header)
    : codec_(codecOf(header)),
      picturesPerSecond_(header.scale == 0 ? 0 : static_cast<double>(header.rate) / header.scale) {
  if (header.format.size() > kFormatHead) learn(std::span<const std::byte>(header.format).subspan(kFormatHead));
}

void PictureClock::learn(std::span<const std::byte> head) {
  if (codec_ != Codec::mpeg4 || turn_ != 0 || picturesPerSecond_ <= 0) return;
  const auto layer = mpeg4Layer(head);
  if (!layer || layer->resolution == 0) return;
  turn_ = layer->resolution;
  ticksPerPicture_ = turn_ / picturesPerSecond_;
}

std::optional<std::uint32_t> PictureClock::ticks(std::span<const std::byte> head) const {
  if (!isKnown()) return std::nullopt;
  const auto picture = mpeg4Picture(head, turn_);
  if (!picture || picture->ticks >= turn_) return std::nullopt;
  return picture->ticks;
}

}  // namespace zelvo::salvage
