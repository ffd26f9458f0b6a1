/// What is kept in mind of a film while it is played through, so that jumps can be judged by it. Offsets are in bytes,
/// times in the units of the packet's stream. Part of zelvo-avi-player alone.
#pragma once

extern "C" {
#include <libavformat/avformat.h>
}

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "platform/film_player.h"

namespace zelvo::platform::linux_ {

[[nodiscard]] std::uint64_t offsetOf(const AVPacket& packet);
/// By the film's own clock; AV_NOPTS_VALUE when it has none.
[[nodiscard]] std::int64_t stampOf(const AVPacket& packet);

/// A picture of the film, as it is when the film is played through.
struct Mark {
  std::uint64_t offset = PlayedPacket::kNowhere;  ///< of its packet
  std::int64_t time = 0;                          ///< of its packet
  std::int64_t key = AV_NOPTS_VALUE;              ///< time of the last key before it, or its own
  std::optional<std::uint64_t> print;             ///< none when no picture came
};

/// Every so many packets of one stream one is marked, so that in the end there are `kMarks` to `kMarks / 2`.
class Marks {
 public:
  static constexpr std::size_t kMarks = 64;

  void packet(const AVPacket& packet, std::uint64_t number);
  void picture(const AVFrame& frame, std::uint64_t number);
  /// At most `count` of them, spread evenly.
  [[nodiscard]] std::vector<Mark> some(std::size_t count, bool needsPicture) const;

 private:
  std::map<std::uint64_t, Mark> marks_;
  std::uint64_t count_ = 0;
  std::uint64_t stride_ = 1;
  std::int64_t lastKey_ = AV_NOPTS_VALUE;
};

/// The times of the packets of streams that no jump is aimed at, by their offsets.
class OtherTimes {
 public:
  /// More than these are left out.
  static constexpr std::size_t kMaxPackets = 2'000'000;

  void packet(const AVPacket& packet);
  /// After the last packet, and before the first question.
  void sort();
  [[nodiscard]] std::optional<std::int64_t> timeOf(const AVPacket& packet) const;
  [[nodiscard]] std::set<int> streams() const;

 private:
  using Times = std::vector<std::pair<std::uint64_t, std::int64_t>>;
  std::map<int, Times> times_;  ///< by stream
  std::size_t count_ = 0;
};

}  // namespace zelvo::platform::linux_
