/// Scratch pairs on Linux. The first choice is the shared folder, when it exists and this user may write it; otherwise,
/// and for every further pair, a numbered folder of mode 0700 below the user's cache folder. A pair is held by a lock on
/// its folder, which the kernel frees however the process ends. // Decision 0061
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/scratch_paths.h"

namespace zelvo::platform::linux_ {

/// A folder that this process holds: open, and locked.
class HeldFolder;

class LinuxScratchPaths final : public ScratchPaths {
 public:
  /// `sharedFolder` is "/Applications" where this system has it, `cacheFolder` the user's ("~/.cache").
  LinuxScratchPaths(std::string sharedFolder, std::string cacheFolder);
  ~LinuxScratchPaths() override;
  LinuxScratchPaths(const LinuxScratchPaths&) = delete;
  LinuxScratchPaths& operator=(const LinuxScratchPaths&) = delete;

  [[nodiscard]] std::optional<ScratchPair> claim() override;
  [[nodiscard]] std::optional<ScratchPair> claimAnother() override;
  [[nodiscard]] bool mayWrite(const std::string& path, const std::optional<std::string>& input) override;

 private:
  std::string sharedFolder_;
  std::string cacheFolder_;
  std::vector<std::unique_ptr<HeldFolder>> held_;
};

}  // namespace zelvo::platform::linux_
