/// Where rebuilt files lie until they are saved: pairs of paths, each held by one running instance of the program.
#pragma once

#include <optional>
#include <string>

namespace zelvo::platform {

struct ScratchPair {
  std::string first;
  std::string second;
};

/// Thread: main.
class ScratchPaths {
 public:
  virtual ~ScratchPaths() = default;

  /// The pair of this instance, held until the program ends, however it ends. Asked once, at start. What an earlier
  /// holder left in a private folder is gone. Nothing when no pair can be held at all.
  [[nodiscard]] virtual std::optional<ScratchPair> claim() = 0;

  /// One more pair, always in a private folder, for a program whose first one cannot be written. Both stay held.
  [[nodiscard]] virtual std::optional<ScratchPair> claimAnother() = 0;

  /// True when nothing stands at `path`, or a regular file of this user's that is not the file at `input`.
  [[nodiscard]] virtual bool mayWrite(const std::string& path, const std::optional<std::string>& input) = 0;
};

}  // namespace zelvo::platform
