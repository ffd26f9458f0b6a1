/// Four-character codes as `inspect` sees them: which look like codes, which name a stream's data, how they are shown.
#pragma once

#include <string>

#include "engine/fourcc.h"

namespace zelvo::cli {

inline constexpr engine::FourCC kIdx1{"idx1"};
inline constexpr engine::FourCC kRec{"rec "};
inline constexpr engine::FourCC kInfo{"INFO"};
inline constexpr engine::FourCC kStrn{"strn"};
inline constexpr engine::FourCC kDmlh{"dmlh"};
inline constexpr engine::FourCC kVprp{"vprp"};
inline constexpr engine::FourCC kAvix{"AVIX"};
inline constexpr engine::FourCC kOdml{"odml"};

/// Four printable ASCII characters.
[[nodiscard]] bool isPrintable(engine::FourCC code);
/// A stream's data: two digits (the stream's number), then "db", "dc", "pc", "wb", "tx" or "sb".
[[nodiscard]] bool isStreamData(engine::FourCC code);
/// A standard index: "ix" and two digits.
[[nodiscard]] bool isStandardIndex(engine::FourCC code);
/// A code that hardly stands anywhere but at the beginning of a chunk: damage is skipped up to one.
[[nodiscard]] bool beginsChunkForSure(engine::FourCC code);
/// Whether a chunk may bear either of these codes: equal ones, or "00db" and "00dc" of one stream.
[[nodiscard]] bool namesSameData(engine::FourCC one, engine::FourCC other);
/// The four characters; a byte that is not printable ASCII is shown as \xNN.
[[nodiscard]] std::string shownCode(engine::FourCC code);

}  // namespace zelvo::cli
