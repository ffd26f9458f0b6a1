/// Whether a path and the folder that holds it may be replaced by this user.
#pragma once

#include <string>

#include "platform/file_manager.h"

namespace zelvo::update {

/// `isWriteDeletablePath:` true when the path and its parent folder are both writable and both deletable. Thread: any.
[[nodiscard]] bool isWriteDeletablePath(platform::FileManager& fileManager, const std::string& path);

}  // namespace zelvo::update
