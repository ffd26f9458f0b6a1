/// A look at a few places of a file, held in memory: all of a small one. Offsets and sizes are in bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "platform/bytes.h"
#include "platform/files.h"
#include "salvage/scan/byte_span.h"

namespace zelvo::salvage {

/// How much of a file is looked at.
struct TriageLimits {
  std::uint64_t bytes = std::uint64_t{64} << 20U;
  std::size_t places = 256;
  std::uint64_t ends = std::uint64_t{1} << 20U;  ///< of its front and of its end all is looked at

  /// How large a place is: whole pages.
  [[nodiscard]] std::uint64_t place() const;
};

/// Neighbouring places that were read, as one.
struct TriageExtent {
  std::uint64_t offset = 0;          ///< in the file
  platform::Bytes bytes;             ///< zero where nothing was read or rescued
  std::vector<ByteSpan> unreadable;  ///< in the file's offsets: rising
  std::vector<ByteSpan> unrescued;   ///< the same

  [[nodiscard]] std::uint64_t end() const { return offset + bytes.size(); }
};

struct TriageSample {
  std::uint64_t fileSize = 0;
  std::uint64_t bytesRead = 0;
  std::size_t reads = 0;
  std::vector<TriageExtent> extents;  ///< rising, apart
  bool isComplete = false;            ///< false when it was stopped

  /// Whether all of the file is there.
  [[nodiscard]] bool isWhole() const;
};

/// Places of one size, spread evenly but not at equal distances, so that nothing that comes back at equal distances is
/// seen always or never. The same file gives the same places. What was not rescued is not looked at.
/// `isEnding` is asked before each read.
/// Failure: after a read that fails, the rest of its place is unreadable.
/// Thread: any.
[[nodiscard]] TriageSample sampleFile(platform::ReadableFile& file, const std::vector<ByteSpan>& unrescued,
                                      const std::function<bool()>& isEnding, const TriageLimits& limits = {});

}  // namespace zelvo::salvage
