#include "controls/hover_button_settings_apply.h"

namespace zelvo::controls {

std::optional<std::string> HoverButtonSettingsApply::caption() const { return title_; }

}  // namespace zelvo::controls
