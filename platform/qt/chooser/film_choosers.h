/// The choosers of the deep repair as panels of the window.
/// Thread: main.
#pragma once

#include <memory>

#include "platform/chooser_files.h"
#include "platform/film_choosers.h"
#include "platform/panels.h"
#include "platform/path_probe.h"
#include "platform/qt/chooser/shown_file_panel.h"
#include "platform/qt/panels/panel_stack.h"

namespace zelvo::platform::qt {

/// A chooser that is still up when this goes gives no answer.
class QtFilmChoosers final : public FilmChoosers {
 public:
  /// `alerts` asks whether a file may be replaced. With a `probe`, no chooser looks at a path that does not answer.
  QtFilmChoosers(PanelStack& stack, AlertPanels& alerts, std::shared_ptr<ChooserFiles> files,
                 PathProbe* probe = nullptr);
  ~QtFilmChoosers() override;
  QtFilmChoosers(const QtFilmChoosers&) = delete;
  QtFilmChoosers& operator=(const QtFilmChoosers&) = delete;

  void chooseFilms(const ChooserRequest& request, std::function<void(std::vector<std::string>)> answer) override;
  void chooseFilm(const ChooserRequest& request, std::function<void(std::optional<std::string>)> answer) override;
  void chooseFolder(const ChooserRequest& request, std::function<void(std::optional<std::string>)> answer) override;
  void chooseNewFile(const NewFileRequest& request, std::function<void(std::optional<NewFileAnswer>)> answer) override;

 private:
  std::shared_ptr<FilePanelMemory> memory_;
};

}  // namespace zelvo::platform::qt
