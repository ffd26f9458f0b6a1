/// The streams of the repaired film by the numbers that the damaged film's codes bear, and how long their chunks play.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "salvage/headers/film_header.h"
#include "salvage/plan/film_plan.h"

namespace zelvo::salvage {

/// Thread: any, once made.
class FilmStreams {
 public:
  static constexpr std::uint8_t kNone = 0xff;

  explicit FilmStreams(const FilmHeader& header);

  /// Index in the film's header of the stream that a code numbers so; `kNone` without one.
  [[nodiscard]] std::uint8_t indexOf(std::uint8_t number) const { return number < kMaxStreams ? of_[number] : kNone; }
  [[nodiscard]] std::size_t count() const { return streams_.size(); }

  // Of the stream with such an index.
  [[nodiscard]] std::uint8_t numberOf(std::uint8_t index) const { return streams_[index].number; }
  [[nodiscard]] bool isPicture(std::uint8_t index) const { return streams_[index].isPicture; }
  [[nodiscard]] bool isSound(std::uint8_t index) const { return streams_[index].isSound; }
  /// Whether its time is counted in bytes, so that a chunk must keep its length.
  [[nodiscard]] bool countsBytes(std::uint8_t index) const { return streams_[index].sampleSize != 0; }
  /// dwSampleSize, at least 1.
  [[nodiscard]] std::uint32_t blockOf(std::uint8_t index) const;
  /// How long a chunk of so many bytes plays, in nanoseconds; 0 for a stream without a clock.
  [[nodiscard]] std::int64_t duration(std::uint8_t index, std::uint64_t size) const;

  /// Whether a slot stands for a picture: a change of the palette does not.
  [[nodiscard]] bool isPicture(const Slot& slot) const { return isPicture(slot.stream) && !slot.isPalette; }

 private:
  struct Stream {
    std::uint8_t number = 0;
    bool isPicture = false;
    bool isSound = false;
    std::uint32_t sampleSize = 0;
    std::uint32_t scale = 0;
    std::uint32_t rate = 0;
  };

  std::array<std::uint8_t, kMaxStreams> of_{};
  std::vector<Stream> streams_;
};

}  // namespace zelvo::salvage
