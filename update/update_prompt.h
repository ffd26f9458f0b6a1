/// Tells the user of a newer version and hands over to the updater.
#pragma once

#include "platform/bundle.h"
#include "platform/elements.h"
#include "platform/launcher.h"
#include "platform/panels.h"
#include "platform/path_mapper.h"
#include "update/version_check.h"

namespace zelvo::update {

/// Thread: main.
class UpdatePrompt {
 public:
  UpdatePrompt(VersionCheck& check, platform::AlertPanels& alertPanels, platform::Launcher& launcher,
               const platform::Bundle& bundle, const platform::PathMapper& pathMapper);

  /// `checkForUpdateClicked:` checks and, when there is another version, asks and launches the updater. When there is
  /// none and `sender` asked for the check, the updater is launched to tell so; without a sender nothing happens.
  /// Failure: a launch that fails is not told.
  void checkForUpdateClicked(const platform::Button* sender);
  /// The same question; launches the updater that lies four levels above the bundle. No flow calls it.
  void update();

 private:
  [[nodiscard]] bool userAgrees();
  void launch(const std::string& path);

  VersionCheck& check_;
  platform::AlertPanels& alertPanels_;
  platform::Launcher& launcher_;
  const platform::Bundle& bundle_;
  const platform::PathMapper& pathMapper_;
};

}  // namespace zelvo::update
