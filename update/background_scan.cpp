#include "update/background_scan.h"

#include <memory>

namespace zelvo::update {

BackgroundScan::BackgroundScan(VersionCheck& check, platform::Workers& workers) : check_(check), workers_(workers) {}

void BackgroundScan::autoUpdateScan(const ScanGates& gates) {
  if (gates.scanIsRunning || !gates.scanInfoOrSavingNotProcessing) return;
  if (gates.viewsOverlaidCount != 0) return;
  workers_.start(std::make_shared<platform::CancelMark>(), [this] { autoUpdateScanningThread(); });
}

void BackgroundScan::autoUpdateScanningThread() { static_cast<void>(check_.checkForUpdate()); }

}  // namespace zelvo::update
