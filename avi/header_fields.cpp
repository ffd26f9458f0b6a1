// One table per kind of header; decoding walks the table.
#include "avi/header_fields.h"

#include <algorithm>
#include <array>
#include <optional>

#include "avi/byte_order.h"
#include "avi/chunk_codes.h"
#include "avi/codec_names.h"
#include "avi/codec_text.h"

namespace zelvo::avi {

namespace {

enum class Kind { number, signedNumber, flags, code };

struct FieldLayout {
  std::string_view name;
  std::size_t offset;
  std::size_t width;  ///< 1, 2, 4 or 8 bytes
  Kind kind = Kind::number;
  Unit unit = Unit::none;
};

struct FlagName {
  std::uint64_t bit;
  std::string_view name;
};

// AVIMAINHEADER
constexpr std::array kMainHeader = {
    FieldLayout{"dwMicroSecPerFrame", 0, 4, Kind::number, Unit::microseconds},
    FieldLayout{"dwMaxBytesPerSec", 4, 4, Kind::number, Unit::bytesPerSecond},
    FieldLayout{"dwPaddingGranularity", 8, 4, Kind::number, Unit::bytes},
    FieldLayout{"dwFlags", 12, 4, Kind::flags},
    FieldLayout{"dwTotalFrames", 16, 4, Kind::number, Unit::frames},
    FieldLayout{"dwInitialFrames", 20, 4, Kind::number, Unit::frames},
    FieldLayout{"dwStreams", 24, 4, Kind::number, Unit::streams},
    FieldLayout{"dwSuggestedBufferSize", 28, 4, Kind::number, Unit::bytes},
    FieldLayout{"dwWidth", 32, 4, Kind::number, Unit::pixels},
    FieldLayout{"dwHeight", 36, 4, Kind::number, Unit::pixels},
};

constexpr std::array kMainFlags = {
    FlagName{0x10, "AVIF_HASINDEX"},          FlagName{0x20, "AVIF_MUSTUSEINDEX"},
    FlagName{0x100, "AVIF_ISINTERLEAVED"},    FlagName{0x800, "AVIF_TRUSTCKTYPE"},
    FlagName{0x10000, "AVIF_WASCAPTUREFILE"}, FlagName{0x20000, "AVIF_COPYRIGHTED"},
};

// AVISTREAMHEADER
constexpr std::array kStreamHeader = {
    FieldLayout{"fccType", 0, 4, Kind::code},
    FieldLayout{"fccHandler", 4, 4, Kind::code},
    FieldLayout{"dwFlags", 8, 4, Kind::flags},
    FieldLayout{"wPriority", 12, 2},
    FieldLayout{"wLanguage", 14, 2},
    FieldLayout{"dwInitialFrames", 16, 4, Kind::number, Unit::frames},
    FieldLayout{"dwScale", 20, 4},
    FieldLayout{"dwRate", 24, 4},
    FieldLayout{"dwStart", 28, 4, Kind::number, Unit::streamUnits},
    FieldLayout{"dwLength", 32, 4, Kind::number, Unit::streamUnits},
    FieldLayout{"dwSuggestedBufferSize", 36, 4, Kind::number, Unit::bytes},
    FieldLayout{"dwQuality", 40, 4},
    FieldLayout{"dwSampleSize", 44, 4, Kind::number, Unit::bytes},
    FieldLayout{"rcFrame.left", 48, 2, Kind::signedNumber, Unit::pixels},
    FieldLayout{"rcFrame.top", 50, 2, Kind::signedNumber, Unit::pixels},
    FieldLayout{"rcFrame.right", 52, 2, Kind::signedNumber, Unit::pixels},
    FieldLayout{"rcFrame.bottom", 54, 2, Kind::signedNumber, Unit::pixels},
};

constexpr std::array kStreamFlags = {FlagName{0x1, "AVISF_DISABLED"}, FlagName{0x10000, "AVISF_VIDEO_PALCHANGES"}};

// BITMAPINFOHEADER
constexpr std::array kBitmapInfo = {
    FieldLayout{"biSize", 0, 4, Kind::number, Unit::bytes},
    FieldLayout{"biWidth", 4, 4, Kind::signedNumber, Unit::pixels},
    FieldLayout{"biHeight", 8, 4, Kind::signedNumber, Unit::pixels},
    FieldLayout{"biPlanes", 12, 2},
    FieldLayout{"biBitCount", 14, 2, Kind::number, Unit::bits},
    FieldLayout{"biCompression", 16, 4, Kind::code},
    FieldLayout{"biSizeImage", 20, 4, Kind::number, Unit::bytes},
    FieldLayout{"biXPelsPerMeter", 24, 4, Kind::signedNumber, Unit::pixelsPerMetre},
    FieldLayout{"biYPelsPerMeter", 28, 4, Kind::signedNumber, Unit::pixelsPerMetre},
    FieldLayout{"biClrUsed", 32, 4, Kind::number, Unit::colours},
    FieldLayout{"biClrImportant", 36, 4, Kind::number, Unit::colours},
};

// WAVEFORMATEX
constexpr std::array kWaveFormat = {
    FieldLayout{"wFormatTag", 0, 2},
    FieldLayout{"nChannels", 2, 2, Kind::number, Unit::channels},
    FieldLayout{"nSamplesPerSec", 4, 4, Kind::number, Unit::hertz},
    FieldLayout{"nAvgBytesPerSec", 8, 4, Kind::number, Unit::bytesPerSecond},
    FieldLayout{"nBlockAlign", 12, 2, Kind::number, Unit::bytes},
    FieldLayout{"wBitsPerSample", 14, 2, Kind::number, Unit::bits},
    FieldLayout{"cbSize", 16, 2, Kind::number, Unit::bytes},
};

// AVISUPERINDEX and AVISTDINDEX, the fields before their entries
constexpr std::array kSuperIndex = {
    FieldLayout{"wLongsPerEntry", 0, 2},
    FieldLayout{"bIndexSubType", 2, 1},
    FieldLayout{"bIndexType", 3, 1},
    FieldLayout{"nEntriesInUse", 4, 4, Kind::number, Unit::entries},
    FieldLayout{"dwChunkId", 8, 4, Kind::code},
};
constexpr std::array kStandardIndex = {
    FieldLayout{"wLongsPerEntry", 0, 2},
    FieldLayout{"bIndexSubType", 2, 1},
    FieldLayout{"bIndexType", 3, 1},
    FieldLayout{"nEntriesInUse", 4, 4, Kind::number, Unit::entries},
    FieldLayout{"dwChunkId", 8, 4, Kind::code},
    FieldLayout{"qwBaseOffset", 12, 8, Kind::number, Unit::bytes},
};

// AVIEXTHEADER
constexpr std::array kExtendedHeader = {FieldLayout{"dwGrandFrames", 0, 4, Kind::number, Unit::frames}};

// VIDEOPROPHEADER
constexpr std::array kVideoProperties = {
    FieldLayout{"VideoFormatToken", 0, 4},
    FieldLayout{"VideoStandard", 4, 4},
    FieldLayout{"dwVerticalRefreshRate", 8, 4, Kind::number, Unit::hertz},
    FieldLayout{"dwHTotalInT", 12, 4, Kind::number, Unit::pixels},
    FieldLayout{"dwVTotalInLines", 16, 4, Kind::number, Unit::lines},
    FieldLayout{"dwFrameAspectRatio", 20, 4},
    FieldLayout{"dwFrameWidthInPixels", 24, 4, Kind::number, Unit::pixels},
    FieldLayout{"dwFrameHeightInLines", 28, 4, Kind::number, Unit::lines},
    FieldLayout{"nbFieldPerFrame", 32, 4, Kind::number, Unit::fields},
};

/// The number's two's complement of `width` bytes.
std::int64_t signedFrom(std::uint64_t number, std::size_t width) {
  return width == 2 ? static_cast<std::int16_t>(number) : static_cast<std::int32_t>(number);
}

SetFlags setFlags(std::uint64_t flags, std::span<const FlagName> names) {
  SetFlags set;
  for (const FlagName& flag : names) {
    if ((flags & flag.bit) != 0) set.push_back(flag.name);
  }
  return set;
}

std::vector<Field> fieldsOf(std::span<const FieldLayout> layout, std::span<const std::byte> payload,
                            std::span<const FlagName> flags = {}) {
  std::vector<Field> fields;
  for (const FieldLayout& field : layout) {
    if (field.offset + field.width > payload.size()) break;
    const std::uint64_t number = loadLittleEndian(payload.subspan(field.offset, field.width));
    switch (field.kind) {
      case Kind::number:
        fields.push_back({field.name, number, field.unit});
        break;
      case Kind::signedNumber:
        fields.push_back({field.name, signedFrom(number, field.width), field.unit});
        break;
      case Kind::flags:
        fields.push_back({field.name, number, field.unit, setFlags(number, flags)});
        break;
      case Kind::code:
        fields.push_back({field.name, FourCC::at(payload.subspan(field.offset)), field.unit});
        break;
    }
  }
  return fields;
}

std::optional<std::uint64_t> numberNamed(const std::vector<Field>& fields, std::string_view name) {
  const auto found = std::find_if(fields.begin(), fields.end(), [&](const Field& field) { return field.name == name; });
  if (found == fields.end()) return std::nullopt;
  const auto* number = std::get_if<std::uint64_t>(&found->value);
  return number == nullptr ? std::nullopt : std::optional(*number);
}

void addMeaning(std::vector<Field>& fields, std::string_view name, const Meaning& meaning) {
  for (Field& field : fields) {
    if (field.name == name) field.meaning = meaning;
  }
}

std::vector<Field> mainHeader(std::span<const std::byte> payload) {
  auto fields = fieldsOf(kMainHeader, payload, kMainFlags);
  if (const auto step = numberNamed(fields, "dwMicroSecPerFrame"); step && *step > 0) {
    addMeaning(fields, "dwMicroSecPerFrame", FramesPerSecond{1e6 / static_cast<double>(*step)});
  }
  return fields;
}

std::vector<Field> streamHeader(std::span<const std::byte> payload) {
  auto fields = fieldsOf(kStreamHeader, payload, kStreamFlags);
  const auto scale = numberNamed(fields, "dwScale");
  const auto rate = numberNamed(fields, "dwRate");
  if (scale && rate && *scale > 0) {
    addMeaning(fields, "dwRate", UnitsPerSecond{static_cast<double>(*rate) / static_cast<double>(*scale)});
  }
  return fields;
}

std::vector<Field> waveFormat(std::span<const std::byte> payload) {
  auto fields = fieldsOf(kWaveFormat, payload);
  if (const auto tag = numberNamed(fields, "wFormatTag")) {
    addMeaning(fields, "wFormatTag", AudioFormatTag{audioFormatName(static_cast<std::uint32_t>(*tag))});
  }
  return fields;
}

std::vector<Field> textField(std::string_view name, std::span<const std::byte> payload) {
  constexpr std::size_t kLongestText = 200;
  return {{name, codecText(payload.first(std::min(payload.size(), kLongestText)))}};
}

}  // namespace

std::vector<Field> decodeFields(FourCC id, FourCC listType, FourCC streamType, std::span<const std::byte> payload) {
  if (id == kAvih) return mainHeader(payload);
  if (id == kStrh) return streamHeader(payload);
  if (id == kStrf && streamType == kVids) return fieldsOf(kBitmapInfo, payload);
  if (id == kStrf && streamType == kAuds) return waveFormat(payload);
  if (id == kIndx || isStandardIndex(id)) {
    const bool standard = payload.size() > 3 && payload[3] == std::byte{1};
    return standard ? fieldsOf(kStandardIndex, payload) : fieldsOf(kSuperIndex, payload);
  }
  if (id == kDmlh) return fieldsOf(kExtendedHeader, payload);
  if (id == kVprp) return fieldsOf(kVideoProperties, payload);
  if (id == kStrn || listType == kInfo) return textField("text", payload);
  return {};
}

}  // namespace zelvo::avi
