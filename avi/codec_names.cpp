#include "avi/codec_names.h"

#include <algorithm>
#include <array>
#include <string>

#include "avi/byte_order.h"

namespace zelvo::avi {

namespace {

struct AudioFormat {
  std::uint32_t tag;
  std::string_view name;
};

constexpr std::uint32_t kExtensible = 0xfffe;
constexpr std::size_t kSubFormat = 24;  // of WAVEFORMATEXTENSIBLE; its first two bytes are a tag of the same list

constexpr std::array kAudioFormats = {
    AudioFormat{0x0001, "PCM"},      AudioFormat{0x0002, "Microsoft ADPCM"}, AudioFormat{0x0003, "IEEE float PCM"},
    AudioFormat{0x0006, "A-law"},    AudioFormat{0x0007, "mu-law"},          AudioFormat{0x0011, "IMA ADPCM"},
    AudioFormat{0x0031, "GSM 6.10"}, AudioFormat{0x0050, "MPEG layer 1/2"},  AudioFormat{0x0055, "MP3"},
    AudioFormat{0x00ff, "AAC"},      AudioFormat{0x0160, "WMA 1"},           AudioFormat{0x0161, "WMA 2"},
    AudioFormat{0x0162, "WMA Pro"},  AudioFormat{0x1602, "AAC LATM"},        AudioFormat{0x2000, "AC-3"},
    AudioFormat{0x2001, "DTS"},      AudioFormat{0x566f, "Vorbis"},          AudioFormat{0x706d, "AAC"},
    AudioFormat{0xf1ac, "FLAC"},     AudioFormat{kExtensible, "extensible"},
};

struct VideoCodec {
  std::string_view code;  ///< in capitals
  std::string_view name;
};

constexpr std::array kVideoCodecs = {
    VideoCodec{"FMP4", "MPEG-4"},
    VideoCodec{"MP4V", "MPEG-4"},
    VideoCodec{"MP4S", "MPEG-4"},
    VideoCodec{"M4S2", "MPEG-4"},
    VideoCodec{"RMP4", "MPEG-4"},
    VideoCodec{"UMP4", "MPEG-4"},
    VideoCodec{"3IV2", "MPEG-4"},
    VideoCodec{"DIVX", "MPEG-4 (DivX)"},
    VideoCodec{"DX50", "MPEG-4 (DivX)"},
    VideoCodec{"XVID", "MPEG-4 (Xvid)"},
    VideoCodec{"DIV3", "DivX 3"},
    VideoCodec{"DIV4", "DivX 3"},
    VideoCodec{"DIV5", "DivX 3"},
    VideoCodec{"MP43", "DivX 3"},
    VideoCodec{"MPG3", "DivX 3"},
    VideoCodec{"MP42", "MS MPEG-4"},
    VideoCodec{"DIV2", "MS MPEG-4"},
    VideoCodec{"MPG4", "MS MPEG-4"},
    VideoCodec{"MP41", "MS MPEG-4"},
    VideoCodec{"MJPG", "Motion JPEG"},
    VideoCodec{"AVRN", "Motion JPEG"},
    VideoCodec{"JPEG", "Motion JPEG"},
    VideoCodec{"MJ2C", "Motion JPEG 2000"},
    VideoCodec{"H264", "H.264"},
    VideoCodec{"X264", "H.264"},
    VideoCodec{"AVC1", "H.264"},
    VideoCodec{"DAVC", "H.264"},
    VideoCodec{"VSSH", "H.264"},
    VideoCodec{"HEVC", "H.265"},
    VideoCodec{"H265", "H.265"},
    VideoCodec{"HVC1", "H.265"},
    VideoCodec{"X265", "H.265"},
    VideoCodec{"AV01", "AV1"},
    VideoCodec{"DVSD", "DV"},
    VideoCodec{"DVSL", "DV"},
    VideoCodec{"DVHD", "DV"},
    VideoCodec{"DV25", "DV"},
    VideoCodec{"DV50", "DV"},
    VideoCodec{"DVCS", "DV"},
    VideoCodec{"MPG1", "MPEG-1"},
    VideoCodec{"MPEG", "MPEG-1"},
    VideoCodec{"MPG2", "MPEG-2"},
    VideoCodec{"H261", "H.261"},
    VideoCodec{"H263", "H.263"},
    VideoCodec{"I263", "H.263"},
    VideoCodec{"U263", "H.263"},
    VideoCodec{"FLV1", "Flash video"},
    VideoCodec{"WMV1", "Windows Media 7"},
    VideoCodec{"WMV2", "Windows Media 8"},
    VideoCodec{"WMV3", "Windows Media 9"},
    VideoCodec{"WVC1", "VC-1"},
    VideoCodec{"VP60", "VP6"},
    VideoCodec{"VP61", "VP6"},
    VideoCodec{"VP62", "VP6"},
    VideoCodec{"VP31", "VP3"},
    VideoCodec{"VP80", "VP8"},
    VideoCodec{"VP90", "VP9"},
    VideoCodec{"THEO", "Theora"},
    VideoCodec{"CVID", "Cinepak"},
    VideoCodec{"IV31", "Indeo 3"},
    VideoCodec{"IV32", "Indeo 3"},
    VideoCodec{"IV41", "Indeo 4"},
    VideoCodec{"IV50", "Indeo 5"},
    VideoCodec{"MSVC", "Microsoft Video 1"},
    VideoCodec{"CRAM", "Microsoft Video 1"},
    VideoCodec{"MRLE", "Microsoft RLE"},
    VideoCodec{"HFYU", "HuffYUV"},
    VideoCodec{"FFVH", "HuffYUV"},
    VideoCodec{"FFV1", "FFV1"},
    VideoCodec{"LAGS", "Lagarith"},
    VideoCodec{"TSCC", "TechSmith"},
    VideoCodec{"DIB ", "uncompressed"},
    VideoCodec{"YUY2", "uncompressed"},
    VideoCodec{"UYVY", "uncompressed"},
    VideoCodec{"I420", "uncompressed"},
    VideoCodec{"IYUV", "uncompressed"},
    VideoCodec{"YV12", "uncompressed"},
};

std::uint32_t tagAt(std::span<const std::byte> format, std::size_t offset) {
  return loadLittleEndian16(format.subspan(offset).first<2>());
}

char capital(std::byte byte) {
  const auto one = static_cast<char>(byte);
  return one >= 'a' && one <= 'z' ? static_cast<char>(one - 'a' + 'A') : one;
}

}  // namespace

std::string_view audioFormatName(std::uint32_t formatTag) {
  for (const AudioFormat& format : kAudioFormats) {
    if (format.tag == formatTag) return format.name;
  }
  return {};
}

std::string_view audioFormatName(std::span<const std::byte> format) {
  if (format.size() < 2) return {};
  const std::uint32_t tag = tagAt(format, 0);
  if (tag != kExtensible) return audioFormatName(tag);
  return format.size() < kSubFormat + 2 ? std::string_view{} : audioFormatName(tagAt(format, kSubFormat));
}

std::string_view videoCodecName(std::span<const std::byte> code) {
  if (code.size() != 4) return {};
  std::string capitals;
  for (const std::byte one : code) capitals += capital(one);
  const auto* const found = std::find_if(kVideoCodecs.begin(), kVideoCodecs.end(),
                                         [&](const VideoCodec& one) { return one.code == capitals; });
  return found == kVideoCodecs.end() ? std::string_view{} : found->name;
}

}  // namespace zelvo::avi
