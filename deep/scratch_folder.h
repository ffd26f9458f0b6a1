/// A folder of this program's own, in which repaired films lie until they are saved. A lock in it is held while this
/// program or one that it has started lives; where it is free, the next window removes the folder.
#pragma once

#include <memory>
#include <string>
#include <system_error>
#include <vector>

#include "deep/deep_services.h"

namespace zelvo::deep {

/// Thread: main, unless a function says otherwise.
class ScratchFolder {
 public:
  explicit ScratchFolder(const DeepServices& services) : services_(services) {}
  /// Removes the folder with all that is in it.
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  struct Made {
    std::string path;  ///< empty when there is none
    std::string tried;
    std::error_code error;
  };
  /// A new, empty folder within it; itself is made with the first.
  [[nodiscard]] Made makeFolder();
  /// Removes one of them, on a worker.
  void remove(const std::string& folder);
  /// Null before the first folder, and where the file system knows no locks.
  [[nodiscard]] std::shared_ptr<const platform::FileLock> lock() const { return lock_; }

  /// Removes what programs that are no more have left in these folders. False when something is there that a program
  /// still holds. Thread: any.
  static bool removeLeftovers(const DeepServices& services, const std::vector<std::string>& bases);

 private:
  [[nodiscard]] std::error_code makeOwnIn(const std::string& base, bool makesAbove);

  DeepServices services_;
  std::string own_;  ///< empty while there is none
  std::shared_ptr<const platform::FileLock> lock_;
  int made_ = 0;
};

}  // namespace zelvo::deep
