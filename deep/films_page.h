/// The page of several films: they are repaired one after the other, into one folder. Thread: main.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "deep/deep_services.h"
#include "deep/film_runs.h"
#include "deep/questions.h"
#include "deep/repaired_film.h"
#include "deep/scratch_folder.h"
#include "platform/actions.h"
#include "platform/deep_outlets.h"

namespace zelvo::deep {

class FilmsPage {
 public:
  /// `open` is told of a film whose result is asked for.
  FilmsPage(const DeepServices& services, const platform::DeepOutlets& outlets, FilmRuns& runs, ScratchFolder& scratch,
            std::function<void(std::shared_ptr<const RepairedFilm> film)> open);

  void wire(platform::Actions& actions);
  /// Asks for films; the page is shown once there are any.
  void chooseFilms();
  /// Puts films at the end of the queue, those left out that are in it already, and shows the page.
  void add(const std::vector<std::string>& paths);
  /// Something is at work, or waits for it.
  [[nodiscard]] bool isUndone() const;
  [[nodiscard]] bool isAtWork() const { return work_ != nullptr; }

 private:
  struct Entry {
    platform::QueuedFilm told;
    std::shared_ptr<const RepairedFilm> film;  ///< once it is done
  };
  /// One run of one film. A film that was stopped and started again may have two that have not ended.
  struct Work {
    std::shared_ptr<Entry> entry;
    std::shared_ptr<FilmRun> run;
  };

  void start();
  void beginNext();
  void ended(const std::shared_ptr<Work>& work, const std::shared_ptr<const RepairedFilm>& film);
  void moved(const std::shared_ptr<Work>& work, const salvage::FilmStep& step);
  void stop();
  void goHome();
  void openFilm(std::size_t index);
  void removeFilm(std::size_t index);
  void chooseFolder();
  void useFolder(const std::string& folder);
  [[nodiscard]] bool isFolderUsable();
  /// A path in the folder that nothing bears.
  [[nodiscard]] std::string freeOutput(const std::string& input);
  void tellAllDone();
  void show();
  void update(const std::shared_ptr<Entry>& entry);
  void enableButtons();
  void clear();

  const DeepServices services_;
  const platform::DeepOutlets outlets_;
  FilmRuns& runs_;
  ScratchFolder& scratch_;
  const std::function<void(std::shared_ptr<const RepairedFilm> film)> open_;
  Questions questions_;
  std::vector<std::shared_ptr<Entry>> entries_;
  std::shared_ptr<Work> work_;  ///< that the queue waits for
  std::string folder_;          ///< for the repaired films
};

}  // namespace zelvo::deep
