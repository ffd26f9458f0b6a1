/// Reads that failed, added up. Offsets and sizes are in bytes.
#pragma once

#include <cstdint>
#include <system_error>

namespace zelvo::avi {

/// What fails on a disk is a sector at least.
inline constexpr std::uint64_t kSectorSize = 512;

/// Reads that failed, the end of the file not counted among them.
struct ReadFailures {
  std::uint64_t count = 0;
  std::uint64_t firstOffset = 0;  ///< first byte that could not be read
  std::error_code firstCause;
  /// Distinct bytes that could not be read: from where a read failed to the end of that 1024-byte block, as far as the
  /// scan reads on after it.
  std::uint64_t bytes = 0;

  /// Counts failures that came after these.
  void add(const ReadFailures& later);
};

}  // namespace zelvo::avi
