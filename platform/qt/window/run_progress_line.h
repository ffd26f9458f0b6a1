/// The line below the progress bar: what is done now, how much of it, and how long it may still take.
/// Thread: main.
#pragma once

#include <QTimer>
#include <functional>

#include "platform/qt/drawing/elements.h"
#include "platform/run_progress.h"
#include "platform/time_left.h"

namespace zelvo::platform::qt {

class RunProgressLine final : public ElidedLabel, public RunProgressView {
 public:
  explicit RunProgressLine(QWidget* parent = nullptr);

  void follow(std::function<RunProgress()> look) override;
  /// Looks now; `now` says when that is.
  void showLine(TimeLeft::Clock::time_point now);

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  std::function<RunProgress()> look_;
  TimeLeft timeLeft_;
  QTimer timer_;  ///< runs while the line is shown
};

}  // namespace zelvo::platform::qt
