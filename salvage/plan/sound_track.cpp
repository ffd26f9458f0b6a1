#include "salvage/plan/sound_track.h"

#include <algorithm>

namespace zelvo::salvage {

double medianOf(std::span<double> values) {
  std::ranges::sort(values);
  return values[values.size() / 2];
}

void SoundTrack::learn(double lag) {
  recent_[lags_++ % kRecent] = lag;
  std::array<double, kRecent> sorted = recent_;
  usual_ = medianOf(std::span(sorted).first(std::min(kRecent, lags_)));
}

}  // namespace zelvo::salvage
