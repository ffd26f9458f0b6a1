/// By how many pictures the clocks of pictures move on over a gap, but for whole turns.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "avi/input_file.h"
#include "salvage/payloads/picture_clock.h"
#include "salvage/plan/film_plan.h"

namespace zelvo::salvage {

/// Of the pictures of one stream. Thread: one.
class ClockTurns {
 public:
  /// `stream`: index in the film's header of the one whose header is `header`. The clock is learnt from the first of
  /// `slots`.
  ClockTurns(avi::InputFile& input, const SurvivingStream& header, std::uint8_t stream, std::span<const Slot> slots);

  [[nodiscard]] bool isKnown() const { return clock_.isKnown() && isTrue_; }
  /// Pictures of a whole turn.
  [[nodiscard]] double turn() const { return clock_.turn() / clock_.ticksPerPicture(); }
  /// How far the clock has moved on from `front` to `behind`, in pictures and less than a turn, if no picture were
  /// missing between the two; nothing when the clocks do not tell. Reads the first bytes of some pictures of both.
  [[nodiscard]] std::optional<double> between(std::span<const Slot> front, std::span<const Slot> behind) const;

 private:
  [[nodiscard]] bool movesOn(std::span<const Slot> slots) const;
  [[nodiscard]] std::optional<std::uint32_t> ticksOf(const Slot& slot) const;
  [[nodiscard]] std::optional<double> phase(std::span<const Slot> slots, bool isBackwards) const;

  avi::InputFile& input_;
  std::uint8_t stream_;
  PictureClock clock_;
  bool isTrue_ = true;  ///< it moves on as the pictures do, for all that is known
};

}  // namespace zelvo::salvage
