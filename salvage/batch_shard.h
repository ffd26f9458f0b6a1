/// A part of a collection that each of several machines can tell by itself.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/checksums.h"

namespace zelvo::salvage {

struct BatchShard {
  std::uint64_t number = 1;  ///< from 1
  std::uint64_t count = 1;
};

inline constexpr std::uint64_t kMaxShards = 1'000'000;

/// "K/N" with K from 1 to N; nothing when it is anything else.
[[nodiscard]] std::optional<BatchShard> shardFrom(std::string_view text);

/// The number, from 1, of the part that a film belongs to: SHA-256 of its path below the input folder, the bytes as
/// they are; of that the first eight bytes, the most significant first, modulo `count`, plus 1.
/// Failure: nothing when this system has no SHA-256.
[[nodiscard]] std::optional<std::uint64_t> shardOf(std::string_view below, std::uint64_t count,
                                                   platform::Checksums& checksums);

}  // namespace zelvo::salvage
