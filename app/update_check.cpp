// The update check as the controller sees it: every member hands over to the check itself.
#include "app/controller.h"
#include "app/globals.h"
#include "controls/view_transparent.h"

namespace zelvo::app {

bool Orlin_Repair_AVIAppDelegate::checkForUpdate() { return services_.updateCheck.checkForUpdate(); }

void Orlin_Repair_AVIAppDelegate::checkForUpdateClicked(platform::Button* sender) {
  services_.updateCheck.checkForUpdateClicked(sender);
}

void Orlin_Repair_AVIAppDelegate::update() { services_.updateCheck.update(); }

void Orlin_Repair_AVIAppDelegate::autoUpdateScan() {
  services_.updateCheck.autoUpdateScan({.scanIsRunning = scanIsRunning,
                                        .scanInfoOrSavingNotProcessing = scanInfoOrSavingNotProcessing,
                                        .viewsOverlaidCount = controls::viewsOverlaidCountOf(viewTransparentDummy)});
}

void Orlin_Repair_AVIAppDelegate::autoUpdateScanningThread() { services_.updateCheck.autoUpdateScanningThread(); }

void Orlin_Repair_AVIAppDelegate::copyUpdator() { services_.updateCheck.copyUpdator(); }

void Orlin_Repair_AVIAppDelegate::updateCleanupThread() { services_.updateCheck.updateCleanupThread(); }

bool Orlin_Repair_AVIAppDelegate::isInternetAvailable() { return services_.updateCheck.isInternetAvailable(); }

bool Orlin_Repair_AVIAppDelegate::isWriteDeletablePath(const std::string& path) {
  return services_.updateCheck.isWriteDeletablePath(path);
}

std::optional<std::string> Orlin_Repair_AVIAppDelegate::md5(std::optional<std::span<const std::byte>> data) {
  return services_.updateCheck.md5(data);
}

std::optional<std::string> Orlin_Repair_AVIAppDelegate::hashString(const std::string& text) {
  return services_.updateCheck.hashString(text);
}

}  // namespace zelvo::app
