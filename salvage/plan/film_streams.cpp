#include "salvage/plan/film_streams.h"

#include <algorithm>

#include "avi/chunk_codes.h"

namespace zelvo::salvage {

FilmStreams::FilmStreams(const FilmHeader& header) {
  of_.fill(kNone);
  for (const FilmStream& stream : header.streams) {
    if (streams_.size() == kMaxStreams) break;
    if (stream.number < kMaxStreams && of_[stream.number] == kNone)
      of_[stream.number] = static_cast<std::uint8_t>(streams_.size());
    const bool isSound = stream.header.type == avi::kAuds;
    streams_.push_back({stream.number, stream.header.type == avi::kVids, isSound,
                        isSound ? stream.header.sampleSize : 0, stream.header.scale, stream.header.rate});
  }
}

std::uint32_t FilmStreams::blockOf(std::uint8_t index) const {
  return std::max<std::uint32_t>(1, streams_[index].sampleSize);
}

std::int64_t FilmStreams::duration(std::uint8_t index, std::uint64_t size) const {
  constexpr std::uint64_t kSecond = 1'000'000'000;
  // Longer than any film, and no product below overflows.
  constexpr double kLongest = 1e16;
  const Stream& stream = streams_[index];
  if (stream.rate == 0) return 0;
  const double units = stream.sampleSize != 0 ? static_cast<double>(size) / stream.sampleSize : 1.0;
  return static_cast<std::int64_t>(
      std::min(kLongest, units * stream.scale * static_cast<double>(kSecond) / stream.rate));
}

}  // namespace zelvo::salvage
