/// Paths taken apart and put together. Thread: any.
#pragma once

#include <string>
#include <string_view>

namespace zelvo::platform {

/// The folder part of a path; "." when there is none, "/" for "/". Slashes at the end count for nothing.
[[nodiscard]] std::string folderOf(const std::string& path);

/// The last part of a path; empty of "/". Slashes at the end count for nothing.
[[nodiscard]] std::string nameOf(const std::string& path);

/// `folder` with `name` after it.
[[nodiscard]] std::string pathIn(const std::string& folder, std::string_view name);

}  // namespace zelvo::platform
