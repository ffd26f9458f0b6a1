/// Starts other applications.
#pragma once

#include <cstdint>
#include <string>

namespace zelvo::platform {

/// Option of a launch: the application starts without taking the foreground.
inline constexpr std::uint32_t kLaunchWithoutActivation = 0x200;

/// Thread: any.
class Launcher {
 public:
  virtual ~Launcher() = default;
  /// Starts the application at a path on this system (a program, or a folder with Contents/Info.plist). False when it
  /// could not be started.
  virtual bool launchApplication(const std::string& path, std::uint32_t options) = 0;
};

/// Hands files to other applications.
/// Thread: any.
class FileOpener {
 public:
  virtual ~FileOpener() = default;
  /// Starts the application at the path `application`, as `launchApplication` does, with `file` as its one argument.
  /// False when it could not be started.
  virtual bool openFile(const std::string& file, const std::string& application) = 0;
};

}  // namespace zelvo::platform
