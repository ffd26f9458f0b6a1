#include "salvage/payloads/key_picture.h"

#include <algorithm>
#include <cstdint>

#include "salvage/payloads/bit_reader.h"
#include "salvage/payloads/start_codes.h"

namespace zelvo::salvage {

namespace {

using Head = std::span<const std::byte>;

/// Whether the first two bits are zero, as in pictures of type I.
std::optional<bool> twoZeroBits(Head head) { return (static_cast<unsigned>(head[0]) & 0xc0U) == 0; }

std::optional<bool> isMpeg4Key(Head head) {
  constexpr unsigned kVop = 0xb6;
  for (StartCodes codes(head); const auto code = codes.next();) {
    if (code->type == kVop && !code->rest.empty()) return twoZeroBits(code->rest);
  }
  return false;
}

std::optional<bool> isMpegVideoKey(Head head) {
  constexpr unsigned kPicture = 0;
  constexpr unsigned kIntra = 1;
  for (StartCodes codes(head); const auto code = codes.next();) {
    if (code->type != kPicture || code->rest.size() < 2) continue;
    BitReader bits(code->rest);
    bits.skip(10);  // temporal_reference
    return bits.read(3) == kIntra;
  }
  return false;
}

std::optional<bool> isMsMpeg4v1Key(Head head) {
  if (head.size() < 5) return false;
  BitReader bits(head);
  if (bits.read(32) != 0x100) return false;
  bits.skip(5);
  return bits.read(2) == 0;
}

/// Looks at each unit until one is a slice: `isKey` answers that, or nothing for other units.
template <class IsKey>
std::optional<bool> keyByUnits(Head head, const IsKey& isKey) {
  for (Units units(head); const auto unit = units.next();) {
    if (const auto key = isKey(static_cast<unsigned>(unit->front()))) return key;
  }
  return false;
}

std::optional<bool> isH264Key(Head head) {
  constexpr unsigned kSlice = 1;
  constexpr unsigned kLastPartition = 4;
  constexpr unsigned kKeySlice = 5;
  return keyByUnits(head, [](unsigned first) -> std::optional<bool> {
    const unsigned type = first & 0x1fU;
    if (type == kKeySlice) return true;
    if (type >= kSlice && type <= kLastPartition) return false;
    return std::nullopt;
  });
}

std::optional<bool> isHevcKey(Head head) {
  constexpr unsigned kFirstKey = 16;
  constexpr unsigned kLastKey = 23;
  constexpr unsigned kLastSlice = 31;
  return keyByUnits(head, [](unsigned first) -> std::optional<bool> {
    const unsigned type = first >> 1U & 0x3fU;
    if (type >= kFirstKey && type <= kLastKey) return true;
    if (type <= kLastSlice) return false;
    return std::nullopt;
  });
}

std::optional<bool> isCinepakKey(Head head) {
  constexpr std::size_t kFirstStrip = 10;
  return head.size() > kFirstStrip && head[kFirstStrip] == std::byte{0x10};
}

std::optional<bool> isFfv1Key(Head head) {
  if (head.size() < 2) return std::nullopt;
  return BitReader(head).read(16) >= 0x7f80U;
}

std::optional<bool> isFlv1Key(Head head) {
  if (head.size() < 8) return std::nullopt;
  BitReader bits(head);
  bits.skip(17 + 5 + 8);  // start code, version, temporal reference
  const std::uint32_t size = bits.read(3);
  if (size == 0) bits.skip(16);
  if (size == 1) bits.skip(32);
  return bits.read(2) == 0;
}

std::optional<bool> isSvq1Key(Head head) {
  if (head.size() < 4) return std::nullopt;
  BitReader bits(head);
  bits.skip(22 + 8);  // start code, temporal reference
  return bits.read(2) == 0;
}

std::optional<bool> isVp9Key(Head head) {
  BitReader bits(head);
  const bool isProfile3 = bits.read(4) == 0xb;
  if (isProfile3) bits.skip(1);
  return bits.read(2) == 0;
}

/// A key has no blocks that stay as they were. `isOfWords`: colours of two bytes.
std::optional<bool> isMsVideoKey(Head head, bool isOfWords) {
  std::size_t at = 0;
  while (at + 4 <= head.size()) {
    const auto low = static_cast<unsigned>(head[at]);
    const auto high = static_cast<unsigned>(head[at + 1]);
    if (low == 0 && high == 0) break;  // the end
    if ((high & 0xfcU) == 0x84) return false;
    if (isOfWords) {
      const bool isOfEight = (static_cast<unsigned>(head[at + 3]) & 0x80U) != 0;
      at += high >= 0x80 ? 2 : isOfEight ? 18 : 6;
    } else {
      at += high >= 0x90 ? 10 : high >= 0x80 ? 2 : 4;
    }
  }
  return true;
}

/// The byte with the bit, the first one counted from 0, is there and the bit is zero.
std::optional<bool> isZero(Head head, std::size_t byte, unsigned mask) {
  if (head.size() <= byte) return std::nullopt;
  return (static_cast<unsigned>(head[byte]) & mask) == 0;
}

}  // namespace

std::optional<bool> isKeyPicture(Codec codec, std::span<const std::byte> head) {
  if (head.empty()) return false;
  switch (codec) {
    case Codec::jpeg:
      return head.size() >= 2 && BitReader(head).read(16) == 0xffd8;
    case Codec::rawPicture:
    case Codec::intra:
    case Codec::dv:
      return true;
    case Codec::mpeg4:
      return isMpeg4Key(head);
    case Codec::h264:
      return isH264Key(head);
    case Codec::hevc:
      return isHevcKey(head);
    case Codec::mpegVideo:
      return isMpegVideoKey(head);
    case Codec::msMpeg4v1:
      return isMsMpeg4v1Key(head);
    case Codec::msMpeg4:
      return twoZeroBits(head);
    case Codec::wmv2:
    case Codec::vp3OrVp6:
      return isZero(head, 0, 0x80);
    case Codec::ffv1:
      return isFfv1Key(head);
    case Codec::cinepak:
      return isCinepakKey(head);
    case Codec::flv1:
      return isFlv1Key(head);
    case Codec::h263:
      return isZero(head, 4, 0x02);
    case Codec::msVideo8:
      return isMsVideoKey(head, false);
    case Codec::msVideo16:
      return isMsVideoKey(head, true);
    case Codec::svq1:
      return isSvq1Key(head);
    case Codec::vp9:
      return isVp9Key(head);
    case Codec::vp8:
      return isZero(head, 0, 0x01);
    case Codec::zmbv:
      return !*isZero(head, 0, 0x01);
    default:
      return std::nullopt;
  }
}

}  // namespace zelvo::salvage
