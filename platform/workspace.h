/// What the desktop does for the application: opening addresses and files, and the list of running applications.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zelvo::platform {

/// One running application; what it does not tell is missing.
struct LaunchedApplication {
  std::optional<std::string> bundleIdentifier;
  std::optional<std::int64_t> processIdentifier;
};

/// A process that was found by its identifier.
struct Process {
  std::int64_t identifier = 0;
};

/// Thread: main.
class Workspace {
 public:
  virtual ~Workspace() = default;
  /// Opens an address with what the user chose for it. False when nothing could be started.
  virtual bool openURL(const std::string& url) = 0;
  /// Hands a file to an application ("MPlayerX.app"). False when it could not be started.
  virtual bool openFile(const std::string& path, std::string_view application) = 0;
  /// The running applications, the oldest first.
  [[nodiscard]] virtual std::vector<LaunchedApplication> launchedApplications() = 0;
  /// Nothing when no such process runs.
  [[nodiscard]] virtual std::optional<Process> processForIdentifier(std::int64_t identifier) = 0;
  /// Brings the windows of a process before those of the others.
  virtual void setFrontProcess(const Process& process) = 0;
};

}  // namespace zelvo::platform
