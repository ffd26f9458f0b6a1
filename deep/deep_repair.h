/// The deep repair in the window: what asks for it on the given pages, its own pages, and their end. It hears of the
/// films of the given pages and touches nothing of them but elements of its own. Thread: main.
///
/// Order of use: construct, `wire`, `start`, serve events, `programEnds`, wait for the workers, destroy.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "deep/deep_services.h"
#include "deep/film_runs.h"
#include "deep/films_page.h"
#include "deep/questions.h"
#include "deep/result_page.h"
#include "deep/run_page.h"
#include "deep/scratch_folder.h"
#include "platform/actions.h"
#include "platform/deep_outlets.h"
#include "platform/film_observer.h"

namespace zelvo::deep {

class DeepRepair final : public platform::FilmObserver {
 public:
  DeepRepair(const DeepServices& services, const platform::DeepOutlets& outlets);
  DeepRepair(const DeepRepair&) = delete;
  DeepRepair& operator=(const DeepRepair&) = delete;
  /// Does what `programEnds` does, if that was not called, and waits for its workers.
  ~DeepRepair() override;

  /// Connects the buttons to what they do.
  void wire(platform::Actions& actions);
  /// Has what windows that are no more have left behind removed, on a worker: films that were not saved, and copies
  /// that were not whole.
  void start();

  /// Several films were dropped on the first page. False when they cannot be taken now.
  bool takeFilms(const std::vector<std::string>& paths);

  void filmChosen(const std::string& path) override;
  void choiceCleared() override;
  void filmRefused(const std::string& path) override;
  void filmJudged(const std::string& path, platform::FilmVerdict verdict) override;
  [[nodiscard]] bool mayClose() override;
  void programEnds() override;

 private:
  void repairChosen();
  void repairOffered();
  void repair(const std::string& input);
  /// Once more what the result page shows.
  void repairWithDonor(const std::string& donor);
  void repaired(const std::shared_ptr<const RepairedFilm>& film, platform::DeepPage returnsTo);
  void failed(const RepairedFilm& film);
  void hideOffers();

  const DeepServices services_;
  const platform::DeepOutlets outlets_;
  Questions questions_;
  ScratchFolder scratch_;
  FilmRuns runs_;
  RunPage runPage_;
  ResultPage resultPage_;
  FilmsPage filmsPage_;
  std::optional<std::string> chosen_;   ///< on the first page
  std::optional<std::string> offered_;  ///< that an offer is about
};

}  // namespace zelvo::deep
