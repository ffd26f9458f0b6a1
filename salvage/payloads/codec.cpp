#include "salvage/payloads/codec.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <string_view>

#include "avi/byte_order.h"

namespace zelvo::salvage {

namespace {

struct PictureCode {
  std::string_view code;  ///< in capitals
  Codec codec;
};

constexpr std::array kPictureCodes = {
    PictureCode{"FMP4", Codec::mpeg4},       PictureCode{"MP4V", Codec::mpeg4},
    PictureCode{"MP4S", Codec::mpeg4},       PictureCode{"M4S2", Codec::mpeg4},
    PictureCode{"RMP4", Codec::mpeg4},       PictureCode{"UMP4", Codec::mpeg4},
    PictureCode{"3IV2", Codec::mpeg4},       PictureCode{"3IVX", Codec::mpeg4},
    PictureCode{"DIVX", Codec::mpeg4},       PictureCode{"DX50", Codec::mpeg4},
    PictureCode{"XVID", Codec::mpeg4},       PictureCode{"XVIX", Codec::mpeg4},
    PictureCode{"SEDG", Codec::mpeg4},       PictureCode{"WV1F", Codec::mpeg4},
    PictureCode{"BLZ0", Codec::mpeg4},       PictureCode{"DXGM", Codec::mpeg4},
    PictureCode{"GEOX", Codec::mpeg4},       PictureCode{"SMP4", Codec::mpeg4},
    PictureCode{"DIV3", Codec::msMpeg4},     PictureCode{"DIV4", Codec::msMpeg4},
    PictureCode{"DIV5", Codec::msMpeg4},     PictureCode{"DIV6", Codec::msMpeg4},
    PictureCode{"MP43", Codec::msMpeg4},     PictureCode{"MPG3", Codec::msMpeg4},
    PictureCode{"MP42", Codec::msMpeg4},     PictureCode{"DIV2", Codec::msMpeg4},
    PictureCode{"COL0", Codec::msMpeg4},     PictureCode{"COL1", Codec::msMpeg4},
    PictureCode{"AP41", Codec::msMpeg4},     PictureCode{"DVX3", Codec::msMpeg4},
    PictureCode{"WMV1", Codec::msMpeg4},     PictureCode{"MPG4", Codec::msMpeg4v1},
    PictureCode{"MP41", Codec::msMpeg4v1},   PictureCode{"DIV1", Codec::msMpeg4v1},
    PictureCode{"WMV2", Codec::wmv2},        PictureCode{"MJPG", Codec::jpeg},
    PictureCode{"AVRN", Codec::jpeg},        PictureCode{"JPEG", Codec::jpeg},
    PictureCode{"JPGL", Codec::jpeg},        PictureCode{"DMB1", Codec::jpeg},
    PictureCode{"LJPG", Codec::jpeg},        PictureCode{"H264", Codec::h264},
    PictureCode{"X264", Codec::h264},        PictureCode{"AVC1", Codec::h264},
    PictureCode{"DAVC", Codec::h264},        PictureCode{"VSSH", Codec::h264},
    PictureCode{"HEVC", Codec::hevc},        PictureCode{"H265", Codec::hevc},
    PictureCode{"HVC1", Codec::hevc},        PictureCode{"X265", Codec::hevc},
    PictureCode{"HEV1", Codec::hevc},        PictureCode{"DVSD", Codec::dv},
    PictureCode{"DVSL", Codec::dv},          PictureCode{"DVHD", Codec::dv},
    PictureCode{"DV25", Codec::dv},          PictureCode{"DV50", Codec::dv},
    PictureCode{"DVCS", Codec::dv},          PictureCode{"CDVC", Codec::dv},
    PictureCode{"DVIS", Codec::dv},          PictureCode{"MPG1", Codec::mpegVideo},
    PictureCode{"MPEG", Codec::mpegVideo},   PictureCode{"MPG2", Codec::mpegVideo},
    PictureCode{"PIM1", Codec::mpegVideo},   PictureCode{"EM2V", Codec::mpegVideo},
    PictureCode{"M2V1", Codec::mpegVideo},   PictureCode{"FFV1", Codec::ffv1},
    PictureCode{"CVID", Codec::cinepak},     PictureCode{"FLV1", Codec::flv1},
    PictureCode{"S263", Codec::h263},        PictureCode{"H263", Codec::h263},
    PictureCode{"I263", Codec::h263},        PictureCode{"U263", Codec::h263},
    PictureCode{"VIV1", Codec::h263},        PictureCode{"VP80", Codec::vp8},
    PictureCode{"SVQ1", Codec::svq1},        PictureCode{"VP90", Codec::vp9},
    PictureCode{"MAGY", Codec::intra},       PictureCode{"M8RG", Codec::intra},
    PictureCode{"M8RA", Codec::intra},       PictureCode{"M8G0", Codec::intra},
    PictureCode{"M8Y0", Codec::intra},       PictureCode{"M8Y2", Codec::intra},
    PictureCode{"M8Y4", Codec::intra},       PictureCode{"M8YA", Codec::intra},
    PictureCode{"VP30", Codec::vp3OrVp6},    PictureCode{"VP31", Codec::vp3OrVp6},
    PictureCode{"VP60", Codec::vp3OrVp6},    PictureCode{"VP61", Codec::vp3OrVp6},
    PictureCode{"VP62", Codec::vp3OrVp6},    PictureCode{"MSVC", Codec::msVideo8},
    PictureCode{"CRAM", Codec::msVideo8},    PictureCode{"WHAM", Codec::msVideo8},
    PictureCode{"MRLE", Codec::msRunLength}, PictureCode{"RLE8", Codec::msRunLength},
    PictureCode{"HFYU", Codec::intra},       PictureCode{"FFVH", Codec::intra},
    PictureCode{"MPNG", Codec::intra},       PictureCode{"PNG1", Codec::intra},
    PictureCode{"MJ2C", Codec::intra},       PictureCode{"MJP2", Codec::intra},
    PictureCode{"LJ2C", Codec::intra},       PictureCode{"APCN", Codec::intra},
    PictureCode{"APCH", Codec::intra},       PictureCode{"APCS", Codec::intra},
    PictureCode{"APCO", Codec::intra},       PictureCode{"AVDN", Codec::intra},
    PictureCode{"ULRG", Codec::intra},       PictureCode{"ULRA", Codec::intra},
    PictureCode{"ULY0", Codec::intra},       PictureCode{"ULY2", Codec::intra},
    PictureCode{"ULY4", Codec::intra},       PictureCode{"ULH0", Codec::intra},
    PictureCode{"ULH2", Codec::intra},       PictureCode{"LAGS", Codec::intra},
    PictureCode{"ASV1", Codec::intra},       PictureCode{"ASV2", Codec::intra},
    PictureCode{"VYUY", Codec::rawPicture},  PictureCode{"UYVY", Codec::rawPicture},
    PictureCode{"YUY2", Codec::rawPicture},  PictureCode{"YUYV", Codec::rawPicture},
    PictureCode{"YVYU", Codec::rawPicture},  PictureCode{"I420", Codec::rawPicture},
    PictureCode{"IYUV", Codec::rawPicture},  PictureCode{"YV12", Codec::rawPicture},
    PictureCode{"NV12", Codec::rawPicture},  PictureCode{"Y800", Codec::rawPicture},
    PictureCode{"RGB ", Codec::rawPicture},  PictureCode{"DIB ", Codec::rawPicture},
    PictureCode{"RAW ", Codec::rawPicture},  PictureCode{"V210", Codec::rawPicture},
    PictureCode{"Y41P", Codec::rawPicture},  PictureCode{"ZMBV", Codec::zmbv},
};

std::optional<Codec> pictureCodec(avi::FourCC code) {
  const auto bytes = code.bytes();
  const auto isSame = [&](const PictureCode& one) {
    return std::ranges::equal(one.code, bytes, [](char letter, std::byte byte) {
      const auto c = static_cast<char>(byte);
      return letter == (c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c);
    });
  };
  const auto found = std::ranges::find_if(kPictureCodes, isSame);
  if (found == kPictureCodes.end()) return std::nullopt;
  return found->codec;
}

Codec pictureCodecOf(const SurvivingStream& stream) {
  constexpr std::size_t kCompression = 16;
  std::uint32_t compression = 0;
  if (stream.format.size() >= kCompression + 4) {
    const avi::FourCC code = avi::FourCC::at(std::span(stream.format).subspan(kCompression));
    if (const auto known = pictureCodec(code)) {
      return *known == Codec::msVideo8 && pictureFormat(stream).bits == 16 ? Codec::msVideo16 : *known;
    }
    compression = code.value;
    if (compression == 1 || compression == 2) return Codec::msRunLength;  // BI_RLE8, BI_RLE4
    if (compression == 0 || compression == 3) return Codec::rawPicture;   // BI_RGB, BI_BITFIELDS
  }
  return pictureCodec(stream.handler).value_or(Codec::unknown);
}

Codec soundCodecOf(std::uint16_t tag) {
  switch (tag) {
    case 0x0001:
    case 0x0003:
      return Codec::pcm;
    case 0x0002:
      return Codec::msAdpcm;
    case 0x0006:
      return Codec::aLaw;
    case 0x0007:
      return Codec::muLaw;
    case 0x0011:
      return Codec::imaAdpcm;
    case 0x0050:
      return Codec::mp2;
    case 0x0055:
      return Codec::mp3;
    case 0x00ff:
    case 0x706d:
      return Codec::aac;
    case 0x0160:
    case 0x0161:
      return Codec::wma;
    case 0x2000:
      return Codec::ac3;
    default:
      return Codec::unknown;
  }
}

}  // namespace

Codec codecOf(const SurvivingStream& stream) {
  if (stream.type == avi::kVids) return pictureCodecOf(stream);
  if (stream.type == avi::kAuds) return soundCodecOf(soundFormat(stream).tag);
  return stream.type == avi::FourCC{"iavs"} ? Codec::dv : Codec::unknown;
}

PictureFormat pictureFormat(const SurvivingStream& stream) {
  if (stream.type != avi::kVids || stream.format.size() < 16) return {};
  const std::span<const std::byte> bytes = stream.format;
  const std::uint32_t height = avi::loadLittleEndian32(bytes.subspan<8, 4>());
  return {.width = avi::loadLittleEndian32(bytes.subspan<4, 4>()),
          .height = (height & 0x80000000U) != 0 ? ~height + 1 : height,
          .bits = avi::loadLittleEndian16(bytes.subspan<14, 2>())};
}

SoundFormat soundFormat(const SurvivingStream& stream) {
  constexpr std::uint16_t kExtensible = 0xfffe;
  constexpr std::size_t kSubFormat = 24;
  if (stream.type != avi::kAuds || stream.format.size() < 14) return {};
  const std::span<const std::byte> bytes = stream.format;
  SoundFormat format{.tag = avi::loadLittleEndian16(bytes.subspan<0, 2>()),
                     .channels = avi::loadLittleEndian16(bytes.subspan<2, 2>()),
                     .samplesPerSec = avi::loadLittleEndian32(bytes.subspan<4, 4>()),
                     .avgBytesPerSec = avi::loadLittleEndian32(bytes.subspan<8, 4>()),
                     .blockAlign = avi::loadLittleEndian16(bytes.subspan<12, 2>()),
                     .bitsPerSample = 0};
  if (bytes.size() >= 16) format.bitsPerSample = avi::loadLittleEndian16(bytes.subspan<14, 2>());
  if (format.tag == kExtensible && bytes.size() >= kSubFormat + 2)
    format.tag = avi::loadLittleEndian16(bytes.subspan<kSubFormat, 2>());
  return format;
}

}  // namespace zelvo::salvage
