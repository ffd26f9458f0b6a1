/// How long a film says it is.
#pragma once

#include <optional>

#include "platform/files.h"

namespace zelvo::avi {

/// Seconds, by the main header at the file's beginning (dwMicroSecPerFrame, dwTotalFrames, and the "dmlh" chunk's count
/// of a film in several parts). Nothing when it is not there, cannot be read, or says what cannot be.
/// One read of 16 KiB. Thread: any.
[[nodiscard]] std::optional<double> filmLength(platform::ReadableFile& file);

}  // namespace zelvo::avi
