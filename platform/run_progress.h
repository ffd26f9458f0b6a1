/// How far a run is, for a line below its progress bar. Sizes are in bytes.
#pragma once

#include <cstdint>
#include <functional>

namespace zelvo::platform {

enum class RunStage {
  none,       ///< no run, or it has not begun
  searching,  ///< the damaged file is read
  writing,    ///< the repaired file is written
};

struct RunProgress {
  RunStage stage = RunStage::none;
  std::uint64_t done = 0;  ///< of the stage
  std::uint64_t all = 0;   ///< 0 while it is not known
};

class RunProgressView {
 public:
  virtual ~RunProgressView() = default;
  /// From now on tells what `look` answers, and how long the stage may still take. `look` is asked some times a second
  /// while the page is shown, on the main thread. Thread: main.
  virtual void follow(std::function<RunProgress()> look) = 0;
};

}  // namespace zelvo::platform
