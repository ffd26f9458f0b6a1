#include "salvage/headers/marked_pictures.h"

#include <algorithm>
#include <array>
#include <span>

#include "salvage/payloads/bit_reader.h"
#include "salvage/payloads/marked_headers.h"
#include "salvage/payloads/start_codes.h"

namespace zelvo::salvage {

namespace {

using Front = std::span<const std::byte>;

struct MarkedCodec {
  Codec codec;
  avi::FourCC compression;
  std::optional<PictureHeader> (*header)(Front);
  bool (*isOther)(Front front, std::uint32_t size);  ///< a picture without a header of its own; null: each has one
};

bool isOtherSvq1(Front front, std::uint32_t) {
  BitReader bits(front);
  if (bits.read(22) != 0x20) return false;
  bits.skip(8);
  return bits.read(2) <= 2;
}

bool isOtherVp8(Front front, std::uint32_t size) {
  if (front.size() < 3) return false;
  const std::uint32_t tag = static_cast<std::uint32_t>(front[0]) | static_cast<std::uint32_t>(front[1]) << 8U |
                            static_cast<std::uint32_t>(front[2]) << 16U;
  constexpr std::uint32_t kHighestVersion = 3;
  return (tag & 1U) == 1 && (tag >> 1U & 7U) <= kHighestVersion && (tag >> 5U) + 3 <= size;
}

bool isOtherVp9(Front front, std::uint32_t) { return BitReader(front).read(3) == 4; }

/// Its first unit is of a type that exists, of the base layer.
bool isOtherHevc(Front front, std::uint32_t) {
  Units units(front);
  const auto unit = units.next();
  if (!unit || unit->size() < 2) return false;
  BitReader bits(*unit);
  if (bits.read(1) != 0) return false;
  const std::uint32_t type = bits.read(6);
  const bool isSlice = type <= 9 || (type >= 16 && type <= 21);
  const bool isBeside = type >= 32 && type <= 40;
  return (isSlice || isBeside) && bits.read(6) == 0 && bits.read(3) > 0;
}

// Where two would do, the first one is it.
constexpr std::array kMarkedCodecs = {
    MarkedCodec{Codec::intra, avi::FourCC{"apcn"}, proResHeader, nullptr},
    MarkedCodec{Codec::intra, avi::FourCC{"AVdn"}, dnxhdHeader, nullptr},
    MarkedCodec{Codec::intra, avi::FourCC{"MJ2C"}, jpeg2000Header, nullptr},
    MarkedCodec{Codec::intra, avi::FourCC{"MPNG"}, pngHeader, nullptr},
    MarkedCodec{Codec::intra, avi::FourCC{"MAGY"}, magicYuvHeader, nullptr},
    MarkedCodec{Codec::h263, avi::FourCC{"H263"}, h263Header, nullptr},
    MarkedCodec{Codec::svq1, avi::FourCC{"SVQ1"}, svq1Header, isOtherSvq1},
    MarkedCodec{Codec::flv1, avi::FourCC{"FLV1"}, flv1Header, nullptr},
    MarkedCodec{Codec::vp8, avi::FourCC{"VP80"}, vp8Header, isOtherVp8},
    MarkedCodec{Codec::vp9, avi::FourCC{"VP90"}, vp9Header, isOtherVp9},
    MarkedCodec{Codec::hevc, avi::FourCC{"HEVC"}, hevcHeader, isOtherHevc},
};

/// The size that the marks of most pictures tell.
std::optional<PictureSize> sizeBy(const MarkedCodec& codec, const StreamSample& sample) {
  constexpr std::size_t kPercent = 90;
  std::optional<PictureSize> size;
  std::size_t marked = 0;
  std::size_t all = 0;
  const auto look = [&](const SampledPayload& payload) {
    const auto header = codec.header(payload.bytes);
    if (header && !size) size = header->size;
    return header && header->size == *size;
  };
  for (const SampledPayload& payload : sample.payloads) {
    ++all;
    const bool isMarked = look(payload);
    if (isMarked || (codec.isOther != nullptr && codec.isOther(payload.bytes, payload.size))) ++marked;
  }
  if (all == 0 || marked * 100 < all * kPercent) return std::nullopt;
  // Keys may be few.
  for (const auto* list : {&sample.whole, &sample.run}) {
    for (const SampledPayload& payload : *list) {
      if (!size) static_cast<void>(look(payload));
    }
  }
  return size;
}

}  // namespace

std::optional<MarkedPictures> markedPictures(const StreamSample& sample) {
  for (const MarkedCodec& codec : kMarkedCodecs) {
    if (const auto size = sizeBy(codec, sample)) return MarkedPictures{codec.codec, codec.compression, *size};
  }
  return std::nullopt;
}

}  // namespace zelvo::salvage
