/// Paths that nobody but root and this user can lead elsewhere.
/// Decision: update, Only trusted applications are launched
#pragma once

#include <optional>
#include <string>

namespace zelvo::platform::linux_ {

/// The path with every link on its way followed, if it can be trusted: what it leads to, and every folder in which a
/// name of the way was looked up (those above links too), belong to root or this user and nobody else may write them.
/// Folders above `prefix`, an absolute path, are not looked at; without one all are.
/// Failure: nothing for a path that is not absolute, leads nowhere, or cannot be trusted.
[[nodiscard]] std::optional<std::string> trustedPath(const std::string& path, const std::string& prefix);

/// The path with every link followed; nothing when it leads nowhere.
[[nodiscard]] std::optional<std::string> realPath(const std::string& path);

}  // namespace zelvo::platform::linux_
