#include "salvage/headers/zipped_blocks.h"

#include <algorithm>

namespace zelvo::salvage {

namespace {

constexpr unsigned kKey = 1;
constexpr unsigned kNewPalette = 2;

unsigned zippedByte(std::span<const std::byte> bytes, std::size_t at) { return static_cast<unsigned>(bytes[at]); }

}  // namespace

bool mayBeZipped(std::span<const std::byte> front, std::size_t size) {
  // Each picture ends where the packer is told to give out all that it has.
  constexpr std::array kEnd{std::byte{0}, std::byte{0}, std::byte{0xff}, std::byte{0xff}};
  if (front.size() <= kEnd.size()) return false;
  const unsigned flags = zippedByte(front, 0);
  if ((flags & kKey) != 0 ? !zippedKey(front) : (flags & ~kNewPalette) != 0) return false;
  return front.size() < size || std::ranges::equal(front.last(kEnd.size()), kEnd);
}

bool beginsZippedKey(std::uint32_t head) {
  constexpr std::uint32_t kVersion = 0x0100;  // 0.1, the high byte first
  constexpr std::uint32_t kZlib = 1;
  return (head & 0xffU) == kKey && (head >> 8U & 0xffffU) == kVersion && head >> 24U == kZlib;
}

std::optional<ZippedKey> zippedKey(std::span<const std::byte> payload) {
  constexpr std::size_t kHead = 7;
  constexpr unsigned kDeflate = 8;
  constexpr unsigned kMaxBlock = 64;
  if (payload.size() < kHead + 2) return std::nullopt;
  std::uint32_t head = 0;
  for (std::size_t i = 4; i > 0; --i) head = head << 8U | zippedByte(payload, i - 1);
  // 8, 15, 16, 24 and 32 bits are the formats 4 to 8.
  constexpr std::array<std::uint16_t, 5> kBits{8, 16, 16, 24, 32};
  const unsigned format = zippedByte(payload, 4) - 4;
  const unsigned width = zippedByte(payload, 5);
  const unsigned height = zippedByte(payload, 6);
  const unsigned zip = zippedByte(payload, 7) << 8U | zippedByte(payload, 8);
  const bool isZip = (zip >> 8U & 15U) == kDeflate && zip % 31 == 0;
  if (!beginsZippedKey(head) || format >= kBits.size() || width == 0 || width > kMaxBlock || height == 0 ||
      height > kMaxBlock || !isZip)
    return std::nullopt;
  return ZippedKey{kBits[format]};
}

}  // namespace zelvo::salvage
