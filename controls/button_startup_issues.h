/// The flat button that shows the base button's title.
/// Thread: main.
#pragma once

#include "controls/filled_button.h"

namespace zelvo::controls {

class ButtonStartupIssues final : public FilledButton {
 public:
  ButtonStartupIssues(platform::ViewHost& host, platform::BaseButton& base)
      : FilledButton(host, base, kTrackedInActiveApp) {}

 protected:
  [[nodiscard]] std::optional<std::string> caption() const override;
};

}  // namespace zelvo::controls
