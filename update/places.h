/// Paths and addresses of the update check, taken apart and judged.
#pragma once

#include <string>
#include <string_view>

#include "platform/file_manager.h"

namespace zelvo::update {

/// The path without its last component: the folder that holds it. Slashes at the end count for nothing; "/" stays "/",
/// and a single name leaves nothing.
[[nodiscard]] std::string withoutLastComponent(std::string_view path);

/// The same, done `levels` times.
[[nodiscard]] std::string withoutLastComponents(std::string_view path, int levels);

/// `isWriteDeletablePath:` true when the path and its parent folder are both writable and both deletable. Thread: any.
[[nodiscard]] bool isWriteDeletablePath(platform::FileManager& fileManager, const std::string& path);

/// The address with "%20" for every space, and nothing else changed.
[[nodiscard]] std::string withSpacesEscaped(std::string_view address);

}  // namespace zelvo::update
