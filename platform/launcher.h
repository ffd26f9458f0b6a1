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

}  // namespace zelvo::platform
