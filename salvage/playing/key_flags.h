/// The flags by which a film's indexes name key pictures: found by the payloads that they name, and taken away. Offsets
/// and sizes are in bytes.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <system_error>
#include <vector>

#include "platform/files.h"

namespace zelvo::salvage {

/// An entry of an index that calls a payload a key.
struct KeyEntry {
  std::uint64_t payload = 0;  ///< that it names
  std::uint64_t field = 0;    ///< where the 32 bits with its flag lie
  std::uint32_t without = 0;  ///< what they are without it

  friend bool operator==(const KeyEntry&, const KeyEntry&) = default;
};

/// The entries of all old and standard indexes (idx1, ix00 ...) that call one of `payloads` a key, as they lie in the
/// file. The walk ends where the file's chunks do not follow on one another.
/// \pre `payloads` rise.
/// Thread: any; as long as a walk over all chunks takes. `isEnding` ends it early.
[[nodiscard]] std::vector<KeyEntry> keyEntries(platform::ReadableFile& file, std::span<const std::uint64_t> payloads,
                                               const std::function<bool()>& isEnding);

/// Takes their flags away. Failure: the first write that failed; those after it keep theirs.
[[nodiscard]] std::error_code dropKeyFlags(platform::WritableFile& file, std::span<const KeyEntry> entries);

}  // namespace zelvo::salvage
