/// What the engine needs of whoever runs it: somewhere to hand progress and the finished file to. The engine declares
/// it; the controller and the command line implement it.
#pragma once

#include <string>

namespace zelvo::engine {

class ProgressRelay {
 public:
  virtual ~ProgressRelay() = default;

  /// `setProgressBarValue:` stores how far a worker is, in percent (0 to 100). Must be cheap: it is called once per
  /// byte position of the header harvest and ten times per 1024-byte block of the animation.
  /// Thread: any worker.
  virtual void setProgressBarValue(double percent) = 0;

  /// `updateProgressBar:`, `updateSaveProgressBar:`, `updateSaveProgressBar2:` show the stored value.
  /// Thread: main.
  virtual void updateProgressBar() = 0;
  virtual void updateSaveProgressBar() = 0;
  virtual void updateSaveProgressBar2() = 0;

  /// `setMovieView:` takes the path of the rebuilt file, which is complete and closed.
  /// Thread: the repair worker.
  virtual void setMovieView(const std::string& path) = 0;
};

}  // namespace zelvo::engine
