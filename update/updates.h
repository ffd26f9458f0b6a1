/// The update check put together from its parts.
#pragma once

#include "platform/bundle.h"
#include "platform/clock.h"
#include "platform/digest.h"
#include "platform/file_manager.h"
#include "platform/files.h"
#include "platform/folder_trees.h"
#include "platform/launcher.h"
#include "platform/panels.h"
#include "platform/path_mapper.h"
#include "platform/property_lists.h"
#include "platform/reachability.h"
#include "platform/web.h"
#include "platform/workers.h"
#include "update/hashes.h"
#include "update/update_operations.h"
#include "update/update_prompt.h"
#include "update/updater_files.h"
#include "update/version_check.h"

namespace zelvo::update {

/// What the update check uses of the platform, by reference. Everything here outlives the threads that it starts.
struct UpdateServices {
  platform::Reachability& reachability;
  platform::Web& web;
  platform::PropertyLists& propertyLists;
  platform::Digest& digest;
  platform::Launcher& launcher;
  platform::AlertPanels& alertPanels;
  platform::Files& files;
  platform::FileManager& fileManager;
  platform::FolderTrees& folderTrees;
  platform::Workers& workers;
  platform::Clock& clock;
  const platform::Bundle& bundle;
  const platform::PathMapper& paths;
};

/// What a user's request for an update can come to on this machine.
enum class UpdateMeans { all, noAddress, noUpdater };

class Updates final : public UpdateOperations {
 public:
  explicit Updates(const UpdateServices& services);

  /// Whether the address of the published list is known, and then whether an updater is installed. Asks nothing of the
  /// network.
  [[nodiscard]] UpdateMeans means();

  [[nodiscard]] bool checkForUpdate() override { return check_.checkForUpdate(); }
  [[nodiscard]] bool isInternetAvailable() override { return check_.isInternetAvailable(); }
  void checkForUpdateClicked(platform::Button* sender) override { prompt_.checkForUpdateClicked(sender); }
  void update() override { prompt_.update(); }
  void autoUpdateScan(const ScanGates& gates) override { scan_.autoUpdateScan(gates); }
  void autoUpdateScanningThread() override { scan_.autoUpdateScanningThread(); }
  void copyUpdator() override { updaterFiles_.copyUpdator(); }
  void updateCleanupThread() override { updaterFiles_.updateCleanupThread(); }
  [[nodiscard]] bool isWriteDeletablePath(const std::string& path) override;
  [[nodiscard]] std::optional<std::string> md5(std::optional<std::span<const std::byte>> data) override {
    return hashes_.md5(data);
  }
  [[nodiscard]] std::optional<std::string> hashString(const std::string& text) override {
    return hashes_.hashString(text);
  }

 private:
  platform::FileManager& fileManager_;
  const platform::PathMapper& paths_;
  VersionCheck check_;
  UpdatePrompt prompt_;
  BackgroundScan scan_;
  UpdaterFiles updaterFiles_;
  Hashes hashes_;
};

}  // namespace zelvo::update
