#include "deep/deep_repair.h"

#include "deep/remembered.h"
#include "deep/texts.h"
#include "platform/paths.h"
#include "salvage/batch_run.h"

namespace zelvo::deep {

namespace {

/// How often what is left behind is looked at.
constexpr int kLooks = 5;
constexpr std::chrono::milliseconds kBetweenLooks{2000};

}  // namespace

DeepRepair::DeepRepair(const DeepServices& services, const platform::DeepOutlets& outlets)
    : services_(services),
      outlets_(outlets),
      questions_(services.alertPanels, services.translator),
      scratch_(services),
      runs_(services),
      runPage_(services, outlets, runs_, scratch_),
      resultPage_(services, outlets, runs_, [this](const std::string& donor) { repairWithDonor(donor); }),
      filmsPage_(services, outlets, runs_, scratch_, [this](const std::shared_ptr<const RepairedFilm>& film) {
        resultPage_.show({.film = film, .isSaved = true, .returnsTo = platform::DeepPage::films, .left = {}});
      }) {
  outlets_.deeprepairbutton.setEnabled(false);
}

DeepRepair::~DeepRepair() { programEnds(); }

void DeepRepair::wire(platform::Actions& actions) {
  actions.connect(outlets_.deeprepairbutton, [this](platform::Button&) { repairChosen(); });
  actions.connect(outlets_.addfilmsbutton, [this](platform::Button&) { filmsPage_.chooseFilms(); });
  actions.connect(outlets_.refusedofferbutton, [this](platform::Button&) { repairOffered(); });
  actions.connect(outlets_.partlyofferbutton, [this](platform::Button&) { repairOffered(); });
  runPage_.wire(actions);
  resultPage_.wire(actions);
  filmsPage_.wire(actions);
}

void DeepRepair::start() {
  std::vector<std::string> written;
  for (const std::string_view key : {remembered::kSaveFolder, remembered::kWrittenFolder}) {
    if (const auto folder = services_.settings.value(key)) written.push_back(*folder);
  }
  const auto remove = [services = services_, bases = services_.scratchFolders(), written] {
    // A program whose window was killed may live for some moments more.
    for (int look = 0; look < kLooks && !ScratchFolder::removeLeftovers(services, bases); ++look) {
      services.clock.sleepFor(kBetweenLooks);
    }
    for (const std::string& folder : written) {
      if (!services.pathProbe.answers({folder})) continue;
      salvage::removeDeadFiles(folder, services.fileManager, services.lockedFiles);
    }
  };
  // Without a thread it all stays until the next start.
  static_cast<void>(services_.workers.start(std::make_shared<platform::CancelMark>(), remove));
}

bool DeepRepair::takeFilms(const std::vector<std::string>& paths) {
  if (paths.empty() || !outlets_.pages.isChoosing()) return false;
  filmsPage_.add(paths);
  return true;
}

void DeepRepair::repairChosen() {
  if (const auto path = chosen_) repair(*path);
}

void DeepRepair::repairOffered() {
  if (const auto path = offered_) repair(*path);
}

void DeepRepair::repair(const std::string& input) {
  static constexpr auto kBack = platform::DeepPage::none;
  runPage_.start({.input = input,
                  .donor = {},
                  .ended =
                      [this](const auto& film) {
                        if (film->end.isJudged()) return repaired(film, kBack);
                        outlets_.pages.show(kBack);
                        failed(*film);
                      },
                  .left = [this] { outlets_.pages.show(kBack); }});
}

void DeepRepair::repairWithDonor(const std::string& donor) {
  const ResultPage::Shown& shown = resultPage_.shown();
  runPage_.start({.input = shown.film->order.input,
                  .donor = donor,
                  .ended =
                      [this](const auto& film) {
                        // The result that there was stays until there is another.
                        if (film->end.isJudged()) return repaired(film, resultPage_.shown().returnsTo);
                        resultPage_.showAgain();
                        failed(*film);
                      },
                  .left = [this] { resultPage_.showAgain(); }});
}

void DeepRepair::failed(const RepairedFilm& film) {
  scratch_.remove(film.order.folder);
  questions_.tell(texts::kFailedTitle,
                  failureWords(film.end, platform::nameOf(film.order.input), services_.translator));
}

void DeepRepair::repaired(const std::shared_ptr<const RepairedFilm>& film, platform::DeepPage returnsTo) {
  if (const auto left = resultPage_.shown().left) left();
  resultPage_.show(
      {.film = film, .isSaved = false, .returnsTo = returnsTo, .left = [this, folder = film->order.folder] {
         scratch_.remove(folder);
       }});
  if (!film->lacksHeader || film->order.donor) return;
  const int answer = questions_.choose(texts::kDonorTitle, questions_.translated(texts::kDonorQuestion),
                                       texts::kChooseDonor, texts::kNotNow);
  if (answer == platform::kAlertDefault && resultPage_.shown().film == film) resultPage_.askForDonor();
}

void DeepRepair::hideOffers() {
  offered_.reset();
  outlets_.refusedoffer.hide();
  outlets_.partlyoffer.hide();
}

void DeepRepair::filmChosen(const std::string& path) {
  chosen_ = path;
  hideOffers();
  outlets_.deeprepairbutton.setEnabled(true);
}

void DeepRepair::choiceCleared() {
  chosen_.reset();
  hideOffers();
  outlets_.deeprepairbutton.setEnabled(false);
}

void DeepRepair::filmRefused(const std::string& path) {
  offered_ = path;
  const std::string name = platform::nameOf(path);
  outlets_.refusedoffer.show(platform::filled(services_.translator.translated(texts::kRefusedOffer), {name}));
}

void DeepRepair::filmJudged(const std::string& path, platform::FilmVerdict verdict) {
  hideOffers();
  if (verdict == platform::FilmVerdict::good) return;
  offered_ = path;
  outlets_.partlyoffer.show(services_.translator.translated(texts::kPartlyOffer));
}

bool DeepRepair::mayClose() {
  if (runPage_.isAtWork() && !questions_.agrees(texts::kAtWorkTitle, questions_.translated(texts::kAtWork),
                                                texts::kStay, texts::kStopAndLeave)) {
    return false;
  }
  if (filmsPage_.isUndone() &&
      !questions_.agrees(texts::kUndoneTitle, questions_.translated(texts::kUndone), texts::kStay, texts::kLeave)) {
    return false;
  }
  return !resultPage_.isUnsaved() ||
         questions_.agrees(texts::kUnsavedTitle, questions_.translated(texts::kUnsaved), texts::kStay, texts::kLeave);
}

void DeepRepair::programEnds() {
  runs_.close();
  resultPage_.close();
}

}  // namespace zelvo::deep
