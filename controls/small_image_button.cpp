#include "controls/small_image_button.h"

namespace zelvo::controls {

SmallImageButton::SmallImageButton(platform::ViewHost& host, platform::BaseButton& base)
    : ImageButton(host, base, kTrackedInKeyWindow) {}

}  // namespace zelvo::controls
