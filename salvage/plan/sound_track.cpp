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

}  // namespace zelvo::salvage
