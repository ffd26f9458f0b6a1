/// Scratch pairs as a test lays them out.
/// Thread: main.
#pragma once

#include <deque>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/scratch_paths.h"

namespace zelvo::platform::headless {

class HeadlessScratchPaths final : public ScratchPaths {
 public:
  [[nodiscard]] std::optional<ScratchPair> claim() override {
    ++claims;
    return next();
  }
  [[nodiscard]] std::optional<ScratchPair> claimAnother() override { return next(); }
  [[nodiscard]] std::optional<ScratchPair> moveTo(const std::string& folder) override {
    movedTo.push_back(folder);
    if (folder == refusedFolder.folder) return std::nullopt;
    return ScratchPair{folder + "/testfile1.avi", folder + "/testfile2.avi", folder};
  }
  [[nodiscard]] ScratchObstacle obstacle() const override { return refusedFolder; }
  [[nodiscard]] bool mayWrite(const std::string& path, const std::optional<std::string>& input) override {
    return !refused.contains(path) && path != input;
  }

  /// Pairs in the order in which they are handed out.
  std::deque<ScratchPair> pairs = {
      {"/Applications/testfile1.avi", "/Applications/testfile2.avi", "/Applications", true},
      {"/cache/slot1/testfile1.avi", "/cache/slot1/testfile2.avi", "/cache", false}};
  /// Paths where something stands that must not be written.
  std::set<std::string> refused;
  /// What `obstacle` answers, and the folder that cannot be moved to.
  ScratchObstacle refusedFolder{"/cache", std::make_error_code(std::errc::permission_denied)};
  std::vector<std::string> movedTo;
  int claims = 0;

 private:
  std::optional<ScratchPair> next() {
    if (pairs.empty()) return std::nullopt;
    ScratchPair pair = pairs.front();
    pairs.pop_front();
    return pair;
  }
};

}  // namespace zelvo::platform::headless
