/// The picture button of the topmost panel itself.
/// Thread: main.
#pragma once

#include "controls/image_button.h"

namespace zelvo::controls {

class SmallImageButtonLevel2 final : public ImageButton {
 public:
  SmallImageButtonLevel2(platform::ViewHost& host, platform::BaseButton& base);
  [[nodiscard]] ViewTransparent* viewTransparent() const { return attachedOverlay(); }

 protected:
  /// Always, with or without an overlay; only the hand cursor asks for one.
  [[nodiscard]] bool mayHover() const override { return true; }
};

}  // namespace zelvo::controls
