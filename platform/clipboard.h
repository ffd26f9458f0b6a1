/// The desktop's clipboard. Thread: main.
#pragma once

#include <string_view>

namespace zelvo::platform {

class Clipboard {
 public:
  virtual ~Clipboard() = default;
  /// Puts plain text (UTF-8) there.
  virtual void setText(std::string_view text) = 0;
};

}  // namespace zelvo::platform
