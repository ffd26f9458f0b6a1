/// Hears what becomes of the film that was chosen on the first page, and that the window is to go. No step of a flow
/// depends on it, but for the answer of `mayClose`. Thread: main.
#pragma once

#include <string>

#include "platform/film_report.h"

namespace zelvo::platform {

class FilmObserver {
 public:
  virtual ~FilmObserver() = default;
  virtual void filmChosen(const std::string& path) = 0;
  /// No film is chosen any more.
  virtual void choiceCleared() = 0;
  /// The sheet that refused it (not supported, invalid) was answered. Told after `choiceCleared`.
  virtual void filmRefused(const std::string& path) = 0;
  /// Its repaired film is shown on the result page. Told again when the verdict changes there.
  virtual void filmJudged(const std::string& path, FilmVerdict verdict) = 0;
  /// The window was asked to close. Asks the user about what would be lost; false when it shall stay.
  [[nodiscard]] virtual bool mayClose() = 0;
  /// The program ends: all work is asked to end, nobody is asked anything, and from now on nothing is begun. Told
  /// before workers are waited for.
  virtual void programEnds() = 0;
};

}  // namespace zelvo::platform
