/// The user that runs the program, and where that user looks.
#pragma once

#include <string>

namespace zelvo::platform::linux_ {

/// HOME where it is a whole path, else what the system's list of users says; "/" without either. No slash at its end,
/// but for "/" itself.
[[nodiscard]] std::string homeDirectory();

/// Where this user's programs keep what can be made again: XDG_CACHE_HOME where it is a whole path, else ".cache" in
/// the home directory.
[[nodiscard]] std::string cacheFolder();

/// Where this user's programs keep their settings: XDG_CONFIG_HOME where it is a whole path, else ".config" in the home
/// directory.
[[nodiscard]] std::string configFolder();

/// Whether standard error is a terminal, so that somebody reads along.
[[nodiscard]] bool standardErrorIsTerminal();

}  // namespace zelvo::platform::linux_
