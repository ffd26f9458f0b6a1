/// The application's own folder and the property list that lies in it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zelvo::platform {

/// Thread: any.
class Bundle {
 public:
  virtual ~Bundle() = default;
  /// The folder that holds "Contents".
  [[nodiscard]] virtual std::string bundlePath() const = 0;
  /// A text of "Contents/Info.plist"; nothing when the key is missing or no text.
  [[nodiscard]] virtual std::optional<std::string> infoText(std::string_view key) const = 0;
};

}  // namespace zelvo::platform
