/// A flat button: one colour, a caption in its middle, a brighter frame while the pointer is over it; grey while
/// disabled.
/// Thread: main.
#pragma once

#include <optional>
#include <string>

#include "controls/hovering_button.h"

namespace zelvo::controls {

class FilledButton : public HoveringButton {
 public:
  /// Fill, then frame or none, then the caption.
  void drawRect(platform::Canvas& canvas, const platform::Rect& rect) override;

  [[nodiscard]] bool disabled() const { return disabled_; }
  /// setDisabled: disables or enables the base button too, so that a disabled one sends no action.
  void setDisabled(bool disabled);

 protected:
  using HoveringButton::HoveringButton;
  /// The caption; nullopt draws no caption. Asked once at the start of each drawing.
  [[nodiscard]] virtual std::optional<std::string> caption() const = 0;
  void drawLook(platform::Canvas& canvas) override;
  [[nodiscard]] bool showsHandCursor() const override { return !disabled_ && HoveringButton::showsHandCursor(); }

 private:
  std::optional<std::string> drawnCaption_;
  bool disabled_ = false;
};

}  // namespace zelvo::controls
