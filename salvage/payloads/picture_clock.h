/// The clock that pictures of some codecs carry in their own bits: it tells how many are missing, but for whole turns.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "salvage/payloads/codec.h"

namespace zelvo::salvage {

/// Of one stream of pictures. Thread: one.
class PictureClock {
 public:
  /// `header`: the stream's header, whose format may hold the codec's own. Durations of pictures follow from its rate.
  explicit PictureClock(const SurvivingStream& header);

  /// Learns from the front of any payload, until the codec's own header was met.
  void learn(std::span<const std::byte> head);
  /// Whether clocks can be read and a picture takes a known number of ticks.
  [[nodiscard]] bool isKnown() const { return turn_ != 0 && ticksPerPicture_ >= 1; }
  /// What the clock of the picture shows, in ticks; nothing when these bytes do not tell.
  [[nodiscard]] std::optional<std::uint32_t> ticks(std::span<const std::byte> head) const;

  /// Whether only the first pictures of groups show the time, by a time code that some encoders never move on.
  [[nodiscard]] bool isOfGroups() const { return codec_ == Codec::mpegVideo; }
  /// Ticks until the clock begins again at zero.
  [[nodiscard]] std::uint32_t turn() const { return turn_; }
  [[nodiscard]] double ticksPerPicture() const { return ticksPerPicture_; }

 private:
  Codec codec_;
  double picturesPerSecond_ = 0;
  std::uint32_t turn_ = 0;
  double ticksPerPicture_ = 0;
};

}  // namespace zelvo::salvage
