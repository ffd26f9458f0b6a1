#include "salvage/plan/sound_track.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace zelvo::salvage {

double medianOf(std::span<double> values) {
  std::ranges::sort(values);
  return values[values.size() / 2];
}

void SoundTrack::compare(std::size_t part, double pictures, double time) {
  constexpr std::size_t kMost = 4096;
  if (hasCompared_ && part == part_ && time_ > 0 && paces_.size() < kMost)
    paces_.push_back((pictures - pictures_) / time_);
  part_ = part;
  pictures_ = pictures;
  time_ = time;
  hasCompared_ = true;
}

void SoundTrack::setPace() {
  constexpr std::size_t kFewest = 64;
  constexpr double kMost = 2;
  constexpr double kSlack = 0.25;
  std::vector<double> paces = std::move(paces_);
  if (paces.size() < kFewest) return;
  const double pace = medianOf(paces);
  if (pace <= 0 || (pace >= 1 / kMost && pace <= kMost)) return;
  const auto isAlike = [&](double one) { return std::abs(one - pace) <= kSlack * pace; };
  if (static_cast<std::size_t>(std::ranges::count_if(paces, isAlike)) * 5 < paces.size() * 4) return;
  pace_ = pace;
  chunkTime *= pace;
}

void SoundTrack::learn(double lag) {
  recent_[lags_++ % kRecent] = lag;
  std::array<double, kRecent> sorted = recent_;
  usual_ = medianOf(std::span(sorted).first(std::min(kRecent, lags_)));
}

std::uint32_t SoundTrack::sizeFor(double time, std::size_t count, std::uint32_t block) const {
  // Most lost chunks had the usual size; a difference that is not heard is none.
  constexpr double kUnheard = 0.02;
  const double apart = std::abs(time - static_cast<double>(count) * chunkTime);
  if (apart <= std::min(kUnheard, 0.3 * chunkTime)) return chunkSize;
  const double blocks = time / static_cast<double>(count) / chunkTime * chunkSize / block;
  return std::max(1U, static_cast<std::uint32_t>(std::lround(blocks))) * block;
}

}  // namespace zelvo::salvage
