/// Texts of the system's libraries.
#pragma once

#include <string>

namespace zelvo::platform::linux_ {

/// A text that may be missing.
[[nodiscard]] inline std::string textOrEmpty(const char* text) { return text ? text : ""; }

}  // namespace zelvo::platform::linux_
