/// Where rebuilt files lie until they are saved: pairs of paths, each held by one running instance of the program.
#pragma once

#include <optional>
#include <string>
#include <system_error>

namespace zelvo::platform {

struct ScratchPair {
  std::string first;
  std::string second;
  std::string folder = {};  ///< the folder as the user knows it; what private pairs lie below
  bool isShared = false;    ///< it is the fixed, shared folder, which no choice of the user's replaces
};

/// Why there is no pair.
struct ScratchObstacle {
  std::string folder;  ///< the folder that was tried last
  std::error_code cause;
};

/// Thread: main.
class ScratchPaths {
 public:
  virtual ~ScratchPaths() = default;

  /// The pair of this instance, held until the program ends, however it ends. Asked at start, and again as long as
  /// there was none. What an earlier holder left in a private folder is gone. Nothing when no pair can be held at all:
  /// see `obstacle`.
  [[nodiscard]] virtual std::optional<ScratchPair> claim() = 0;

  /// One more pair, always in a private folder, for a program whose first one cannot be written. Both stay held.
  /// Folders of this user's that are missing are made.
  [[nodiscard]] virtual std::optional<ScratchPair> claimAnother() = 0;

  /// A pair below `folder`, which further private pairs lie below too, now and when the program is started again.
  /// Nothing, and all stays as it was, when none can be held there.
  [[nodiscard]] virtual std::optional<ScratchPair> moveTo(const std::string& folder) = 0;

  /// Why the last of the above answered nothing.
  [[nodiscard]] virtual ScratchObstacle obstacle() const = 0;

  /// True when this user can write a file at `path`: its folder is there, and is the one that was held when it is a
  /// pair's; and nothing stands at `path`, or a regular file of this user's that is not the file at `input`.
  [[nodiscard]] virtual bool mayWrite(const std::string& path, const std::optional<std::string>& input) = 0;
};

}  // namespace zelvo::platform
