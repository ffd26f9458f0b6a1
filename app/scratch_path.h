/// Which scratch path a run writes: one of a pair that the platform was asked for once, at start.
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

  /// The path for `negvalue` (1: the first, any other: the second) and a run of `input`. Where that path cannot be
  /// written, since a link or another's file stands there or it is the input itself, another pair takes over.
  /// Answers an empty path when no pair can be written; creating that file then fails and is told as a write error.
  [[nodiscard]] std::string choose(std::uint8_t negvalue, const std::optional<std::string>& input);

 private:
  platform::ScratchPaths& paths_;
  std::optional<platform::ScratchPair> pair_;
};

}  // namespace zelvo::app
