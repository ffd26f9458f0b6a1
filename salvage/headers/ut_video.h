/// Pictures of Ut Video, by themselves: how they are packed proves the codec, and the lengths of their codes tell how
/// many samples each plane has.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace zelvo::salvage {

/// How many of something there are: no fewer than `least`, no more than `most`.
struct CountRange {
  std::uint64_t least = 0;
  std::uint64_t most = 0;

  friend bool operator==(const CountRange&, const CountRange&) = default;
};

/// Its planes; they are packed in as many slices each.
struct UtVideoPicture {
  unsigned slices = 0;
  /// Samples of each plane. A plane of one value has no codes, and any number. Of another the end of each slice, which
  /// is filled up with zeros, leaves a few in doubt.
  std::vector<CountRange> samples;
};

/// What such a picture may have of samples in a plane.
constexpr std::uint64_t kMaxUtVideoSamples = 2048U * 1200U;

/// Whether a payload of so many bytes begins with the lengths of a full set of codes, and the end of a slice. `front`:
/// its first bytes, 260 of them or more.
/// Thread: any.
[[nodiscard]] bool beginsUtVideo(std::span<const std::byte> front, std::size_t size);

/// Nothing when the payload is none of Ut Video, or not whole.
/// Thread: any; some milliseconds for a MiB.
[[nodiscard]] std::optional<UtVideoPicture> utVideoPicture(std::span<const std::byte> payload);

}  // namespace zelvo::salvage
