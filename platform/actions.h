/// What pressing a button does.
#pragma once

#include <functional>

#include "platform/elements.h"

namespace zelvo::platform {

/// Thread: main.
class Actions {
 public:
  virtual ~Actions() = default;
  /// From now on a press of `button` runs `action` with the button as its sender. A two-state button has its new state
  /// by then. A button that is disabled or hidden cannot be pressed.
  virtual void connect(Button& button, std::function<void(Button& sender)> action) = 0;
};

}  // namespace zelvo::platform
