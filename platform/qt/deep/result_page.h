/// The page that shows what came of a deep repair.
/// Thread: main, but for the functions of platform::DeepResultView, which any thread may call.
#pragma once

#include <QBoxLayout>
#include <QGridLayout>
#include <QLabel>
#include <functional>

#include "platform/deep_outlets.h"
#include "platform/qt/damage/damage_view.h"
#include "platform/qt/deep/comparison_table.h"
#include "platform/qt/deep/loss_list.h"
#include "platform/qt/drawing/elements.h"
#include "platform/qt/drawing/picture_widget.h"
#include "platform/qt/preview/movie_pane.h"
#include "platform/qt/window/window_page.h"

namespace zelvo::platform::qt {

class DeepResultPage final : public WindowPage, public DeepResultView {
 public:
  /// `movie` shows the film; the page takes it over.
  DeepResultPage(const PageParts& parts, MoviePane* movie);

  // ---- platform::DeepResultView ----
  void show(DeepResult result) override;
  void showComparison(const DeepComparison& comparison) override;
  void setTimeReceiver(std::function<void(double seconds)> receiver) override;

  QtButton* savebutton;
  QtButton* copyreportbutton;
  QtButton* comparebutton;
  QtButton* donorbutton;

  [[nodiscard]] DamageView& damage() const { return *damage_; }
  [[nodiscard]] LossList& losses() const { return *losses_; }
  [[nodiscard]] ComparisonTable& comparison() const { return *comparison_; }
  [[nodiscard]] QString sentence() const { return sentence_->text(); }
  /// Name of the picture beside it.
  [[nodiscard]] const std::string& verdictPicture() const { return verdict_->name(); }

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  [[nodiscard]] QLayout* head();
  [[nodiscard]] QWidget* damageSide();
  [[nodiscard]] QWidget* filmSide();
  void arrange();
  void display(DeepResult result);
  void showLines(const std::vector<DeepLine>& lines);
  void displayComparison(const DeepComparison& comparison);
  void joinLosses();

  MainQueue& queue_;
  MoviePane* movie_;
  PictureWidget* verdict_;
  ElidedLabel* film_;
  QLabel* sentence_;
  ComparisonTable* comparison_;
  QBoxLayout* sides_;
  QWidget* filmSide_ = nullptr;
  DamageView* damage_;
  QLabel* lossesTitle_;
  LossList* losses_;
  QLabel* leftOut_;
  QGridLayout* lines_;
  std::function<void(double seconds)> timeReceiver_;
};

}  // namespace zelvo::platform::qt
