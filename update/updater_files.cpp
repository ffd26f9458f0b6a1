#include "update/updater_files.h"

#include <chrono>
#include <string>

#include "update/places.h"
#include "update/update_paths.h"

namespace zelvo::update {

UpdaterFiles::UpdaterFiles(platform::FileManager& fileManager, platform::FolderTrees& trees, platform::Clock& clock,
                           const platform::Bundle& bundle, const platform::PathMapper& pathMapper)
    : fileManager_(fileManager), trees_(trees), clock_(clock), bundle_(bundle), pathMapper_(pathMapper) {}

void UpdaterFiles::copyUpdator() {
  const std::string bundle = bundle_.bundlePath();
  const std::string copy = withoutLastComponent(bundle) + std::string(paths::kUpdaterCopy);
  const std::string carried = bundle + std::string(paths::kCarriedUpdater);
  const std::string marker = pathMapper_.mapped(paths::kUpdatedMarker);
  const auto copyCarried = [&] {
    if (fileManager_.exists(carried)) static_cast<void>(trees_.copy(carried, copy));
  };
  if (!fileManager_.exists(copy)) copyCarried();
  // Deliberate: a copy made just now counts too, so with a marker it is made once more and the marker goes.
  if (!fileManager_.exists(copy) || !fileManager_.exists(marker)) return;
  static_cast<void>(trees_.remove(marker));
  static_cast<void>(trees_.remove(copy));
  copyCarried();
}

void UpdaterFiles::updateCleanupThread() {
  clock_.sleepFor(std::chrono::seconds(10));
  const std::string above = withoutLastComponents(bundle_.bundlePath(), paths::kLevelsUp);
  for (const std::string_view leftover : paths::kLeftovers) {
    const std::string path = above + std::string(leftover);
    if (fileManager_.attributes(path)) static_cast<void>(trees_.remove(path));
  }
}

}  // namespace zelvo::update
