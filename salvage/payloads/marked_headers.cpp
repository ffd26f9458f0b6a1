#include "salvage/payloads/marked_headers.h"

#include <array>
#include <cstdint>

#include "avi/byte_order.h"
#include "salvage/payloads/bit_reader.h"

namespace zelvo::salvage {

namespace {

using MarkedPayload = std::span<const std::byte>;

/// What begins each picture of H.263 and its relatives.
constexpr unsigned kShortStartBits = 17;

std::uint32_t twoBytes(MarkedPayload bytes, std::size_t at) { return BitReader(bytes.subspan(at)).read(16); }

std::optional<PictureHeader> headerOfSize(std::uint32_t width, std::uint32_t height) {
  const PictureSize size{width, height};
  if (!isPlausible(size)) return std::nullopt;
  return PictureHeader{size, std::nullopt};
}

}  // namespace

std::optional<PictureHeader> flv1Header(MarkedPayload payload) {
  constexpr std::array<PictureSize, 5> kSizes{PictureSize{352, 288}, PictureSize{176, 144}, PictureSize{128, 96},
                                              PictureSize{320, 240}, PictureSize{160, 120}};
  BitReader bits(payload);
  if (bits.read(kShortStartBits) != 1 || bits.read(5) > 1) return std::nullopt;
  bits.skip(8);  // temporal reference
  const std::uint32_t code = bits.read(3);
  if (code < 2) {
    const unsigned length = code == 0 ? 8 : 16;
    const std::uint32_t width = bits.read(length);
    const std::uint32_t height = bits.read(length);
    return bits.isPastEnd() ? std::nullopt : headerOfSize(width, height);
  }
  if (code - 2 >= kSizes.size()) return std::nullopt;
  return PictureHeader{kSizes[code - 2], std::nullopt};
}

std::optional<PictureHeader> h263Header(MarkedPayload payload) {
  constexpr std::array<PictureSize, 5> kSizes{PictureSize{128, 96}, PictureSize{176, 144}, PictureSize{352, 288},
                                              PictureSize{704, 576}, PictureSize{1408, 1152}};
  BitReader bits(payload);
  if (bits.read(kShortStartBits) != 1 || bits.read(5) != 0) return std::nullopt;
  bits.skip(8);  // TR
  if (bits.read(2) != 2) return std::nullopt;
  bits.skip(3);
  const std::uint32_t format = bits.read(3);
  if (format == 0 || format > kSizes.size()) return std::nullopt;
  return PictureHeader{kSizes[format - 1], std::nullopt};
}

std::optional<PictureHeader> svq1Header(MarkedPayload payload) {
  constexpr std::array<PictureSize, 7> kSizes{PictureSize{160, 120}, PictureSize{128, 96},  PictureSize{176, 144},
                                              PictureSize{352, 288}, PictureSize{704, 576}, PictureSize{240, 180},
                                              PictureSize{320, 240}};
  BitReader bits(payload);
  if (bits.read(kShortStartBits) != 1 || bits.read(5) != 0) return std::nullopt;
  bits.skip(8);  // temporal reference
  if (bits.read(2) != 0) return std::nullopt;
  bits.skip(5);
  const std::uint32_t code = bits.read(3);
  if (code < kSizes.size()) return PictureHeader{kSizes[code], std::nullopt};
  const std::uint32_t width = bits.read(12);
  const std::uint32_t height = bits.read(12);
  return bits.isPastEnd() ? std::nullopt : headerOfSize(width, height);
}

std::optional<PictureHeader> vp8Header(MarkedPayload payload) {
  constexpr std::uint32_t kMark = 0x9d012a;
  if (payload.size() < 10 || (static_cast<unsigned>(payload[0]) & 1U) != 0) return std::nullopt;
  if (BitReader(payload.subspan(3)).read(24) != kMark) return std::nullopt;
  // The two highest bits scale what is shown.
  constexpr std::uint32_t kBits = 0x3fff;
  const auto little16 = [&](std::size_t at) {
    return static_cast<std::uint32_t>(payload[at]) | static_cast<std::uint32_t>(payload[at + 1]) << 8U;
  };
  return headerOfSize(little16(6) & kBits, little16(8) & kBits);
}

std::optional<PictureHeader> vp9Header(MarkedPayload payload) {
  constexpr std::uint32_t kMark = 0x498342;
  BitReader bits(payload);
  if (bits.read(4) != 0x8 || bits.read(2) != 0) return std::nullopt;  // marker and profile; shown before, or no key
  bits.skip(2);
  if (bits.read(24) != kMark) return std::nullopt;
  bits.skip(4);  // colours
  const std::uint32_t width = bits.read(16) + 1;
  const std::uint32_t height = bits.read(16) + 1;
  return bits.isPastEnd() ? std::nullopt : headerOfSize(width, height);
}

std::optional<PictureHeader> proResHeader(MarkedPayload payload) {
  constexpr std::uint32_t kMark = 0x69637066;  // "icpf"
  if (payload.size() < 20 || BitReader(payload.subspan(4)).read(32) != kMark) return std::nullopt;
  return headerOfSize(twoBytes(payload, 16), twoBytes(payload, 18));
}

std::optional<PictureHeader> dnxhdHeader(MarkedPayload payload) {
  constexpr std::size_t kHeight = 24;
  constexpr std::size_t kWidth = 26;
  if (payload.size() < 28 || BitReader(payload).read(24) != 2 || payload[3] != std::byte{0x80}) return std::nullopt;
  const bool isOfFields = (static_cast<unsigned>(payload[5]) & 2U) != 0;
  return headerOfSize(twoBytes(payload, kWidth), twoBytes(payload, kHeight) * (isOfFields ? 2U : 1U));
}

std::optional<PictureHeader> jpeg2000Header(MarkedPayload payload) {
  constexpr std::uint32_t kStart = 0xff4fff51;
  constexpr std::size_t kFarthest = 512;
  constexpr std::size_t kSizes = 8;
  for (std::size_t at = 0; at < kFarthest && at + kSizes + 16 <= payload.size(); ++at) {
    BitReader bits(payload.subspan(at));
    if (bits.read(32) != kStart) continue;
    bits.skip(32);  // Lsiz, Rsiz
    const std::uint32_t right = bits.read(32);
    const std::uint32_t bottom = bits.read(32);
    const std::uint32_t left = bits.read(32);
    const std::uint32_t top = bits.read(32);
    return left < right && top < bottom ? headerOfSize(right - left, bottom - top) : std::nullopt;
  }
  return std::nullopt;
}

std::optional<PictureHeader> pngHeader(MarkedPayload payload) {
  constexpr std::uint32_t kMark = 0x89504e47;
  if (payload.size() < 24 || BitReader(payload).read(32) != kMark) return std::nullopt;
  BitReader bits(payload.subspan(16));
  const std::uint32_t width = bits.read(32);
  return headerOfSize(width, bits.read(32));
}

std::optional<PictureHeader> magicYuvHeader(MarkedPayload payload) {
  constexpr std::uint32_t kMark = 0x4d414759;  // "MAGY"
  if (payload.size() < 24 || BitReader(payload).read(32) != kMark) return std::nullopt;
  return headerOfSize(avi::loadLittleEndian32(payload.subspan<16, 4>()),
                      avi::loadLittleEndian32(payload.subspan<20, 4>()));
}

}  // namespace zelvo::salvage
