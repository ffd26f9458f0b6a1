#include "controls/button_startup_issues.h"

namespace zelvo::controls {

std::optional<std::string> ButtonStartupIssues::caption() const { return base().title(); }

}  // namespace zelvo::controls
