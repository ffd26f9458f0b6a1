#include "salvage/plan/clock_turns.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace zelvo::salvage {

namespace {

constexpr std::size_t kClocks = 24;
constexpr std::size_t kMaxLooks = 4096;
constexpr std::size_t kHead = 512;
/// A group is seldom longer.
constexpr std::size_t kPicturesOfTwoGroups = 36;
constexpr std::size_t kGroups = 5;

}  // namespace

ClockTurns::ClockTurns(avi::InputFile& input, const SurvivingStream& header, std::uint8_t stream,
                       std::span<const Slot> slots)
    : input_(input), stream_(stream), clock_(header) {
  constexpr int kTries = 64;
  int tries = 0;
  for (const Slot& slot : slots) {
    if (clock_.isKnown() || tries >= kTries) break;
    if (slot.stream != stream_ || !slot.hasSource()) continue;
    clock_.learn(input_.readBytes(slot.source, std::min<std::size_t>(slot.size, kHead)));
    ++tries;
  }
  if (clock_.isKnown() && clock_.isOfGroups()) isTrue_ = movesOn(slots);
}

std::optional<std::uint32_t> ClockTurns::ticksOf(const Slot& slot) const {
  if (!slot.hasSource()) return std::nullopt;
  return clock_.ticks(input_.readBytes(slot.source, std::min<std::size_t>(slot.size, kHead)));
}

/// Whether the clock mostly moves on from group to group as the pictures do. Gaps are few.
bool ClockTurns::movesOn(std::span<const Slot> slots) const {
  std::size_t agreeing = 0;
  std::size_t pairs = 0;
  std::int64_t number = 0;
  std::optional<std::int64_t> behind;  ///< what the clock showed last, less the picture's number
  for (const Slot& slot : slots.first(std::min(slots.size(), kMaxLooks))) {
    if (slot.stream != stream_) continue;
    if (const auto ticks = ticksOf(slot)) {
      const std::int64_t now = std::int64_t{*ticks} - number;
      if (behind) ++pairs;
      if (behind == now) ++agreeing;
      behind = now;
    }
    ++number;
  }
  return agreeing * 2 > pairs;
}

/// What the pictures' clocks show, less what they would show if the picture's number told it: the most frequent value
/// of the first or last of them. Pictures that are reordered differ from it. The first picture of the slots has the
/// number 0, or the last one -1.
std::optional<double> ClockTurns::phase(std::span<const Slot> slots, bool isBackwards) const {
  std::vector<double> phases;
  std::int64_t number = 0;
  const double turn = clock_.turn();
  const std::size_t pictures = clock_.isOfGroups() ? kPicturesOfTwoGroups : kMaxLooks;
  const std::size_t clocks = clock_.isOfGroups() ? kGroups : kClocks;
  std::size_t looks = 0;
  for (std::size_t i = 0; i < std::min(slots.size(), kMaxLooks) && phases.size() < clocks && looks < pictures; ++i) {
    const Slot& slot = isBackwards ? slots[slots.size() - 1 - i] : slots[i];
    if (slot.stream != stream_ || slot.isPalette) continue;
    if (isBackwards) --number;
    ++looks;
    if (const auto ticks = ticksOf(slot)) {
      const double value = std::fmod(*ticks - static_cast<double>(number) * clock_.ticksPerPicture(), turn);
      phases.push_back(value < 0 ? value + turn : value);
    }
    if (!isBackwards) ++number;
  }
  std::optional<double> best;
  std::ptrdiff_t most = 0;
  for (const double value : phases) {
    const auto alike = std::ranges::count_if(phases, [&](double other) {
      const double apart = std::abs(value - other);
      return std::min(apart, turn - apart) < clock_.ticksPerPicture() / 4;
    });
    if (alike <= most) continue;
    most = alike;
    best = value;
  }
  // The clocks of groups agree, or some of them are hurt.
  if (clock_.isOfGroups() && phases.size() > 1 && most < 2) return std::nullopt;
  return best;
}

std::optional<double> ClockTurns::between(std::span<const Slot> front, std::span<const Slot> behind) const {
  if (!isKnown()) return std::nullopt;
  const auto before = phase(front, true);
  const auto after = phase(behind, false);
  if (!before || !after) return std::nullopt;
  double ticks = *after - *before;
  if (ticks < -clock_.ticksPerPicture() / 4) ticks += clock_.turn();
  return std::max(0.0, ticks / clock_.ticksPerPicture());
}

}  // namespace zelvo::salvage
