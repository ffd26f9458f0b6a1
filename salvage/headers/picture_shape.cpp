#include "salvage/headers/picture_shape.h"

#include <algorithm>
#include <numeric>
#include <span>
#include <string_view>

#include "salvage/headers/marked_pictures.h"
#include "salvage/payloads/bit_reader.h"
#include "salvage/payloads/mpeg4_headers.h"
#include "salvage/payloads/ms_video.h"
#include "salvage/payloads/start_codes.h"

namespace zelvo::salvage {

namespace {

using Payload = std::span<const std::byte>;

template <class Claim>
bool holdsFor(const StreamSample& sample, std::size_t perCent, const Claim& claim) {
  const auto holds = static_cast<std::size_t>(std::ranges::count_if(sample.payloads, claim));
  return !sample.payloads.empty() && holds * 100 >= sample.payloads.size() * perCent;
}

std::uint32_t firstBits(const SampledPayload& payload, unsigned count) { return BitReader(payload.bytes).read(count); }

bool hasCode(const SampledPayload& payload, unsigned type) {
  for (StartCodes codes(payload.bytes); const auto code = codes.next();) {
    if (code->type == type) return true;
  }
  return false;
}

bool beginsMpegVideo(const SampledPayload& payload) {
  const std::uint32_t first = firstBits(payload, 32);
  return first == 0x100 || first == 0x1b3 || first == 0x1b8;
}

bool isMpegVideo(const StreamSample& sample) {
  const auto has = [](unsigned type) {
    return [type](const SampledPayload& payload) { return hasCode(payload, type); };
  };
  return holdsFor(sample, 60, beginsMpegVideo) && std::ranges::any_of(sample.payloads, has(0xb3)) &&
         std::ranges::none_of(sample.payloads, has(0xb6));
}

bool beginsMpeg4(const SampledPayload& payload) {
  const std::uint32_t first = firstBits(payload, 32);
  return first == 0x1b0 || first == 0x1b2 || first == 0x1b3 || first == 0x1b5 || first == 0x1b6 || first == 0x100 ||
         first == 0x120;
}

/// A unit of H.264 that may begin a picture: a slice, or what may stand before one.
bool beginsH264(const SampledPayload& payload) {
  const std::uint32_t start = firstBits(payload, 32);
  const bool hasCode = start == 1 || start >> 8U == 1;
  if (!hasCode && (payload.size < 4 || start > payload.size - 4)) return false;
  Units units(payload.bytes);
  const auto unit = units.next();
  if (!unit) return false;
  const auto first = static_cast<unsigned>(unit->front());
  const unsigned type = first & 0x1fU;
  return (first & 0x80U) == 0 && (type == 1 || (type >= 5 && type <= 9));
}

bool beginsCinepak(const SampledPayload& payload) {
  if (payload.bytes.size() < 12) return false;
  const std::uint32_t length = BitReader(Payload(payload.bytes).subspan(1)).read(24);
  const bool isStrip = payload.bytes[10] == std::byte{0x10} || payload.bytes[10] == std::byte{0x11};
  return isStrip && length <= payload.size && payload.size - length <= 2;
}

/// The first versions of FFV1: the coder begins each key with the same bytes, and the first bit tells keys from others.
bool isFfv1(const StreamSample& sample) {
  constexpr std::uint32_t kFirstKey = 0x7f80;
  std::size_t keys = 0;
  std::uint32_t head = 0;
  for (const SampledPayload& payload : sample.payloads) {
    if (payload.bytes.size() < 4) return false;
    const std::uint32_t first = firstBits(payload, 32);
    if (first >> 16U < kFirstKey) continue;
    if (keys++ == 0) head = first;
    if (first != head) return false;
  }
  return keys >= 2;
}

/// Windows Media Video 8: most pictures are predicted, whose first bit is 1, and a step of quantisation follows, which
/// is never 0; the others begin with a byte of zeros but for its last bits.
bool isWmv2(const StreamSample& sample) {
  std::size_t predicted = 0;
  for (const SampledPayload& payload : sample.payloads) {
    const std::uint32_t first = firstBits(payload, 8);
    const bool isPredicted = first >> 7U == 1;
    if (isPredicted ? (first >> 2U & 31U) == 0 : first > 1) return false;
    predicted += isPredicted ? 1U : 0U;
  }
  return predicted * 2 > sample.payloads.size() && sample.payloads.size() >= 8;
}

/// Of which pictures of Microsoft Video 1 these may be: bits a pixel, and the blocks that a picture has.
struct MsVideoFit {
  unsigned bits = 0;
  std::uint32_t blocks = 0;
};

/// Visits the payloads that were read to their ends.
template <class Visit>
void eachWhole(const StreamSample& sample, const Visit& visit) {
  for (const auto* list : {&sample.payloads, &sample.whole}) {
    for (const SampledPayload& payload : *list) {
      if (payload.size == payload.bytes.size() && payload.size > 0) visit(payload);
    }
  }
}

/// Its instructions end with each payload's last byte, and come to as many blocks in all of them. Bytes of another
/// codec do so in one payload of some, and come to other numbers.
std::optional<MsVideoFit> msVideoFit(const StreamSample& sample) {
  constexpr std::size_t kFewest = 3;
  constexpr std::uint32_t kFewestBlocks = 64;
  for (const unsigned bits : {8U, 16U}) {
    std::vector<std::uint32_t> counts;
    std::size_t wholes = 0;
    eachWhole(sample, [&](const SampledPayload& payload) {
      ++wholes;
      if (const auto count = msVideoCount(payload.bytes, bits)) counts.push_back(count->blocks);
    });
    if (counts.size() < kFewest) continue;
    std::ranges::sort(counts);
    const std::uint32_t usual = counts[counts.size() / 2];
    const auto agree = static_cast<std::size_t>(std::ranges::count(counts, usual));
    if (usual >= kFewestBlocks && agree >= kFewest && agree * 10 >= wholes * 9) return MsVideoFit{bits, usual};
  }
  return std::nullopt;
}

void describeMsVideo(const StreamSample& sample, std::optional<PictureSize> known, PictureShape& shape) {
  const auto fit = msVideoFit(sample);
  if (!fit) return;
  shape.compression = avi::FourCC{"CRAM"};
  shape.bits = static_cast<std::uint16_t>(fit->bits);
  // The fullest picture tells most of the size.
  std::uint32_t fewest = fit->blocks;
  eachWhole(sample, [&](const SampledPayload& payload) {
    const auto count = msVideoCount(payload.bytes, fit->bits);
    if (!count || count->blocks != fit->blocks || count->skipped >= fewest) return;
    fewest = count->skipped;
    shape.size = msVideoSize(payload.bytes, fit->bits, known).value_or(PictureSize{});
  });
}

Codec codecOfPictures(const StreamSample& sample) {
  const auto begins = [](unsigned bits, std::uint32_t value) {
    return [=](const SampledPayload& payload) { return firstBits(payload, bits) == value; };
  };
  if (holdsFor(sample, 80, begins(16, 0xffd8))) return Codec::jpeg;
  if (holdsFor(sample, 80, begins(24, 0x1f0700)) && dvHeader(sample.commonSize())) return Codec::dv;
  if (holdsFor(sample, 80, beginsCinepak)) return Codec::cinepak;
  if (isMpegVideo(sample)) return Codec::mpegVideo;
  if (holdsFor(sample, 80, beginsMpeg4)) return Codec::mpeg4;
  if (holdsFor(sample, 90, beginsH264)) return Codec::h264;
  if (sample.commonSize() != 0) return Codec::rawPicture;
  if (const auto fit = msVideoFit(sample)) return fit->bits == 8 ? Codec::msVideo8 : Codec::msVideo16;
  if (isFfv1(sample)) return Codec::ffv1;
  return isWmv2(sample) ? Codec::wmv2 : Codec::msMpeg4;
}

/// Everything that the payloads hold of these, one after the other.
template <class Header>
std::optional<PictureHeader> firstHeader(const StreamSample& sample, const Header& header) {
  for (const auto* list : {&sample.payloads, &sample.run, &sample.whole}) {
    for (const SampledPayload& payload : *list) {
      if (const auto found = header(Payload(payload.bytes))) return found;
    }
  }
  return std::nullopt;
}

bool holdsText(const StreamSample& sample, std::string_view text) {
  const auto isLetter = [](char letter, std::byte byte) { return static_cast<char>(byte) == letter; };
  return std::ranges::any_of(sample.payloads, [&](const SampledPayload& payload) {
    return std::search(payload.bytes.begin(), payload.bytes.end(), text.begin(), text.end(),
                       [&](std::byte byte, char letter) { return isLetter(letter, byte); }) != payload.bytes.end();
  });
}

/// Decoders choose by this code how they round; the user data names the encoder, and without it Xvid is the commonest.
avi::FourCC mpeg4Code(const StreamSample& sample) {
  if (holdsText(sample, "XviD")) return avi::FourCC{"XVID"};
  if (holdsText(sample, "DivX")) return avi::FourCC{"DX50"};
  if (holdsText(sample, "Lavc")) return avi::FourCC{"FMP4"};
  return avi::FourCC{"XVID"};
}

std::optional<Mpeg4Layer> layerOf(const StreamSample& sample) {
  for (const auto* list : {&sample.payloads, &sample.run, &sample.whole}) {
    for (const SampledPayload& payload : *list) {
      if (const auto layer = mpeg4Layer(payload.bytes)) return layer;
    }
  }
  return std::nullopt;
}

/// The commonest step between the times of pictures that follow one another, in display order.
std::optional<PictureRate> mpeg4Rate(const StreamSample& sample, const Mpeg4Layer& layer) {
  if (layer.increment != 0 && layer.increment < layer.resolution) return PictureRate{layer.resolution, layer.increment};
  std::vector<std::uint32_t> times;
  for (const SampledPayload& payload : sample.run) {
    const auto picture = mpeg4Picture(payload.bytes, layer.resolution);
    if (picture) times.push_back(picture->ticks);
  }
  // Times of several seconds fall on one another, which is as well: the steps between them stay.
  std::ranges::sort(times);
  std::vector<std::uint32_t> steps;
  for (std::size_t i = 1; i < times.size(); ++i) {
    if (times[i] > times[i - 1]) steps.push_back(times[i] - times[i - 1]);
  }
  if (steps.size() < 4) return std::nullopt;
  std::ranges::sort(steps);
  return PictureRate{layer.resolution, steps[steps.size() / 2]};
}

void describeMpeg4(const StreamSample& sample, PictureShape& shape) {
  shape.compression = mpeg4Code(sample);
  const auto layer = layerOf(sample);
  if (!layer) return;
  if (layer->width != 0 && layer->height != 0) shape.size = {layer->width, layer->height};
  shape.rate = mpeg4Rate(sample, *layer);
}

void describeRaw(const StreamSample& sample, std::optional<PictureSize> known, PictureShape& shape) {
  const std::uint32_t size = sample.commonSize();
  const std::uint64_t pixels = known ? std::uint64_t{known->width} * known->height : 0;
  if (pixels != 0 && pixels * 3 == std::uint64_t{size} * 2) {
    shape.compression = avi::FourCC{"I420"};
    shape.size = *known;
    shape.bits = 12;
    return;
  }
  std::vector<Payload> pictures;
  for (const SampledPayload& payload : sample.whole) pictures.emplace_back(payload.bytes);
  std::vector<RawShape> shapes = rawShapes(size, pictures, known);
  if (shapes.empty() && known) shapes = rawShapes(size, pictures, std::nullopt);
  if (shapes.empty()) {
    shape.codec = Codec::unknown;
    return;
  }
  shape.size = shapes.front().size;
  shape.bits = shapes.front().bits;
  if (shapes.front().layout == PixelLayout::yuy2) shape.compression = avi::FourCC{"YUY2"};
  if (shapes.front().layout == PixelLayout::uyvy) shape.compression = avi::FourCC{"UYVY"};
  if (shapes.front().layout == PixelLayout::planar) shape.compression = avi::FourCC{"I420"};
  // "db" is how the system's own functions write pictures, and those stand on their heads; others do not.
  constexpr std::uint32_t kLastLetter = 0x63000000;  // "c"
  shape.isTopDown = (sample.seen.code.value & 0xff000000U) == kLastLetter;
  shape.others.assign(shapes.begin() + 1, shapes.end());
}

void take(const std::optional<PictureHeader>& header, PictureShape& shape) {
  if (!header) return;
  shape.size = header->size;
  shape.rate = header->rate;
}

}  // namespace

std::optional<Codec> codecWithoutMarks(const StreamSample& sample) {
  if (markedPictures(sample)) return std::nullopt;
  const Codec codec = codecOfPictures(sample);
  if (codec == Codec::ffv1 || codec == Codec::wmv2) return codec;
  if (codec != Codec::msMpeg4) return std::nullopt;
  // The first bit of its pictures is 0, whatever their type.
  const auto isLow = [](const SampledPayload& payload) { return firstBits(payload, 1) == 0; };
  return holdsFor(sample, 100, isLow) ? Codec::msMpeg4 : Codec::intra;
}

PictureShape pictureShape(const StreamSample& sample, std::optional<PictureSize> known) {
  PictureShape shape;
  if (const auto marked = markedPictures(sample)) {
    shape.codec = marked->codec;
    shape.compression = marked->compression;
    shape.size = marked->size;
    return shape;
  }
  shape.codec = codecOfPictures(sample);
  switch (shape.codec) {
    case Codec::jpeg:
      shape.compression = avi::FourCC{"MJPG"};
      take(firstHeader(sample, jpegHeader), shape);
      break;
    case Codec::dv:
      shape.compression = avi::FourCC{"dvsd"};
      take(dvHeader(sample.commonSize()), shape);
      break;
    case Codec::cinepak:
      shape.compression = avi::FourCC{"cvid"};
      take(firstHeader(sample, cinepakHeader), shape);
      break;
    case Codec::mpegVideo: {
      constexpr unsigned kExtension = 0xb5;
      const auto isSecond = [](const SampledPayload& payload) { return hasCode(payload, kExtension); };
      shape.compression = std::ranges::any_of(sample.payloads, isSecond) ? avi::FourCC{"mpg2"} : avi::FourCC{"mpg1"};
      take(firstHeader(sample, mpegVideoHeader), shape);
      break;
    }
    case Codec::mpeg4:
      describeMpeg4(sample, shape);
      break;
    case Codec::h264:
      shape.compression = avi::FourCC{"H264"};
      take(firstHeader(sample, h264Header), shape);
      break;
    case Codec::rawPicture:
      describeRaw(sample, known, shape);
      break;
    case Codec::msVideo8:
    case Codec::msVideo16:
      describeMsVideo(sample, known, shape);
      break;
    case Codec::ffv1:
      shape.compression = avi::FourCC{"FFV1"};
      break;
    case Codec::wmv2:
      shape.compression = avi::FourCC{"WMV2"};
      break;
    default:
      shape.compression = avi::FourCC{"MP43"};
      break;
  }
  if (shape.size == PictureSize{} && known) shape.size = *known;
  // Without a size of its own, nothing could be decoded.
  if (shape.size == PictureSize{}) shape.codec = Codec::unknown;
  return shape;
}

}  // namespace zelvo::salvage
