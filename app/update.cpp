// The update check as the controller sees it: every member hands over to the check itself.
#include "app/controller.h"

namespace zelvo::app {

void Orlin_Repair_AVIAppDelegate::checkForUpdateClicked(platform::Button* sender) {
  services_.updateCheck.checkForUpdateClicked(sender);
}

}  // namespace zelvo::app
