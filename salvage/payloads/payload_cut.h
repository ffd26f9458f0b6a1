/// Where a payload was cut apart, as far as its bytes alone tell: some were put in there, or are missing. Offsets and
/// sizes are in bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "salvage/scan/surviving_headers.h"

namespace zelvo::salvage {

/// `bytes`: a payload of `size` and, somewhere in it, the bytes that were put in, as many as it is too long. The answer
/// is how many bytes of the payload stand in front of them: so that rows of a picture follow smoothly on one another,
/// or so that sound is least loud, since bytes of other things are louder than nearly all sound. Nothing for other
/// codecs. Time is linear.
/// \pre `bytes` is longer than `size`.
/// Thread: any.
[[nodiscard]] std::optional<std::uint32_t> insertionIn(const SurvivingStream& stream, std::span<const std::byte> bytes,
                                                       std::uint32_t size);

/// `bytes`: a compressed payload of `size` and, somewhere in it, as many bytes as it is too long, which were doubled.
/// The answer is how many bytes of the payload stand in front of the second time. Nothing where fewer than 16 bytes
/// were put in, or where they are not those in front of them, or nearly all alike. Time is linear.
/// \pre `bytes` is longer than `size`.
/// Thread: any.
[[nodiscard]] std::optional<std::uint32_t> repetitionIn(std::span<const std::byte> bytes, std::uint32_t size);

/// `bytes`: a payload of `size` of which some bytes are missing at one place. The answer is how many bytes stand in
/// front of that: so that no rows on both sides of it are compared, or so that the samples after it begin at their
/// first byte. Nothing for other codecs, or where every place would do.
/// \pre `bytes` is shorter than `size`.
/// Thread: any.
[[nodiscard]] std::optional<std::uint32_t> tearIn(const SurvivingStream& stream, std::span<const std::byte> bytes,
                                                  std::uint32_t size);

}  // namespace zelvo::salvage
