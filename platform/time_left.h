/// How long a stage may still take, by how fast it was so far.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace zelvo::platform {

/// Thread: one.
class TimeLeft {
 public:
  using Clock = std::chrono::steady_clock;

  /// At `now`, `done` of `all` bytes of `stage` are done. Another stage, or less than before, begins again.
  void note(Clock::time_point now, int stage, std::uint64_t done, std::uint64_t all);
  /// Seconds; nothing before there is enough to judge by (two seconds, and a hundredth of the stage).
  [[nodiscard]] std::optional<double> seconds() const;

 private:
  int stage_ = -1;
  Clock::time_point began_{};
  Clock::time_point last_{};
  std::uint64_t first_ = 0;
  std::uint64_t done_ = 0;
  std::uint64_t all_ = 0;
};

}  // namespace zelvo::platform
