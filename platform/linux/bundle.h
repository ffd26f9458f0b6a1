/// The application's own folder on Linux: PREFIX/zelvo/avi-repair/Applications/Zelvo AVI Repair/Zelvo AVI Repair.app,
/// found from where the running program lies, so that the whole PREFIX may be put anywhere.
/// Decision: install, The program finds its own bundle
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/bundle.h"
#include "platform/files.h"
#include "platform/property_lists.h"
#include "platform/property_value.h"

namespace zelvo::platform::linux_ {

class LinuxBundle final : public Bundle {
 public:
  /// Where the bundle lies below PREFIX, with a slash at its beginning.
  static constexpr std::string_view kBelowPrefix =
      "/zelvo/avi-repair/Applications/Zelvo AVI Repair/Zelvo AVI Repair.app";

  /// `program` is the real path of the running program. "Contents/Info.plist" is read here, once.
  /// Failure: without a readable list every key is missing.
  LinuxBundle(Files& files, PropertyLists& lists, std::string_view program);

  /// Real path of the program that runs; empty when the system does not tell.
  [[nodiscard]] static std::string runningProgram();

  /// Of a program that lies in BUNDLE/Contents/MacOS, that bundle. The folder of any other program stands for PREFIX.
  [[nodiscard]] std::string bundlePath() const override { return bundlePath_; }
  [[nodiscard]] std::optional<std::string> infoText(std::string_view key) const override;

  /// What PathMapper takes; "/" when the bundle lies below the root.
  /// Failure: nothing when the bundle is not where it lies below a PREFIX. No fixed path can be found then.
  [[nodiscard]] std::optional<std::string> prefix() const;

 private:
  std::string bundlePath_;
  PropertyDictionary info_;
};

}  // namespace zelvo::platform::linux_
