#include "deep/result_page.h"

#include <utility>

#include "deep/comparison.h"
#include "deep/remembered.h"
#include "deep/result_words.h"
#include "deep/texts.h"
#include "platform/paths.h"

namespace zelvo::deep {

ResultPage::ResultPage(const DeepServices& services, const platform::DeepOutlets& outlets, FilmRuns& runs,
                       std::function<void(const std::string& donor)> repairWithDonor)
    : services_(services),
      outlets_(outlets),
      runs_(runs),
      repairWithDonor_(std::move(repairWithDonor)),
      questions_(services.alertPanels, services.translator),
      saveFlow_(services, outlets) {}

void ResultPage::wire(platform::Actions& actions) {
  actions.connect(outlets_.savebutton, [this](platform::Button&) { save(); });
  actions.connect(outlets_.savestopbutton, [this](platform::Button&) { saveFlow_.stop(); });
  actions.connect(outlets_.copyreportbutton, [this](platform::Button&) {
    if (shown_.film) services_.clipboard.setText(plainText(shown_.film->result, services_.translator));
  });
  actions.connect(outlets_.comparebutton, [this](platform::Button&) { compare(); });
  actions.connect(outlets_.donorbutton, [this](platform::Button&) { askForDonor(); });
  actions.connect(outlets_.resulthome, [this](platform::Button&) { goHome(); });
  outlets_.result.setTimeReceiver([this](double seconds) { goTo(seconds); });
}

void ResultPage::show(Shown shown) {
  clear();
  shown_ = std::move(shown);
  outlets_.result.show(shown_.film->result);
  outlets_.comparebutton.setEnabled(true);
  showFilm();
}

void ResultPage::showAgain() { showFilm(); }

void ResultPage::showFilm() {
  const bool isThere = !shown_.film->path.empty();
  outlets_.savebutton.setEnabled(isThere);
  outlets_.donorbutton.setHidden(!shown_.film->lacksHeader);
  if (isThere && !movie_) loadMovie();
  outlets_.pages.show(platform::DeepPage::result);
}

void ResultPage::loadMovie() {
  platform::LoadedMovie loaded = services_.movies.movieWithFile(shown_.film->path);
  if (loaded.error) platform::logLine(services_.log, "%@", *loaded.error);
  movie_ = std::move(loaded.movie);
  outlets_.movieview.setMovie(movie_);
}

void ResultPage::clear() {
  if (movie_) movie_->stop();
  movie_.reset();
  outlets_.movieview.setMovie(nullptr);
  if (check_) {
    check_->forget();
    check_->stop();
    check_.reset();
  }
  shown_ = {};
}

void ResultPage::close() {
  saveFlow_.close();
  if (movie_) movie_->stop();
}

void ResultPage::goTo(double seconds) {
  if (movie_) movie_->gotoTime(seconds);
}

void ResultPage::save() {
  if (!shown_.film || shown_.film->path.empty()) return;
  saveFlow_.save(shown_.film, [this, film = shown_.film] {
    if (shown_.film == film) shown_.isSaved = true;
  });
}

void ResultPage::goHome() {
  if (!isUnsaved()) return leave();
  const auto film = shown_.film;
  const int answer = questions_.choose(texts::kUnsavedTitle, questions_.translated(texts::kUnsaved), texts::kSaveFirst,
                                       texts::kCancel, texts::kDoNotSave);
  if (shown_.film != film) return;
  if (answer == platform::kAlertDefault) return save();
  if (answer == platform::kAlertOther) leave();
}

void ResultPage::leave() {
  const Shown left = std::exchange(shown_, {});
  clear();
  outlets_.pages.show(left.returnsTo);
  if (left.left) left.left();
}

void ResultPage::askForDonor() {
  if (!shown_.film) return;
  const auto film = shown_.film;
  services_.choosers.chooseFilm(
      {.title = questions_.translated(texts::kDonorChooser),
       .prompt = questions_.translated(texts::kDonorPrompt),
       .folder = services_.settings.value(remembered::kDonorFolder).value_or(platform::folderOf(film->order.input))},
      [this, film](const std::optional<std::string>& donor) {
        if (!donor || shown_.film != film) return;
        services_.settings.setValue(remembered::kDonorFolder, platform::folderOf(*donor));
        if (movie_) movie_->stop();
        repairWithDonor_(*donor);
      });
}

void ResultPage::compare() {
  if (!shown_.film || check_ || runs_.isClosed()) return;
  outlets_.comparebutton.setEnabled(false);
  FilmOrder order{.arguments = checkArguments(shown_.film->order.input)};
  order.ended = [this, film = shown_.film](const FilmEnd& end) { compared(film, end); };
  check_ = runs_.start(std::move(order));
  if (!check_) compared(shown_.film, FilmEnd{.kind = FilmEnd::Kind::notStarted});
}

void ResultPage::compared(const std::shared_ptr<const RepairedFilm>& film, const FilmEnd& check) {
  if (shown_.film != film) return;
  check_.reset();
  const salvage::SalvageReport* report = film->path.empty() || !film->report ? nullptr : &*film->report;
  outlets_.result.showComparison(comparisonOf(check, report, services_.translator));
  // What came of it stays the same, unless nothing did.
  outlets_.comparebutton.setEnabled(!check.isJudged());
}

}  // namespace zelvo::deep
