#include "cli/codec_names.h"

#include <array>

namespace zelvo::cli {

namespace {

struct AudioFormat {
  std::uint32_t tag;
  std::string_view name;
};

constexpr std::array kAudioFormats = {
    AudioFormat{0x0001, "PCM"},      AudioFormat{0x0002, "Microsoft ADPCM"}, AudioFormat{0x0003, "IEEE float PCM"},
    AudioFormat{0x0006, "A-law"},    AudioFormat{0x0007, "mu-law"},          AudioFormat{0x0011, "IMA ADPCM"},
    AudioFormat{0x0031, "GSM 6.10"}, AudioFormat{0x0050, "MPEG layer 1/2"},  AudioFormat{0x0055, "MP3"},
    AudioFormat{0x00ff, "AAC"},      AudioFormat{0x0160, "WMA 1"},           AudioFormat{0x0161, "WMA 2"},
    AudioFormat{0x0162, "WMA Pro"},  AudioFormat{0x1602, "AAC LATM"},        AudioFormat{0x2000, "AC-3"},
    AudioFormat{0x2001, "DTS"},      AudioFormat{0x566f, "Vorbis"},          AudioFormat{0x706d, "AAC"},
    AudioFormat{0xf1ac, "FLAC"},     AudioFormat{0xfffe, "extensible"},
};

}  // namespace

std::string_view audioFormatName(std::uint32_t formatTag) {
  for (const AudioFormat& format : kAudioFormats) {
    if (format.tag == formatTag) return format.name;
  }
  return {};
}

}  // namespace zelvo::cli
