/// The updater's files: its copy beside the application, and what former updaters left behind.
#pragma once

#include "platform/bundle.h"
#include "platform/clock.h"
#include "platform/file_manager.h"
#include "platform/folder_trees.h"
#include "platform/path_mapper.h"

namespace zelvo::update {

/// Thread: any; one call at a time.
class UpdaterFiles {
 public:
  UpdaterFiles(platform::FileManager& fileManager, platform::FolderTrees& trees, platform::Clock& clock,
               const platform::Bundle& bundle, const platform::PathMapper& pathMapper);

  /// Puts the updater that the bundle carries beside the bundle when none is there, and puts it there again when the
  /// marker of an update is there; the marker goes. Failure: ignored, step by step. No flow calls it.
  void copyUpdator();
  /// Waits ten seconds, then removes the leftovers four levels above the bundle. Failure: ignored, one by one.
  /// No flow calls it. Thread: one of its own.
  void updateCleanupThread();

 private:
  platform::FileManager& fileManager_;
  platform::FolderTrees& trees_;
  platform::Clock& clock_;
  const platform::Bundle& bundle_;
  const platform::PathMapper& pathMapper_;
};

}  // namespace zelvo::update
