/// A sound track's clock while a film is walked, and how far it usually runs from that of the pictures. Times are in
/// seconds.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace zelvo::salvage {

/// The upper one of two in the middle. Changes their order. \pre not empty.
[[nodiscard]] double medianOf(std::span<double> values);

/// Thread: one.
class SoundTrack {
 public:
  /// `usualTime` and `usualSize`: of a chunk.
  SoundTrack(std::uint8_t index, double usualTime, std::uint32_t usualSize)
      : stream(index), chunkTime(usualTime), chunkSize(usualSize) {}

  /// Sets a chunk against the pictures' clock: it plays for `time`, by the film's header. Where `part` differs from the
  /// last one's, something was lost between.
  void compare(std::size_t part, double pictures, double time);
  /// Ends comparing. Where the sound's clock and that of the pictures cannot both be true, because nearly all chunks
  /// play for the same share of the pictures beside them, less than half or more than twice, it goes by the pictures
  /// from now on.
  void setPace();
  /// How many times as long as the header says a chunk plays; mostly 1.
  [[nodiscard]] double pace() const { return pace_; }

  /// Notes by how much the clock was ahead of the pictures' where a chunk begins.
  void learn(double lag);
  /// How many were noted.
  [[nodiscard]] std::size_t lags() const { return lags_; }
  /// What the last few come to; nothing before there is one.
  [[nodiscard]] std::optional<double> usualLag() const { return usual_; }

  /// The size of each of `count` chunks that last for `time` together, in whole blocks of bytes and at least one.
  /// \pre `count` and
  /// `block` are not 0.
  [[nodiscard]] std::uint32_t sizeFor(double time, std::size_t count, std::uint32_t block) const;

  std::uint8_t stream;  ///< index in the film's header
  double clock = 0;
  std::size_t chunks = 0;
  double chunkTime;         ///< of a usual chunk
  std::uint32_t chunkSize;  ///< the same, in bytes

 private:
  static constexpr std::size_t kRecent = 12;

  std::array<double, kRecent> recent_{};  ///< each in the place of the one so many before it
  std::size_t lags_ = 0;
  std::optional<double> usual_;
  double pace_ = 1;
  /// The last chunk that was compared, and what those before it told.
  std::size_t part_ = 0;
  double pictures_ = 0;
  double time_ = 0;
  std::vector<double> paces_;
  bool hasCompared_ = false;
};

}  // namespace zelvo::salvage
