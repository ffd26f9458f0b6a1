/// The check for updates in the background, while the application has nothing else to do.
#pragma once

#include <cstdint>

#include "platform/workers.h"
#include "update/version_check.h"

namespace zelvo::update {

/// What the application is doing as a background scan is asked for.
struct ScanGates {
  bool scanIsRunning = false;                  ///< a repair's scan is running
  bool scanInfoOrSavingNotProcessing = false;  ///< neither a scan nor a save is under way
  std::int32_t viewsOverlaidCount = 0;         ///< of `viewTransparentDummy`; 0 without one
};

class BackgroundScan {
 public:
  BackgroundScan(VersionCheck& check, platform::Workers& workers);

  /// Starts a thread that runs `autoUpdateScanningThread`, if the application is idle and nothing lies over the
  /// overlay.
  /// Thread: main.
  void autoUpdateScan(const ScanGates& gates);
  /// Does what `checkForUpdate` does and shows nothing. // Decision: update, The background scan shows nothing
  /// Thread: one of its own.
  void autoUpdateScanningThread();

 private:
  VersionCheck& check_;
  platform::Workers& workers_;
};

}  // namespace zelvo::update
