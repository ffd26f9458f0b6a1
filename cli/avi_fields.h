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

namespace zelvo::cli {

struct Field {
  std::string_view name;  ///< "dwMicroSecPerFrame"
  std::variant<std::int64_t, std::uint64_t, std::string> value;
  std::string_view unit;  ///< "microseconds"; empty for a plain number or text
  std::string note = {};  ///< what follows from it ("25.000 frames per second"); may be empty
};

/// The most of a payload that is looked at.
inline constexpr std::size_t kLargestDecoded = 1024;

/// Fields of a chunk's payload, or of as much of it as is there; none for a chunk that holds no known fields.
/// `streamType` is the fccType of the stream list that the chunk lies in, `listType` the type of its list.
[[nodiscard]] std::vector<Field> decodeFields(avi::FourCC id, avi::FourCC listType, avi::FourCC streamType,
                                              std::span<const std::byte> payload);

}  // namespace zelvo::cli
