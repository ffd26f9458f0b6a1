/// Where foreign bytes were put into a compressed payload, found by decoding. Offsets and sizes are in bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "salvage/payloads/payload_trial.h"

namespace zelvo::salvage {

/// `bytes`: a payload of `size` and, somewhere in it, the bytes that were put in, as many as it is too long. The answer
/// is how many bytes of the payload stand in front of them. Nothing when no cut makes a payload without complaint, or
/// when too many do. `likely` are cuts that something else speaks for, the likeliest first: some of them are tried, and
/// others only when it is none of these.
/// \pre `bytes` is longer than `size`.
/// Thread: one at a time.
[[nodiscard]] std::optional<std::uint32_t> searchCut(PayloadTrial& trial, std::span<const std::byte> bytes,
                                                     std::uint32_t size, std::span<const std::uint32_t> likely = {});

}  // namespace zelvo::salvage
