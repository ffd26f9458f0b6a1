/// How far a deep repair is: what is done now, a bar, how many bytes of it, and how long it may still take.
/// Thread: main.
#pragma once

#include <QLabel>
#include <QTimer>
#include <QWidget>
#include <functional>

#include "platform/deep_outlets.h"
#include "platform/qt/drawing/elements.h"
#include "platform/time_left.h"

namespace zelvo::platform::qt {

class StageProgress final : public QWidget, public DeepProgressView {
 public:
  StageProgress();

  // ---- platform::DeepProgressView ----
  void follow(std::function<DeepProgress()> look) override;

  /// Looks now; `now` says when that is.
  void showProgress(TimeLeft::Clock::time_point now);

  [[nodiscard]] FlatProgressBar& bar() const { return *bar_; }
  [[nodiscard]] QString stage() const { return stage_->text(); }
  [[nodiscard]] QString figures() const { return figures_->text(); }

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  std::function<DeepProgress()> look_;
  std::string lastStage_;
  int stagesSeen_ = 0;
  TimeLeft timeLeft_;
  QTimer timer_;  ///< runs while it is shown
  QLabel* stage_;
  FlatProgressBar* bar_;
  QLabel* figures_;
};

}  // namespace zelvo::platform::qt
