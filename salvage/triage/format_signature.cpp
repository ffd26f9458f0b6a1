#include "salvage/triage/format_signature.h"

#include <algorithm>
#include <array>

namespace zelvo::salvage {

namespace {

struct FormatSignature {
  std::size_t offset = 0;
  std::string_view bytes;
  std::string_view name;
};

using namespace std::string_view_literals;

/// Longer ones before those that they begin with.
constexpr std::array kFormatSignatures = {
    FormatSignature{4, "ftypqt"sv, "QuickTime film"},
    FormatSignature{4, "ftyp"sv, "MP4 film"},
    FormatSignature{4, "moov"sv, "QuickTime film"},
    FormatSignature{4, "mdat"sv, "QuickTime film"},
    FormatSignature{0, "\x1a\x45\xdf\xa3"sv, "Matroska or WebM film"},
    FormatSignature{0, "\x30\x26\xb2\x75\x8e\x66\xcf\x11"sv, "Windows Media film"},
    FormatSignature{0, "FLV\x01"sv, "Flash film"},
    FormatSignature{0, ".RMF"sv, "RealMedia film"},
    FormatSignature{0, "\x00\x00\x01\xba"sv, "MPEG film"},
    FormatSignature{0, "\x00\x00\x01\xb3"sv, "MPEG video stream"},
    FormatSignature{0, "\x06\x0e\x2b\x34"sv, "MXF film"},
    FormatSignature{8, "WAVEfmt"sv, "WAVE sound"},
    FormatSignature{8, "WEBP"sv, "WebP picture"},
    FormatSignature{0, "fLaC"sv, "FLAC sound"},
    FormatSignature{0, "OggS"sv, "Ogg file"},
    FormatSignature{0, "ID3"sv, "MP3 sound"},
    FormatSignature{0, "\xff\xd8\xff"sv, "JPEG picture"},
    FormatSignature{0, "\x89PNG\r\n\x1a\n"sv, "PNG picture"},
    FormatSignature{0, "GIF8"sv, "GIF picture"},
    FormatSignature{0, "II*\0"sv, "TIFF or raw picture"},
    FormatSignature{0, "MM\0*"sv, "TIFF or raw picture"},
    FormatSignature{0, "%PDF-"sv, "PDF document"},
    FormatSignature{0, "PK\x03\x04"sv, "ZIP archive or office document"},
    FormatSignature{0, "\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1"sv, "office document"},
    FormatSignature{0, "7z\xbc\xaf\x27\x1c"sv, "7-Zip archive"},
    FormatSignature{0, "Rar!\x1a\x07"sv, "RAR archive"},
    FormatSignature{0,
                    "\xfd"
                    "7zXZ\0"sv,
                    "XZ archive"},
    FormatSignature{0, "\x28\xb5\x2f\xfd"sv, "Zstandard archive"},
    FormatSignature{0, "\x1f\x8b\x08"sv, "gzip archive"},
    FormatSignature{0, "BZh"sv, "bzip2 archive"},
    FormatSignature{0, "SQLite format 3\0"sv, "SQLite database"},
    FormatSignature{0,
                    "\x7f"
                    "ELF"sv,
                    "program"},
    FormatSignature{0, "LUKS\xba\xbe"sv, "encrypted disk"},
    FormatSignature{3, "NTFS    "sv, "image of an NTFS disk"},
};

constexpr std::size_t kTransportPacket = 188;

bool isTransportStream(std::span<const std::byte> front) {
  constexpr std::byte kSync{0x47};
  return front.size() > 2 * kTransportPacket && front[0] == kSync && front[kTransportPacket] == kSync &&
         front[2 * kTransportPacket] == kSync;
}

}  // namespace

std::string_view formatBySignature(std::span<const std::byte> front) {
  for (const FormatSignature& signature : kFormatSignatures) {
    if (front.size() < signature.offset + signature.bytes.size()) continue;
    const bool isIt =
        std::ranges::equal(front.subspan(signature.offset, signature.bytes.size()), signature.bytes,
                           [](std::byte one, char other) { return one == static_cast<std::byte>(other); });
    if (isIt) return signature.name;
  }
  return isTransportStream(front) ? "MPEG transport stream" : "";
}

}  // namespace zelvo::salvage
