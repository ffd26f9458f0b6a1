/// The payload of a stream format chunk (strf), as harvested. A size field may claim gigabytes, so a large payload is
/// held as a range of the input and copied when it is written. Sizes and offsets are in bytes.
/// Decision: writer, Formats are written as they came
#pragma once

#include <cstdint>

#include "platform/bytes.h"

namespace zelvo::engine {

struct FormatPayload {
  /// Payloads of up to this size are held in memory.
  static constexpr std::uint64_t kLargestHeld = 65536;

  platform::Bytes held;
  std::uint64_t rangeOffset = 0;  ///< where the range starts in the input
  std::uint64_t rangeSize = 0;    ///< 0 when the payload is held; the input may end before the range does

  friend bool operator==(const FormatPayload&, const FormatPayload&) = default;
};

}  // namespace zelvo::engine
