/// The deep repair's part of the window: its pages over the three of the given flow, the sheet of its save, and what
/// asks for it.
/// Thread: main.
#pragma once

#include "platform/deep_outlets.h"
#include "platform/movies.h"
#include "platform/qt/deep/films_page.h"
#include "platform/qt/deep/result_page.h"
#include "platform/qt/deep/run_page.h"
#include "platform/qt/drawing/elements.h"
#include "platform/qt/panels/panel_frame.h"
#include "platform/qt/window/main_window.h"

namespace zelvo::platform::qt {

class QtDeepPages final : public DeepPages {
 public:
  /// To be made before the window's hosted views are dressed; `window` outlives it. `movie` shows what `movieView` is
  /// given; the window takes it over.
  QtDeepPages(MainWindow& window, MoviePane* movie, MovieView& movieView);

  // ---- platform::DeepPages ----
  void show(DeepPage page) override;
  [[nodiscard]] DeepPage shown() const override { return shown_; }
  [[nodiscard]] bool isChoosing() const override { return window_.isChoosing(); }

  [[nodiscard]] const DeepOutlets& outlets() const { return *outlets_; }

  // ---- For tests and pictures of the window ----
  [[nodiscard]] DeepRunPage& runPage() const { return *run_; }
  [[nodiscard]] DeepResultPage& resultPage() const { return *result_; }
  [[nodiscard]] FilmsPage& filmsPage() const { return *films_; }
  [[nodiscard]] PanelFrame& savePanel() const { return save_; }

 private:
  [[nodiscard]] WindowPage* pageOf(DeepPage page) const;
  void tellOfTheEnd();
  void fillOutlets(MovieView& movieView);

  MainWindow& window_;
  DeepPage shown_ = DeepPage::none;
  DeepRunPage* run_;
  DeepResultPage* result_;
  FilmsPage* films_;
  PanelFrame& save_;
  FlatProgressBar& saveBar_;
  QtProgressBar saveprogressbar_;
  QtTextField savebytestext_;
  QtButton& savestopbutton_;
  std::unique_ptr<DeepOutlets> outlets_;
};

}  // namespace zelvo::platform::qt
