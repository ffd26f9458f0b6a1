#include "app/scratch_path.h"

#include <utility>

namespace zelvo::app {

std::string ScratchPath::choose(std::uint8_t which, const std::optional<std::string>& input) {
  constexpr int kMaxPairs = 4;
  if (!pair_) pair_ = paths_.claim();
  for (int tried = 0; pair_ && tried < kMaxPairs; ++tried) {
    const std::string& path = which == 1 ? pair_->first : pair_->second;
    if (paths_.mayWrite(path, input)) return path;
    // Decision: runs, Scratch pairs are held by a lock
    pair_ = paths_.claimAnother();
  }
  return {};
}

bool ScratchPath::moveTo(const std::string& folder) {
  auto moved = paths_.moveTo(folder);
  if (!moved) return false;
  pair_ = std::move(moved);
  return true;
}

}  // namespace zelvo::app
