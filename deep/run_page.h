/// The page of a run: one film that is being worked on. Thread: main.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "deep/deep_services.h"
#include "deep/film_runs.h"
#include "deep/questions.h"
#include "deep/repaired_film.h"
#include "deep/scratch_folder.h"
#include "platform/actions.h"
#include "platform/deep_outlets.h"

namespace zelvo::deep {

class RunPage {
 public:
  struct Work {
    std::string input;
    std::optional<std::string> donor;
    /// Told what the run brought, unless it was stopped; the page is still shown then.
    std::function<void(std::shared_ptr<const RepairedFilm> film)> ended;
    std::function<void()> left;  ///< it was stopped, or did not begin; the page is not shown any more, or never was
  };

  RunPage(const DeepServices& services, const platform::DeepOutlets& outlets, FilmRuns& runs, ScratchFolder& scratch);

  void wire(platform::Actions& actions);
  /// Shows the page and begins, or says why it cannot.
  void start(Work work);
  [[nodiscard]] bool isAtWork() const { return run_ != nullptr; }
  /// The page goes at once; the program is waited for behind.
  void stop();

 private:
  void goHome();
  void ended(const std::shared_ptr<FilmRun>& run, const std::shared_ptr<const RepairedFilm>& film);
  [[nodiscard]] platform::DeepProgress progress() const;

  const DeepServices services_;
  const platform::DeepOutlets outlets_;
  FilmRuns& runs_;
  ScratchFolder& scratch_;
  Questions questions_;
  Work work_;
  std::shared_ptr<FilmRun> run_;  ///< that the page shows
};

/// Has a program repair a film, and puts together what it brought on the worker that waits for it.
/// \return null where the system gives no thread
[[nodiscard]] std::shared_ptr<FilmRun> startRepair(const DeepServices& services, FilmRuns& runs,
                                                   const ScratchFolder& scratch, const RepairOrder& order,
                                                   std::function<void(std::shared_ptr<const RepairedFilm> film)> ended,
                                                   std::function<void(const salvage::FilmStep& step)> moved = {});

}  // namespace zelvo::deep
