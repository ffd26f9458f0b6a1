/// Everything that the update check offers to the controller, under the controller's own names.
/// Decision: update, The check is one interface of its room
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>

#include "platform/elements.h"
#include "update/background_scan.h"

namespace zelvo::update {

/// Eleven operations, since each is one member of the controller. Thread: as each file says.
class UpdateOperations {
 public:
  virtual ~UpdateOperations() = default;
  /// See version_check.h.
  [[nodiscard]] virtual bool checkForUpdate() = 0;
  [[nodiscard]] virtual bool isInternetAvailable() = 0;
  /// See update_prompt.h. `sender` is null at start-up.
  virtual void checkForUpdateClicked(platform::Button* sender) = 0;
  virtual void update() = 0;
  /// See background_scan.h.
  virtual void autoUpdateScan(const ScanGates& gates) = 0;
  virtual void autoUpdateScanningThread() = 0;
  /// See updater_files.h.
  virtual void copyUpdator() = 0;
  virtual void updateCleanupThread() = 0;
  /// See places.h.
  [[nodiscard]] virtual bool isWriteDeletablePath(const std::string& path) = 0;
  /// See hashes.h.
  [[nodiscard]] virtual std::optional<std::string> md5(std::optional<std::span<const std::byte>> data) = 0;
  [[nodiscard]] virtual std::optional<std::string> hashString(const std::string& text) = 0;
};

}  // namespace zelvo::update
