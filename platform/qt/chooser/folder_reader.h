/// Reads folders beside the main thread.
/// Thread: main.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "platform/chooser_files.h"
#include "platform/main_queue.h"

namespace zelvo::platform::qt {

/// Each folder is read on a thread of its own that nobody waits for: the folder of a network drive that is gone may
/// never answer, and neither the window nor its end hangs on it. // Decision: window, Nobody waits for folder readers
class FolderReader final {
 public:
  FolderReader(MainQueue& queue, std::shared_ptr<ChooserFiles> files) : queue_(queue), files_(std::move(files)) {}
  ~FolderReader() { abandon(); }
  FolderReader(const FolderReader&) = delete;
  FolderReader& operator=(const FolderReader&) = delete;

  /// Gives up what is being read, and reads `folder`; `told` then gets it, sorted, on the main thread. It is not called
  /// once the reader was given something else to read, or is gone.
  void read(const std::string& folder, const FileFilter& filter, std::function<void(FolderListing listing)> told);
  void abandon();

 private:
  struct Reading;

  MainQueue& queue_;
  std::shared_ptr<ChooserFiles> files_;  ///< a thread that still reads has its share
  std::shared_ptr<Reading> reading_;
};

}  // namespace zelvo::platform::qt
