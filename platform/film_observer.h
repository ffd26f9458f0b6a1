/// Hears what becomes of the film that was chosen on the first page. No step of a flow depends on it. Thread: main.
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
  /// The sheet that refused it (not supported, invalid) was answered.
  virtual void filmRefused(const std::string& path) = 0;
  /// Its repaired film is shown on the result page.
  virtual void filmJudged(const std::string& path, FilmVerdict verdict) = 0;
};

}  // namespace zelvo::platform
