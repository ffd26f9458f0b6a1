/// Sheets: panels over a window that must be answered before the window takes input again.
#pragma once

#include <functional>

#include "platform/elements.h"

namespace zelvo::platform {

/// Thread: any; calls from workers are taken over to the main thread in order.
class Sheets {
 public:
  virtual ~Sheets() = default;

  /// Shows `sheet` over `over` and returns without waiting. `stillWanted`, when given, is asked on the main thread at
  /// the moment the sheet would open; on false it does not open.
  virtual void beginSheet(Window& sheet, Window& over, std::function<bool()> stillWanted = {}) = 0;

  /// Ends the sheet; it stays visible until its `orderOut`. Ending one that is not shown does nothing.
  virtual void endSheet(Window& sheet) = 0;
};

}  // namespace zelvo::platform
