/// Starts applications on Linux, detached from this one. // Decision: update, Launched applications stand alone
#pragma once

#include <optional>
#include <string>

#include "platform/launcher.h"
#include "platform/property_lists.h"

namespace zelvo::platform::linux_ {

/// Whether an application is started only when nobody but root and this user can change it (see trusted_path.h).
enum class OwnerCheck { on, off };

/// The application runs in a session of its own, in "/", with no descriptor of ours, its standard streams on /dev/null,
/// signals as usual, no arguments but the file that it is to open, and without the variables by which other code could
/// be put into it. No shell.
class LinuxLauncher final : public Launcher, public FileOpener {
 public:
  /// As this program was built: on, unless ZELVO_CHECK_LAUNCH_OWNERS was off.
  static const OwnerCheck kBuiltIn;

  /// Folders above `prefix` are taken for trusted.
  LinuxLauncher(PropertyLists& lists, std::string prefix, OwnerCheck ownerCheck = kBuiltIn);

  /// A folder is started by the program that its "Contents/Info.plist" names, from its "Contents/MacOS".
  bool launchApplication(const std::string& path, std::uint32_t options) override;
  bool openFile(const std::string& file, const std::string& application) override;

 private:
  [[nodiscard]] bool start(const std::string& path, std::uint32_t options, const std::optional<std::string>& file);
  [[nodiscard]] std::optional<std::string> program(const std::string& path);
  [[nodiscard]] std::optional<std::string> checked(const std::string& path) const;

  PropertyLists& lists_;
  std::string prefix_;
  OwnerCheck ownerCheck_;
};

}  // namespace zelvo::platform::linux_
