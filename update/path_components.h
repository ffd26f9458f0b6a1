/// Paths taken apart at their slashes.
#pragma once

#include <string>
#include <string_view>

namespace zelvo::update {

/// The path without its last component: the folder that holds it. Slashes at the end count for nothing; "/" stays "/",
/// and a single name leaves nothing.
[[nodiscard]] std::string withoutLastComponent(std::string_view path);

/// The same, done `levels` times.
[[nodiscard]] std::string withoutLastComponents(std::string_view path, int levels);

}  // namespace zelvo::update
