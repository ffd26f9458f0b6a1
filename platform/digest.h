/// MD5 digests.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

namespace zelvo::platform {

using Md5 = std::array<std::uint8_t, 16>;

/// A digest under way. Thread: one at a time.
class RunningDigest {
 public:
  virtual ~RunningDigest() = default;
  virtual void add(std::span<const std::byte> bytes) = 0;
  /// The digest of all that was added; nothing when the library failed. Called once, last.
  [[nodiscard]] virtual std::optional<Md5> finish() = 0;
};

/// Thread: any.
class Digest {
 public:
  virtual ~Digest() = default;
  /// Null when this system has no MD5.
  [[nodiscard]] virtual std::unique_ptr<RunningDigest> startMd5() = 0;
};

}  // namespace zelvo::platform
