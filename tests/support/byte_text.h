/// Bytes as tests like to write and read them. Offsets and sizes are in bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "platform/bytes.h"

namespace zelvo::tests {

/// The characters of `text` as bytes.
[[nodiscard]] platform::Bytes bytesOf(std::string_view text);
/// `size` characters from `offset` on, fewer at the end.
[[nodiscard]] std::string textAt(std::span<const std::byte> bytes, std::size_t offset, std::size_t size);
/// "00 1f a0"
[[nodiscard]] std::string hexOf(std::span<const std::byte> bytes);
/// The bytes from `offset` on as "00 1f a0"; fewer than `size` at the end.
[[nodiscard]] std::string hexAt(std::span<const std::byte> bytes, std::size_t offset, std::size_t size);
/// The little-endian number at `offset`; bytes past the end count as zero.
[[nodiscard]] std::uint32_t numberAt(std::span<const std::byte> bytes, std::size_t offset);
[[nodiscard]] std::uint32_t number16At(std::span<const std::byte> bytes, std::size_t offset);

}  // namespace zelvo::tests
