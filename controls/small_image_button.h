/// The picture button of a panel.
/// Thread: main.
#pragma once

#include "controls/image_button.h"

namespace zelvo::controls {

class SmallImageButton final : public ImageButton {
 public:
  SmallImageButton(platform::ViewHost& host, platform::BaseButton& base);
};

}  // namespace zelvo::controls
