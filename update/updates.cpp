#include "update/updates.h"

#include "update/places.h"
#include "update/update_paths.h"

namespace zelvo::update {

Updates::Updates(const UpdateServices& services)
    : fileManager_(services.fileManager),
      paths_(services.paths),
      check_(services.reachability, services.bundle, services.files, services.web, services.propertyLists),
      prompt_(check_, services.alertPanels, services.launcher, services.bundle, services.paths),
      scan_(check_, services.workers),
      updaterFiles_(services.fileManager, services.folderTrees, services.clock, services.bundle, services.paths),
      hashes_(services.digest, services.files, services.web) {}

UpdateMeans Updates::means() {
  if (!check_.hasAddress()) return UpdateMeans::noAddress;
  const bool isThere = fileManager_.exists(paths_.mapped(paths::kUpdater)) ||
                       fileManager_.exists(paths_.mapped(paths::kUpdaterForNoUpdate));
  return isThere ? UpdateMeans::all : UpdateMeans::noUpdater;
}

bool Updates::isWriteDeletablePath(const std::string& path) { return update::isWriteDeletablePath(fileManager_, path); }

}  // namespace zelvo::update
