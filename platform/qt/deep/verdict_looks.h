/// How the end of a deep repair looks and is called.
/// Thread: main.
#pragma once

#include <QString>
#include <string>

#include "platform/deep_outlets.h"

namespace zelvo::platform::qt {

/// Name of a picture.
[[nodiscard]] std::string pictureOf(DeepVerdict verdict);
[[nodiscard]] QString nameOf(DeepVerdict verdict);
[[nodiscard]] QString nameOf(QueuedFilm::State state);

}  // namespace zelvo::platform::qt
