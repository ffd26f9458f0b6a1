/// SHA-256 of bytes.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace zelvo::platform {

using Sha256 = std::array<std::uint8_t, 32>;

/// A checksum under way. Thread: one at a time.
class RunningChecksum {
 public:
  virtual ~RunningChecksum() = default;
  virtual void add(std::span<const std::byte> bytes) = 0;
  /// Of all that was added; nothing when the library failed. Called once, last.
  [[nodiscard]] virtual std::optional<Sha256> finish() = 0;
};

/// Thread: any.
class Checksums {
 public:
  virtual ~Checksums() = default;
  /// Null when this system has no SHA-256.
  [[nodiscard]] virtual std::unique_ptr<RunningChecksum> startSha256() = 0;
};

/// 64 hexadecimal digits.
[[nodiscard]] std::string hexOf(const Sha256& checksum);

}  // namespace zelvo::platform
