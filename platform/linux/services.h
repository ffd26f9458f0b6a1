/// Everything of Linux that both programs stand on, in the order in which it is made. A port has a bundle of its own.
#pragma once

#include <memory>

#include "platform/linux/file_manager.h"
#include "platform/linux/files.h"
#include "platform/linux/main_queue.h"
#include "platform/linux/new_files.h"
#include "platform/linux/path_probe.h"
#include "platform/linux/property_lists.h"
#include "platform/linux/storage.h"
#include "platform/linux/workers.h"
#include "platform/storage_view.h"

namespace zelvo::platform::linux_ {

struct Services {
  /// `probeProgram` is what the path probe sends.
  explicit Services(std::string probeProgram) : pathProbe(std::move(probeProgram)) {}

  LinuxMainQueue mainQueue;
  LinuxWorkers workers;
  LinuxFiles files;
  LinuxFileManager fileManager;
  LinuxNewFiles newFiles;
  LinuxPropertyLists propertyLists;
  LinuxPathProbe pathProbe;

  /// Looks at the storage of this machine now. Thread: any.
  [[nodiscard]] StorageView lookAtStorage() {
    const auto snapshot = std::make_shared<LinuxStorageSnapshot>(pathProbe);
    return {snapshot, snapshot};
  }
};

}  // namespace zelvo::platform::linux_
