/// The head of a sheet: its title, and the picture that says at a glance how something ended.
#pragma once

#include <string_view>

namespace zelvo::platform {

enum class SheetSign {
  done,     ///< a tick
  warning,  ///< an exclamation mark
  failure,  ///< a cross
};

/// Thread: any; the window takes a call from a worker over to its main thread, in order.
class SheetHead {
 public:
  virtual ~SheetHead() = default;
  /// One line (UTF-8), which is the sheet's name to a screen reader too.
  virtual void setTitle(std::string_view title) = 0;
  virtual void setSign(SheetSign sign) = 0;
};

}  // namespace zelvo::platform
