/// Which scratch path a run writes: one of a pair that the platform holds for this program.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/scratch_paths.h"

namespace zelvo::app {

/// Thread: main.
class ScratchPath {
 public:
  explicit ScratchPath(platform::ScratchPaths& paths) : paths_(paths), pair_(paths.claim()) {}

  /// The path for `which` (1: the first, any other: the second) and a run of `input`. Where that path cannot be
  /// written, since its folder is gone, a link or another's file stands there or it is the input itself, another pair
  /// takes over. Answers an empty path when no pair can be written; it is asked for again at the next call.
  [[nodiscard]] std::string choose(std::uint8_t which, const std::optional<std::string>& input);

  /// A pair below `folder` takes over, and is remembered. False, and nothing changes, when none can be held there.
  [[nodiscard]] bool moveTo(const std::string& folder);

  /// The pair in use; nothing while there is none.
  [[nodiscard]] const std::optional<platform::ScratchPair>& pair() const { return pair_; }

 private:
  platform::ScratchPaths& paths_;
  std::optional<platform::ScratchPair> pair_;
};

}  // namespace zelvo::app
