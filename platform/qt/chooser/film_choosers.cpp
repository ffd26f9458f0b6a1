#include "platform/qt/chooser/film_choosers.h"

#include <utility>

#include "platform/qt/chooser/film_panel.h"
#include "platform/qt/chooser/new_file_panel.h"

namespace zelvo::platform::qt {

namespace {

std::optional<std::string> firstOf(std::vector<std::string> paths) {
  return paths.empty() ? std::nullopt : std::optional(std::move(paths.front()));
}

}  // namespace

QtFilmChoosers::QtFilmChoosers(PanelStack& stack, AlertPanels& alerts, std::shared_ptr<ChooserFiles> files,
                               PathProbe* probe)
    : memory_(std::make_shared<FilePanelMemory>(
          FilePanelMemory{.stack = stack, .alerts = alerts, .files = std::move(files), .probe = probe})) {}

QtFilmChoosers::~QtFilmChoosers() {
  // Panels that are still up go now, while the window is there; they and what they share hold each other.
  const auto shown = std::exchange(memory_->shownPanels, {});
}

void QtFilmChoosers::chooseFilms(const ChooserRequest& request, std::function<void(std::vector<std::string>)> answer) {
  std::make_shared<FilmPanel>(memory_, FilmPanel::Kind::films)->begin(request, std::move(answer));
}

void QtFilmChoosers::chooseFilm(const ChooserRequest& request, std::function<void(std::optional<std::string>)> answer) {
  std::make_shared<FilmPanel>(memory_, FilmPanel::Kind::film)
      ->begin(request, [answer = std::move(answer)](std::vector<std::string> paths) { answer(firstOf(paths)); });
}

void QtFilmChoosers::chooseFolder(const ChooserRequest& request,
                                  std::function<void(std::optional<std::string>)> answer) {
  std::make_shared<FilmPanel>(memory_, FilmPanel::Kind::folder)
      ->begin(request, [answer = std::move(answer)](std::vector<std::string> paths) { answer(firstOf(paths)); });
}

void QtFilmChoosers::chooseNewFile(const NewFileRequest& request,
                                   std::function<void(std::optional<NewFileAnswer>)> answer) {
  std::make_shared<NewFilePanel>(memory_)->begin(request, std::move(answer));
}

}  // namespace zelvo::platform::qt
