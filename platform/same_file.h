/// Whether two names are one file, however they are written and whatever links lead to it.
/// Decision: runs, A save never replaces the damaged file
#pragma once

#include <optional>
#include <string>

#include "platform/file_manager.h"

namespace zelvo::platform {

/// By device and number. False when either could not be looked at.
[[nodiscard]] bool areOneFile(const std::optional<FileAttributes>& one, const std::optional<FileAttributes>& other);

/// The same for what two paths lead to, links followed. False when either is missing or leads to nothing.
/// Thread: any.
[[nodiscard]] bool areOneFile(FileManager& fileManager, const std::string& one,
                              const std::optional<std::string>& other);

}  // namespace zelvo::platform
