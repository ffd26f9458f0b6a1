#include "salvage/payloads/picture_clock.h"

#include <cmath>

#include "salvage/payloads/mpeg4_headers.h"
#include "salvage/payloads/picture_group.h"

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
  if (turn_ != 0 || picturesPerSecond_ <= 0) return;
  if (isOfGroups()) {
    // Time codes count as if the rate were whole.
    constexpr double kHighest = 60;
    const double counted = std::round(picturesPerSecond_);
    if (counted < 1 || counted > kHighest || !numberByGroup(head, static_cast<std::uint32_t>(counted))) return;
    turn_ = groupTurn(static_cast<std::uint32_t>(counted));
    ticksPerPicture_ = 1;
    return;
  }
  if (codec_ != Codec::mpeg4) return;
  const auto layer = mpeg4Layer(head);
  if (!layer || layer->resolution == 0) return;
  turn_ = layer->resolution;
  ticksPerPicture_ = turn_ / picturesPerSecond_;
}

std::optional<std::uint32_t> PictureClock::ticks(std::span<const std::byte> head) const {
  if (!isKnown()) return std::nullopt;
  if (isOfGroups()) return numberByGroup(head, static_cast<std::uint32_t>(std::round(picturesPerSecond_)));
  const auto picture = mpeg4Picture(head, turn_);
  if (!picture || picture->ticks >= turn_) return std::nullopt;
  return picture->ticks;
}

}  // namespace zelvo::salvage
