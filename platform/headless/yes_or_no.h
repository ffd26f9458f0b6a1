/// A switch as an event tells it.
#pragma once

#include <string>

namespace zelvo::platform::headless {

[[nodiscard]] inline std::string yesOrNo(bool value) { return value ? "yes" : "no"; }

}  // namespace zelvo::platform::headless
