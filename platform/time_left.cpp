#include "platform/time_left.h"

namespace zelvo::platform {

void TimeLeft::note(Clock::time_point now, int stage, std::uint64_t done, std::uint64_t all) {
  if (stage != stage_ || done < done_) {
    stage_ = stage;
    began_ = now;
    first_ = done;
  }
  last_ = now;
  done_ = done;
  all_ = all;
}

std::optional<double> TimeLeft::seconds() const {
  constexpr double kLeastSeconds = 2;
  constexpr std::uint64_t kLeastShare = 100;
  const double passed = std::chrono::duration<double>(last_ - began_).count();
  const std::uint64_t went = done_ - first_;
  if (passed < kLeastSeconds || went == 0 || went < all_ / kLeastShare || done_ > all_) return std::nullopt;
  return passed * static_cast<double>(all_ - done_) / static_cast<double>(went);
}

}  // namespace zelvo::platform
