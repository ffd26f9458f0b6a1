/// The flat button with a caption of its own.
/// Thread: main.
#pragma once

#include <utility>

#include "controls/filled_button.h"

namespace zelvo::controls {

class HoverButtonSettingsApply final : public FilledButton {
 public:
  HoverButtonSettingsApply(platform::ViewHost& host, platform::BaseButton& base)
      : FilledButton(host, base, kTrackedInKeyWindow) {}

  /// The caption; nothing shows none. Not the base button's title, which the fill hides.
  [[nodiscard]] const std::optional<std::string>& title() const { return title_; }
  /// setTitle: keeps a copy. Deliberate: asks for no redraw; the caption shows at the next one.
  void setTitle(std::optional<std::string> title) { title_ = std::move(title); }

 protected:
  [[nodiscard]] std::optional<std::string> caption() const override;

 private:
  std::optional<std::string> title_;
};

}  // namespace zelvo::controls
