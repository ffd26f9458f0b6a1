/// A button that lays one of two pictures over its bounds.
/// Thread: main.
#pragma once

#include "controls/hovering_button.h"

namespace zelvo::controls {

class ImageButton : public HoveringButton {
 public:
  /// Takes the press highlight away.
  void awakeFromNib() override;
  /// setImageNormal:Hover: the pictures for the two looks, each possibly none. Borrowed: they outlive the button.
  void setImageNormal(platform::Image* imageNormal, platform::Image* Hover);

 protected:
  using HoveringButton::HoveringButton;
  void drawLook(platform::Canvas& canvas) override;

 private:
  platform::Image* imageNormal_ = nullptr;
  platform::Image* imageHover_ = nullptr;
};

}  // namespace zelvo::controls
