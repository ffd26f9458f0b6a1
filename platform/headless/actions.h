/// Buttons that a test presses.
/// Thread: main.
#pragma once

#include <functional>
#include <map>
#include <utility>

#include "platform/actions.h"
#include "platform/headless/elements.h"

namespace zelvo::platform::headless {

class HeadlessActions final : public Actions {
 public:
  void connect(Button& button, std::function<void(Button& sender)> action) override {
    actions_[&button] = std::move(action);
  }

  /// As a click: false when the button cannot be pressed, or nothing is connected to it.
  bool press(HeadlessButton& button) {
    const auto found = actions_.find(&button);
    if (found == actions_.end() || !button.isEnabled() || button.isHidden()) return false;
    button.clicked();
    const auto action = found->second;
    action(button);
    return true;
  }
  [[nodiscard]] bool isConnected(const Button& button) const { return actions_.contains(&button); }

 private:
  std::map<const Button*, std::function<void(Button& sender)>> actions_;
};

}  // namespace zelvo::platform::headless
