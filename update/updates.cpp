#include "update/updates.h"

#include "update/write_deletable_path.h"

namespace zelvo::update {

Updates::Updates(const UpdateServices& services)
    : fileManager_(services.fileManager),
      check_(services.reachability, services.bundle, services.files, services.web, services.propertyLists),
      prompt_(check_, services.alertPanels, services.launcher, services.bundle, services.paths),
      scan_(check_, services.workers),
      updaterFiles_(services.fileManager, services.folderTrees, services.clock, services.bundle, services.paths),
      hashes_(services.digest, services.files, services.web) {}

bool Updates::isWriteDeletablePath(const std::string& path) { return update::isWriteDeletablePath(fileManager_, path); }

}  // namespace zelvo::update
