#include "controls/small_image_button_level2.h"

namespace zelvo::controls {

SmallImageButtonLevel2::SmallImageButtonLevel2(platform::ViewHost& host, platform::BaseButton& base)
    : ImageButton(host, base, kTrackedInActiveApp) {}

}  // namespace zelvo::controls
