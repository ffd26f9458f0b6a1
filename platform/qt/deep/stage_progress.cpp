#include "platform/qt/deep/stage_progress.h"

#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "platform/qt/deep_texts.h"
#include "platform/qt/drawing/appearance.h"
#include "platform/qt/drawing/text.h"
#include "platform/qt/window/film_texts.h"

namespace zelvo::platform::qt {

namespace {

constexpr int kProgressGap = 8;
constexpr int kLookMilliseconds = 250;

/// "281.9 MB of 734.0 MB · about 40 s left"; empty while nobody knows how much there is.
QString figuresOf(const DeepProgress& progress, std::optional<double> secondsLeft) {
  if (progress.all == 0) return progress.done == 0 ? QString() : texts::megabytes(progress.done);
  const QString bytes =
      texts::doneOf(texts::megabytes(std::min(progress.done, progress.all)), texts::megabytes(progress.all));
  if (!secondsLeft) return bytes;
  return bytes + QStringLiteral(" \u00b7 ") + texts::timeLeft(texts::length(*secondsLeft));
}

}  // namespace

StageProgress::StageProgress() : stage_(new QLabel), bar_(new FlatProgressBar), figures_(new QLabel) {
  timer_.setInterval(kLookMilliseconds);
  connect(&timer_, &QTimer::timeout, this, [this] { showProgress(TimeLeft::Clock::now()); });
  for (QLabel* const label : {stage_, figures_}) label->setTextFormat(Qt::PlainText);
  stage_->setFont(textFont(kTextPixels, QFont::DemiBold));
  stage_->setWordWrap(true);
  figures_->setFont(textFont(kSmallPixels));
  figures_->setForegroundRole(QPalette::PlaceholderText);
  bar_->setAccessibleName(texts::runHeadline());
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(kProgressGap);
  column->addWidget(stage_);
  column->addWidget(bar_);
  column->addWidget(figures_);
  showProgress({});
}

void StageProgress::follow(std::function<DeepProgress()> look) {
  look_ = std::move(look);
  timeLeft_ = {};
  showProgress(TimeLeft::Clock::now());
}

void StageProgress::showProgress(TimeLeft::Clock::time_point now) {
  const DeepProgress progress = look_ ? look_() : DeepProgress{};
  if (progress.stage != std::exchange(lastStage_, progress.stage)) ++stagesSeen_;
  timeLeft_.note(now, stagesSeen_, progress.done, progress.all);
  const auto show = [](QLabel& label, const QString& text) {
    if (label.text() != text) label.setText(text);
  };
  show(*stage_, progress.stage.empty() ? texts::starting() : shown(progress.stage));
  show(*figures_, figuresOf(progress, timeLeft_.seconds()));
  bar_->setBusy(progress.all == 0);
  if (progress.all == 0) return;
  const double share = static_cast<double>(std::min(progress.done, progress.all)) / static_cast<double>(progress.all);
  bar_->setValue(static_cast<int>(share * bar_->maximum()));
}

void StageProgress::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  showProgress(TimeLeft::Clock::now());
  timer_.start();
}

void StageProgress::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  timer_.stop();
}

}  // namespace zelvo::platform::qt
