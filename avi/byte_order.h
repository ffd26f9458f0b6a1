/// Little-endian numbers, as every size, count and offset of an AVI file is stored. The one place that reads and writes
/// them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace zelvo::avi {

[[nodiscard]] constexpr std::uint16_t loadLittleEndian16(std::span<const std::byte, 2> bytes) {
  return static_cast<std::uint16_t>(static_cast<std::uint32_t>(bytes[0]) | static_cast<std::uint32_t>(bytes[1]) << 8U);
}

[[nodiscard]] constexpr std::uint32_t loadLittleEndian32(std::span<const std::byte, 4> bytes) {
  return static_cast<std::uint32_t>(bytes[0]) | static_cast<std::uint32_t>(bytes[1]) << 8U |
         static_cast<std::uint32_t>(bytes[2]) << 16U | static_cast<std::uint32_t>(bytes[3]) << 24U;
}

/// The four bytes at `offset`, which must lie within `bytes`.
[[nodiscard]] constexpr std::uint32_t littleEndian32At(std::span<const std::byte> bytes, std::size_t offset) {
  return loadLittleEndian32(bytes.subspan(offset).first<4>());
}

[[nodiscard]] constexpr std::uint64_t loadLittleEndian64(std::span<const std::byte, 8> bytes) {
  return loadLittleEndian32(bytes.first<4>()) | std::uint64_t{loadLittleEndian32(bytes.last<4>())} << 32U;
}

/// Of one to eight bytes.
[[nodiscard]] constexpr std::uint64_t loadLittleEndian(std::span<const std::byte> bytes) {
  std::uint64_t value = 0;
  for (std::size_t i = bytes.size(); i > 0; --i) value = value << 8U | static_cast<std::uint64_t>(bytes[i - 1]);
  return value;
}

constexpr void storeLittleEndian32(std::span<std::byte, 4> bytes, std::uint32_t value) {
  bytes[0] = static_cast<std::byte>(value & 0xffU);
  bytes[1] = static_cast<std::byte>(value >> 8U & 0xffU);
  bytes[2] = static_cast<std::byte>(value >> 16U & 0xffU);
  bytes[3] = static_cast<std::byte>(value >> 24U);
}

constexpr void storeLittleEndian64(std::span<std::byte, 8> bytes, std::uint64_t value) {
  storeLittleEndian32(bytes.first<4>(), static_cast<std::uint32_t>(value & 0xffffffffU));
  storeLittleEndian32(bytes.last<4>(), static_cast<std::uint32_t>(value >> 32U));
}

}  // namespace zelvo::avi
