/// A look at paths that may never answer: on a disk that hangs, or on a server that is gone. Whoever asks such a path
/// directly waits for ever. Sizes are in bytes.
#pragma once

#include <cstdint>
#include <string>
#include <system_error>
#include <vector>

namespace zelvo::platform {

/// What the file system behind a path told about itself.
struct PathAnswer {
  /// False when nothing came in time: to ask the path directly may take for ever. A path that is not there answers.
  bool answered = true;
  /// Why the rest is not known: the file system's own error, or `timed_out` without an answer.
  std::error_code error;
  std::uint64_t free = 0;      ///< what this user may still write
  std::uint64_t capacity = 0;  ///< what the file system holds when it is empty
};

/// Thread: any.
class PathProbe {
 public:
  virtual ~PathProbe() = default;

  /// Asks all the paths (whole ones) at once, symbolic links followed. Waits for a second at the most, in all.
  /// \return one answer per path, in their order
  /// Failure: where nobody can be sent to ask, the paths count as answering, and each answer's error says why.
  [[nodiscard]] virtual std::vector<PathAnswer> ask(const std::vector<std::string>& paths) = 0;

  /// True when every one of the paths answers.
  [[nodiscard]] bool answers(const std::vector<std::string>& paths) {
    for (const PathAnswer& answer : ask(paths)) {
      if (!answer.answered) return false;
    }
    return true;
  }
};

}  // namespace zelvo::platform
