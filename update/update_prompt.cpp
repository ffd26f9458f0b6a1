#include "update/update_prompt.h"

#include <cstdint>
#include <string>

#include "update/places.h"
#include "update/update_paths.h"

namespace zelvo::update {

UpdatePrompt::UpdatePrompt(VersionCheck& check, platform::AlertPanels& alertPanels, platform::Launcher& launcher,
                           const platform::Bundle& bundle, const platform::PathMapper& pathMapper)
    : check_(check), alertPanels_(alertPanels), launcher_(launcher), bundle_(bundle), pathMapper_(pathMapper) {}

bool UpdatePrompt::userAgrees() {
  const int answer = alertPanels_.runAlertPanel({.title = paths::kTitle,
                                                 .message = paths::kMessage,
                                                 .defaultButton = paths::kYes,
                                                 .alternateButton = paths::kNo,
                                                 .otherButton = paths::kThird});
  // Deliberate: one byte of the answer is looked at, and any but zero agrees.
  return static_cast<std::uint8_t>(answer) != 0;
}

void UpdatePrompt::launch(const std::string& path) {
  // Deliberate: whether it started is not looked at.
  launcher_.launchApplication(path, platform::kLaunchWithoutActivation);
}

void UpdatePrompt::checkForUpdateClicked(const platform::Button* sender) {
  if (check_.checkForUpdate()) {
    if (userAgrees()) launch(pathMapper_.mapped(paths::kUpdater));
    return;
  }
  if (sender != nullptr) launch(pathMapper_.mapped(paths::kUpdaterForNoUpdate));
}

void UpdatePrompt::update() {
  if (!check_.checkForUpdate() || !userAgrees()) return;
  launch(withoutLastComponents(bundle_.bundlePath(), paths::kLevelsUp) + std::string(paths::kUpdaterAbove));
}

}  // namespace zelvo::update
