#include "app/scratch_path.h"

namespace zelvo::app {

std::string ScratchPath::choose(std::uint8_t negvalue, const std::optional<std::string>& input) {
  constexpr int kMostPairs = 4;
  for (int tried = 0; pair_ && tried < kMostPairs; ++tried) {
    const std::string& path = negvalue == 1 ? pair_->first : pair_->second;
    if (paths_.mayWrite(path, input)) return path;
    // Decision 0061
    pair_ = paths_.claimAnother();
  }
  return {};
}

}  // namespace zelvo::app
