/// The page of a result: what was found, the damage picture, the preview, and what can be done with the film.
/// Thread: main.
#pragma once

#include <functional>
#include <memory>

#include "deep/deep_services.h"
#include "deep/film_runs.h"
#include "deep/questions.h"
#include "deep/repaired_film.h"
#include "deep/save_flow.h"
#include "platform/actions.h"
#include "platform/deep_outlets.h"

namespace zelvo::deep {

class ResultPage {
 public:
  struct Shown {
    std::shared_ptr<const RepairedFilm> film;
    bool isSaved = false;  ///< it lies where the user wants it
    platform::DeepPage returnsTo = platform::DeepPage::none;
    std::function<void()> left;  ///< the page was left with Home
  };

  /// `repairWithDonor` is told the film that lends its header.
  ResultPage(const DeepServices& services, const platform::DeepOutlets& outlets, FilmRuns& runs,
             std::function<void(const std::string& donor)> repairWithDonor);

  void wire(platform::Actions& actions);
  void show(Shown shown);
  /// Shows the page again as it was left for a run that came to nothing.
  void showAgain();
  /// Lets go of the film and its movie.
  void clear();
  /// What is shown, or was when a run began over it; no film without one.
  [[nodiscard]] const Shown& shown() const { return shown_; }
  /// A film is there that is not saved.
  [[nodiscard]] bool isUnsaved() const { return shown_.film && !shown_.film->path.empty() && !shown_.isSaved; }
  void askForDonor();
  void close();

 private:
  void showFilm();
  void loadMovie();
  void goHome();
  void leave();
  void save();
  void compare();
  void compared(const std::shared_ptr<const RepairedFilm>& film, const FilmEnd& check);
  void goTo(double seconds);

  const DeepServices services_;
  const platform::DeepOutlets outlets_;
  FilmRuns& runs_;
  const std::function<void(const std::string& donor)> repairWithDonor_;
  Questions questions_;
  SaveFlow saveFlow_;
  Shown shown_;
  std::shared_ptr<platform::Movie> movie_;
  std::shared_ptr<FilmRun> check_;  ///< of the comparison that is being made
};

}  // namespace zelvo::deep
