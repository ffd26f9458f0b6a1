/// Four-character codes by what they name: which look like codes at all, which name a stream's data, which an index.
#pragma once

#include <cstdint>

#include "avi/fourcc.h"

namespace zelvo::avi {

inline constexpr FourCC kIdx1{"idx1"};
inline constexpr FourCC kRec{"rec "};
inline constexpr FourCC kInfo{"INFO"};
inline constexpr FourCC kStrn{"strn"};
inline constexpr FourCC kDmlh{"dmlh"};
inline constexpr FourCC kVprp{"vprp"};
inline constexpr FourCC kAvix{"AVIX"};
inline constexpr FourCC kOdml{"odml"};

/// Bytes of a chunk's header: its code and its size.
inline constexpr std::uint64_t kChunkHeader = 8;

/// Four printable ASCII characters.
[[nodiscard]] bool isPrintable(FourCC code);
/// A stream's data: two digits (the stream's number), then "db", "dc", "pc", "wb", "tx", "sb", or "__" of pictures with
/// their sound.
[[nodiscard]] bool isStreamData(FourCC code);
/// A standard index: "ix" and two digits.
[[nodiscard]] bool isStandardIndex(FourCC code);
/// A code that hardly stands anywhere but at the beginning of a chunk: damage is skipped up to one.
[[nodiscard]] bool beginsChunkForSure(FourCC code);
/// Whether a chunk may bear either of these codes: equal ones, or "00db" and "00dc" of one stream.
[[nodiscard]] bool namesSameData(FourCC one, FourCC other);

}  // namespace zelvo::avi
