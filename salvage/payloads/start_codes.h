/// Parts of a payload: after start codes (three bytes 00 00 01 and a type), or units with their lengths before them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace zelvo::salvage {

/// Goes from start code to start code. Thread: one.
class StartCodes {
 public:
  struct Code {
    unsigned type = 0;                ///< the byte after 00 00 01
    std::size_t offset = 0;           ///< of the first zero
    std::span<const std::byte> rest;  ///< all that follows the type
  };

  explicit StartCodes(std::span<const std::byte> bytes) : bytes_(bytes) {}
  /// Nothing after the last.
  [[nodiscard]] std::optional<Code> next();

 private:
  std::span<const std::byte> bytes_;
  std::size_t at_ = 0;
};

/// Goes from unit to unit of H.264 or HEVC: after start codes where the payload begins with one, else each after its
/// length of four bytes, the highest first. Thread: one.
class Units {
 public:
  explicit Units(std::span<const std::byte> bytes);
  /// A unit from its first byte on, not empty: up to its length, or all that follows its start code. Nothing after the
  /// last, or where a length makes no sense.
  [[nodiscard]] std::optional<std::span<const std::byte>> next();

 private:
  std::span<const std::byte> bytes_;
  StartCodes codes_;
  bool hasCodes_ = false;
  std::size_t at_ = 0;
};

}  // namespace zelvo::salvage
