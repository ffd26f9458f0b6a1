/// Which codec a stream's payloads are made by, as far as the repair knows anything of it.
#pragma once

#include <cstdint>

#include "salvage/scan/surviving_headers.h"

namespace zelvo::salvage {

enum class Codec : std::uint8_t {
  unknown,
  // Pictures.
  rawPicture,   ///< RGB or YUV without compression: every picture has one size
  jpeg,         ///< Motion JPEG
  intra,        ///< any other whose pictures are all keys: HuffYUV, PNG, ProRes and the like
  dv,           ///< digital video of a fixed size
  mpeg4,        ///< MPEG-4 part 2
  h264,         ///< with start codes or with lengths
  hevc,         ///< the same
  mpegVideo,    ///< MPEG-1 or MPEG-2
  msMpeg4v1,    ///< Microsoft's first, with start codes
  msMpeg4,      ///< its second and third, and Windows Media Video 7
  wmv2,         ///< Windows Media Video 8
  ffv1,         ///< FFV1
  cinepak,      ///< Cinepak
  flv1,         ///< Sorenson's H.263 of Flash
  h263,         ///< H.263
  svq1,         ///< Sorenson Video 1
  vp8,          ///< VP8
  vp9,          ///< VP9
  vp3OrVp6,     ///< VP3, VP6
  msVideo8,     ///< Microsoft Video 1 with a palette
  msVideo16,    ///< the same with 16 bits a pixel
  msRunLength,  ///< Microsoft RLE
  zmbv,         ///< zipped blocks that moved
  // Sound.
  pcm,       ///< whole samples
  aLaw,      ///< G.711
  muLaw,     ///< G.711
  imaAdpcm,  ///< IMA ADPCM in blocks
  msAdpcm,   ///< Microsoft ADPCM in blocks
  mp3,       ///< MPEG audio layer 3
  mp2,       ///< MPEG audio layer 1 or 2
  ac3,       ///< AC-3
  aac,       ///< raw AAC
  wma,       ///< Windows Media Audio 1 or 2
};

/// By biCompression or fccHandler of a picture's stream, by wFormatTag of a sound's.
/// Thread: any.
[[nodiscard]] Codec codecOf(const SurvivingStream& stream);

/// biWidth, biHeight without its sign, and biBitCount of a picture's format; zeros where it is too short.
struct PictureFormat {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::uint16_t bits = 0;
};
[[nodiscard]] PictureFormat pictureFormat(const SurvivingStream& stream);

/// The front of a WAVEFORMATEX; zeros where it is too short.
struct SoundFormat {
  std::uint16_t tag = 0;             ///< wFormatTag; of an extensible one that of its SubFormat
  std::uint16_t channels = 0;        ///< nChannels
  std::uint32_t samplesPerSec = 0;   ///< nSamplesPerSec
  std::uint32_t avgBytesPerSec = 0;  ///< nAvgBytesPerSec
  std::uint16_t blockAlign = 0;      ///< nBlockAlign: in bytes
  std::uint16_t bitsPerSample = 0;   ///< wBitsPerSample
};
[[nodiscard]] SoundFormat soundFormat(const SurvivingStream& stream);

}  // namespace zelvo::salvage
