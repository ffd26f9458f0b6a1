/// The fields of an AVI file's header chunks, under the names that the format gives them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "avi/fourcc.h"

namespace zelvo::avi {

/// What a field counts.
enum class Unit {
  none,
  bits,
  bytes,
  bytesPerSecond,
  channels,
  colours,
  entries,
  fields,
  frames,
  hertz,
  lines,
  microseconds,
  pixels,
  pixelsPerMetre,
  streamUnits,  ///< of dwScale / dwRate seconds
  streams,
};

struct FramesPerSecond {
  double rate;
};
struct UnitsPerSecond {
  double rate;
};
/// The bits that are set and have a name ("AVIF_HASINDEX"), the lowest first.
using SetFlags = std::vector<std::string_view>;
struct AudioFormatTag {
  std::string_view name;  ///< "MP3"; empty when it is not known here
};

/// What follows from a field; nothing from most.
using Meaning = std::variant<std::monostate, FramesPerSecond, UnitsPerSecond, SetFlags, AudioFormatTag>;

struct Field {
  std::string_view name;  ///< "dwMicroSecPerFrame"
  std::variant<std::int64_t, std::uint64_t, FourCC, std::string> value;
  Unit unit = Unit::none;
  Meaning meaning = {};
};

/// The most of a payload that is looked at.
inline constexpr std::size_t kLargestDecoded = 1024;

/// Fields of a chunk's payload, or of as much of it as is there; none for a chunk that holds no known fields.
/// `streamType` is the fccType of the stream list that the chunk lies in, `listType` the type of its list.
[[nodiscard]] std::vector<Field> decodeFields(FourCC id, FourCC listType, FourCC streamType,
                                              std::span<const std::byte> payload);

}  // namespace zelvo::avi
