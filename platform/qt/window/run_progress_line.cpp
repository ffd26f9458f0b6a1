#include "platform/qt/window/run_progress_line.h"

#include <utility>

#include "platform/qt/drawing/appearance.h"
#include "platform/qt/window/film_texts.h"

namespace zelvo::platform::qt {

RunProgressLine::RunProgressLine(QWidget* parent) : ElidedLabel(parent) {
  constexpr int kMilliseconds = 250;
  timer_.setInterval(kMilliseconds);
  setFont(textFont(kSmallPixels));
  setForegroundRole(QPalette::PlaceholderText);
  connect(&timer_, &QTimer::timeout, this, [this] { showLine(TimeLeft::Clock::now()); });
}

void RunProgressLine::follow(std::function<RunProgress()> look) {
  look_ = std::move(look);
  timeLeft_ = {};
  showLine(TimeLeft::Clock::now());
}

void RunProgressLine::showLine(TimeLeft::Clock::time_point now) {
  const RunProgress progress = look_ ? look_() : RunProgress{};
  timeLeft_.note(now, static_cast<int>(progress.stage), progress.done, progress.all);
  const QString line = texts::progress(progress, timeLeft_.seconds());
  if (line != text()) setWholeText(line);
}

void RunProgressLine::showEvent(QShowEvent* event) {
  ElidedLabel::showEvent(event);
  showLine(TimeLeft::Clock::now());
  timer_.start();
}

void RunProgressLine::hideEvent(QHideEvent* event) {
  ElidedLabel::hideEvent(event);
  timer_.stop();
}

}  // namespace zelvo::platform::qt
