/// Scratch pairs on Linux. The first choice is the shared folder, when it exists and this user may write it; otherwise,
/// and for every further pair, a numbered folder of mode 0700 below the folder that the user has chosen, or else below
/// the user's cache folder. A pair is held by a lock on its folder, which the kernel frees however the process ends.
/// The chosen folder's path is the content of a small file. // Decision: runs, Scratch pairs are held by a lock
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
  /// `sharedFolder` is "/Applications" where this system has it, `cacheFolder` the user's ("~/.cache"), `choiceFile`
  /// what remembers the chosen folder; nothing is remembered where it is empty.
  LinuxScratchPaths(std::string sharedFolder, std::string cacheFolder, std::string choiceFile = {});
  ~LinuxScratchPaths() override;
  LinuxScratchPaths(const LinuxScratchPaths&) = delete;
  LinuxScratchPaths& operator=(const LinuxScratchPaths&) = delete;

  [[nodiscard]] std::optional<ScratchPair> claim() override;
  [[nodiscard]] std::optional<ScratchPair> claimAnother() override;
  [[nodiscard]] std::optional<ScratchPair> moveTo(const std::string& folder) override;
  /// The folders that private pairs lie in, the chosen one first. They need not be there.
  [[nodiscard]] std::vector<std::string> privateFolders() const;
  [[nodiscard]] ScratchObstacle obstacle() const override { return obstacle_; }
  [[nodiscard]] bool mayWrite(const std::string& path, const std::optional<std::string>& input) override;

 private:
  struct Held;

  /// Holds a numbered folder below `base`, which is there.
  [[nodiscard]] std::optional<ScratchPair> holdSlotBelow(const std::string& base, bool isChosen);
  /// Notes why there is no pair below `base`: what the last call to the system met.
  std::nullopt_t refused(const std::string& base);
  void remember();

  std::string sharedFolder_;
  std::string cacheFolder_;
  std::string choiceFile_;
  std::string chosenFolder_;  ///< empty when none was chosen
  ScratchObstacle obstacle_;
  std::vector<Held> held_;
};

}  // namespace zelvo::platform::linux_
