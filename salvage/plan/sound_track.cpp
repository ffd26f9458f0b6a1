#include "salvage/plan/sound_track.h"

#include <algorithm>

namespace zelvo::salvage {

double medianOf(std::span<double> values) {
  std::ranges::sort(values);
  return values[values.size() / 2];
}

void SoundTrack::compare(std::size_t part, double pictures, double time) {
  if (hasCompared_ && part == part_) {
    shown_ += pictures - pictures_;
    heard_ += time_;
    ++compared_;
  }
  part_ = part;
  pictures_ = pictures;
  time_ = time;
  hasCompared_ = true;
}

void SoundTrack::setPace() {
  constexpr std::size_t kFewest = 64;
  constexpr double kMost = 2;
  if (compared_ < kFewest || shown_ <= 0 || heard_ <= 0) return;
  const double pace = shown_ / heard_;
  if (pace >= 1 / kMost && pace <= kMost) return;
  pace_ = pace;
  chunkTime *= pace;
}

void SoundTrack::learn(double lag) {
  recent_[lags_++ % kRecent] = lag;
  std::array<double, kRecent> sorted = recent_;
  usual_ = medianOf(std::span(sorted).first(std::min(kRecent, lags_)));
}

}  // namespace zelvo::salvage
