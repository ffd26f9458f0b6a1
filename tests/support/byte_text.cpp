#include "tests/support/byte_text.h"

#include <algorithm>

#include "tests/support/avi_builder.h"

namespace zelvo::tests {

namespace {

std::span<const std::byte> partOf(std::span<const std::byte> bytes, std::size_t offset, std::size_t size) {
  offset = std::min(offset, bytes.size());
  return bytes.subspan(offset, std::min(size, bytes.size() - offset));
}

}  // namespace

platform::Bytes bytesOf(std::string_view text) {
  platform::Bytes out;
  appendText(out, text);
  return out;
}

std::string textAt(std::span<const std::byte> bytes, std::size_t offset, std::size_t size) {
  std::string text;
  for (const std::byte byte : partOf(bytes, offset, size)) text += static_cast<char>(byte);
  return text;
}

std::string hexOf(std::span<const std::byte> bytes) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  for (const std::byte byte : bytes) {
    if (!text.empty()) text += ' ';
    text += kDigits[std::to_integer<std::size_t>(byte >> 4U)];
    text += kDigits[std::to_integer<std::size_t>(byte & std::byte{15})];
  }
  return text;
}

std::string hexAt(std::span<const std::byte> bytes, std::size_t offset, std::size_t size) {
  return hexOf(partOf(bytes, offset, size));
}

std::uint32_t numberAt(std::span<const std::byte> bytes, std::size_t offset) {
  return number16At(bytes, offset) | number16At(bytes, offset + 2) << 16U;
}

std::uint32_t number16At(std::span<const std::byte> bytes, std::size_t offset) {
  std::uint32_t value = 0;
  unsigned shift = 0;
  for (const std::byte byte : partOf(bytes, offset, 2)) {
    value |= std::to_integer<std::uint32_t>(byte) << shift;
    shift += 8;
  }
  return value;
}

}  // namespace zelvo::tests
