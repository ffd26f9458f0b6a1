/// What the window remembers of a user from one start to the next. Thread: main.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zelvo::platform {

class Settings {
 public:
  virtual ~Settings() = default;
  /// Nothing when it was never set.
  [[nodiscard]] virtual std::optional<std::string> value(std::string_view key) const = 0;
  virtual void setValue(std::string_view key, std::string_view value) = 0;
};

}  // namespace zelvo::platform
