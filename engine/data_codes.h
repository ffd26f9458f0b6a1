/// The codes of the data chunks that the engine keeps: all it knows of streams.
#pragma once

#include "avi/fourcc.h"

namespace zelvo::engine {

[[nodiscard]] constexpr bool isSoundCode(avi::FourCC code) { return code == avi::k01wb; }
[[nodiscard]] constexpr bool isPictureCode(avi::FourCC code) { return code == avi::k00dc || code == avi::k00db; }
[[nodiscard]] constexpr bool isDataCode(avi::FourCC code) { return isPictureCode(code) || isSoundCode(code); }

}  // namespace zelvo::engine
