/// How the bytes of a fuzzer stand for an input, its claims, its faults and a stop: eight bytes of settings, then the
/// content of the file. Offsets and sizes are in bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "platform/bytes.h"
#include "tests/support/damage.h"
#include "tests/support/literal_comparison.h"

namespace zelvo::tests {

struct RepairInput {
  DamagedInput input;
  TwinStops stops;
};

[[nodiscard]] RepairInput decodeRepairInput(std::span<const std::byte> bytes);

/// Bytes that decode to about this input: claims and faults that the settings have no room for are cut.
[[nodiscard]] platform::Bytes encodeRepairInput(const RepairInput& input);

}  // namespace zelvo::tests
