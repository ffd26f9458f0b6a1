/// What the window remembers, in a file of the user's. A file that cannot be written remembers nothing beyond the end
/// of the program, and nobody is told.
/// Thread: main.
#pragma once

#include <QSettings>
#include <string>

#include "platform/settings.h"

namespace zelvo::platform::qt {

class QtSettings final : public Settings {
 public:
  /// The file need not exist, nor its folder.
  explicit QtSettings(const std::string& file);
  [[nodiscard]] std::optional<std::string> value(std::string_view key) const override;
  void setValue(std::string_view key, std::string_view value) override;

 private:
  QSettings settings_;
};

}  // namespace zelvo::platform::qt
