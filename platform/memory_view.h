/// How much memory is there to be used. Sizes are in bytes.
#pragma once

#include <cstdint>
#include <optional>

namespace zelvo::platform {

/// Thread: any.
class MemoryView {
 public:
  virtual ~MemoryView() = default;
  /// What programs may still take without the system having to swap, or this one's group to give any up. Nothing when
  /// it cannot be told.
  [[nodiscard]] virtual std::optional<std::uint64_t> available() = 0;
};

}  // namespace zelvo::platform
