/// The literal transcription of the sample scan: one read of 3072 bytes per block, copied into a cleared buffer, a loop
/// over its 1024 positions, one read of 4 and one of 6 bytes per candidate. Offsets and sizes are in bytes; blocks are
/// numbered from 1.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "tests/support/literal_bytes.h"

namespace zelvo::tests::literal {

/// One kind's chunks. Both tables are one-based: entry 0 is zero.
struct Table {
  static constexpr std::uint64_t kLargestCount = 1048575;
  std::uint64_t count = 0;
  std::vector<std::uint64_t> offsets{0};
  std::vector<std::uint64_t> sizes{0};
  std::uint64_t turnedAway = 0;  ///< accepted chunks that the full table had no room for

  void add(std::uint32_t offset, std::uint64_t size);
  /// Length of all chunks together, headers included.
  [[nodiscard]] std::uint64_t wholeSize() const;
};

struct Tables {
  std::uint64_t videosamplesize = 0;  ///< size field of the candidate judged last
  Table video;
  Table audio;
};

struct ScanOptions {
  std::uint64_t inputfilesize = 0;
  /// Whether a stop has been asked for, looked at when block `sector` begins.
  std::function<bool(std::uint64_t sector)> stopped = [](std::uint64_t) { return false; };
  /// Told of each block that was read: how far the scan is (0 to 100 percent).
  std::function<void(double percent)> progress = [](double) {};
  /// Whether the 3072 bytes at this offset are known to be zero. Such a block holds no code, so nothing is read: this
  /// only makes inputs of gigabytes bearable.
  std::function<bool(std::uint32_t offset)> knownZero = [](std::uint32_t) { return false; };
};

[[nodiscard]] Tables scanSamples(Input& input, const ScanOptions& options);

}  // namespace zelvo::tests::literal
