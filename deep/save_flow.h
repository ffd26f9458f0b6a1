/// Saving a repaired film: a panel for its name, a copy on a worker with its sheet, and what is said at the end.
/// Thread: main.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "deep/deep_services.h"
#include "deep/film_copy.h"
#include "deep/questions.h"
#include "deep/repaired_film.h"
#include "platform/deep_outlets.h"

namespace zelvo::deep {

class SaveFlow {
 public:
  SaveFlow(const DeepServices& services, const platform::DeepOutlets& outlets);
  /// Stops a copy, and waits for its end.
  ~SaveFlow();
  SaveFlow(const SaveFlow&) = delete;
  SaveFlow& operator=(const SaveFlow&) = delete;

  /// Asks where to save it. `saved` is told once it lies there whole, before that is said.
  void save(std::shared_ptr<const RepairedFilm> film, std::function<void()> saved);
  /// Takes the sheet away at once; the copy is cleaned up behind.
  void stop();
  /// Nothing is heard of a copy any more, and none is begun.
  void close();

 private:
  struct Copy {
    std::shared_ptr<const RepairedFilm> film;
    CopyOrder order;
    bool withReport = false;
    std::function<void()> saved;
    CopyProgress progress;
    CopyEnd end;
    std::string reportPath;       ///< where the report was saved
    std::error_code reportError;  ///< why it was not
  };

  [[nodiscard]] std::string refusal(const RepairedFilm& film, const std::string& path);
  void placeChosen(const std::shared_ptr<const RepairedFilm>& film, const platform::NewFileAnswer& answer,
                   std::function<void()> saved);
  /// Thread: the worker.
  void copy(const std::shared_ptr<Copy>& copy);
  void copyReport(Copy& copy) const;
  void showProgress(const Copy& copy);
  void copyEnded(const std::shared_ptr<Copy>& copy);
  void hideSheet();
  void tellSaved(const Copy& copy);
  [[nodiscard]] std::string whyNot(const Copy& copy) const;

  const DeepServices services_;
  const platform::DeepOutlets outlets_;
  Questions questions_;
  std::shared_ptr<Copy> copy_;                              ///< that the sheet shows
  std::vector<std::shared_ptr<platform::Worker>> workers_;  ///< of copies that may not have ended yet
  bool isClosed_ = false;
};

}  // namespace zelvo::deep
