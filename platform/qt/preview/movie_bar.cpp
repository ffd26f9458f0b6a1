// The bar changes nothing by itself: it asks the movie, and shows what the movie tells. While a person holds the handle
// a movie that plays is held too, and what is under the handle is shown; only letting go at the end is the end.
#include "platform/qt/preview/movie_bar.h"

#include <QGridLayout>
#include <QKeyEvent>
#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "platform/qt/drawing/appearance.h"
#include "platform/qt/drawing/text.h"
#include "platform/qt/preview/preview_texts.h"

namespace zelvo::platform::qt {

namespace {

constexpr double kMilliseconds = 1000.0;  // of a second: the unit of the place
constexpr int kStep = 5000;
constexpr int kLongStep = 60'000;
/// So far the place moves at once while a film plays, and so often a screen reader is told.
constexpr int kTick = 200;
constexpr int kVolumeStep = 5;  // per cent
constexpr int kLoudest = 100;
constexpr int kVolumeWidth = 84;
constexpr int kGap = 8;
constexpr int kPlaceColumn = 1;
constexpr int kLeastPlaceInOneRow = 110;

constexpr std::string_view kVolumeKey = "preview/volume";
constexpr std::string_view kMutedKey = "preview/muted";

int milliseconds(double seconds) {
  constexpr double kMost = std::numeric_limits<int>::max() - 1;
  return static_cast<int>(std::clamp(std::round(seconds * kMilliseconds), 0.0, kMost));
}

/// As many digits as the time needs, all of them wide.
QString widest(QString time) {
  for (QChar& one : time) {
    if (one.isDigit()) one = QLatin1Char('0');
  }
  return time;
}

}  // namespace

MovieBar::MovieBar(MovieWidget& movie, QWidget* parent)
    : QWidget(parent),
      movie_(&movie),
      play_(new MovieBarButton),
      place_(new MovieSlider),
      time_(new QLabel),
      mute_(new MovieBarButton),
      volume_(new MovieSlider),
      grid_(new QGridLayout(this)) {
  grid_->setContentsMargins(0, kGap / 2, 0, 0);
  grid_->setSpacing(kGap);
  grid_->setVerticalSpacing(0);
  grid_->setColumnStretch(kPlaceColumn, 1);
  grid_->addWidget(play_, 1, 0);
  grid_->addWidget(place_, 1, kPlaceColumn);
  grid_->addWidget(time_, 1, kPlaceColumn + 1);
  grid_->addWidget(mute_, 1, kPlaceColumn + 2);
  grid_->addWidget(volume_, 1, kPlaceColumn + 3);
  place_->setAccessibleName(texts::placeInFilm());
  place_->setUnit(kMilliseconds);
  place_->setSingleStep(kStep);
  place_->setPageStep(kLongStep);
  time_->setFont(textFont(kSmallPixels));
  time_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  volume_->setAccessibleName(texts::volume());
  volume_->setFixedWidth(kVolumeWidth);
  volume_->setSingleStep(kVolumeStep);
  volume_->setPageStep(2 * kVolumeStep);

  connect(play_, &QAbstractButton::clicked, this, [this] { pressPlay(); });
  connect(mute_, &QAbstractButton::clicked, this, [this] { setLoudness({loudness_.percent, !loudness_.isMuted}); });
  place_->setReceiver([this](int value) { goTo(value); });
  place_->setHoldObserver([this](bool isHeld) { isHeld ? beginDrag() : endDrag(); });
  // Who moves the volume wants to hear it.
  volume_->setReceiver([this](int percent) { setLoudness({percent, false}); });
  movie.setObserver([this] { follow(); });
  connect(this, &QObject::destroyed, &movie, [&movie] { movie.setObserver({}); });
  showLoudness();
  follow();
}

std::shared_ptr<ShownMovie> MovieBar::film() const {
  const MovieWidget* const movie = movie_.data();
  return movie == nullptr ? nullptr : movie->movie();
}

void MovieBar::follow() {
  const std::shared_ptr<ShownMovie> film = this->film();
  if (film && heard_.lock() != film) {
    heard_ = film;
    film->setLoudness(loudness_);
  }
  const bool goesOn = film && film->isPlaying() && (!film->isPaused() || dragged_.lock() == film);
  play_->show(goesOn ? MovieBarButton::Sign::pause : MovieBarButton::Sign::play,
              goesOn ? texts::pauseFilm() : texts::playFilm());
  for (QWidget* one : std::initializer_list<QWidget*>{play_, mute_, volume_}) one->setEnabled(film != nullptr);
  showPlace();
}

void MovieBar::showPlace() {
  const std::shared_ptr<ShownMovie> film = this->film();
  std::optional<double> length;
  if (film) length = film->duration();
  const double at = film ? film->position() : 0;
  place_->setEnabled(length.has_value());
  if (!length) {
    place_->showValue(0, 0);
    showTime(film ? clockTime(std::floor(at)) : QString(), {});
    return;
  }
  const int end = std::max(1, milliseconds(*length));
  const int value = milliseconds(at);
  place_->showValue(value >= end ? end : value - value % kTick, end);
  showTime(clockTime(at >= *length ? *length : std::floor(at)), clockTime(*length));
}

void MovieBar::showTime(const QString& time, const QString& length) {
  const QString text = length.isEmpty() ? time : texts::timeOf(time, length);
  place_->setWords(length.isEmpty() ? time : texts::timeOfInWords(time, length));
  if (text == time_->text()) return;
  time_->setText(text);
  const QString room = length.isEmpty() ? widest(time) : widest(texts::timeOf(length, length));
  time_->setMinimumWidth(time_->fontMetrics().horizontalAdvance(room));
  arrange();
}

void MovieBar::showLoudness() {
  mute_->show(loudness_.isMuted ? MovieBarButton::Sign::mute : MovieBarButton::Sign::sound,
              loudness_.isMuted ? texts::unmute() : texts::mute());
  volume_->showValue(loudness_.percent, kLoudest);
  volume_->setWords(loudness_.isMuted ? texts::muted() : texts::percentOf(loudness_.percent));
}

void MovieBar::pressPlay() {
  const std::shared_ptr<ShownMovie> film = this->film();
  if (!film) return;
  if (film->isPlaying()) {
    film->setPaused(!film->isPaused());
    return;
  }
  if (!starter_) {
    film->play();
    return;
  }
  const double at = film->position();
  const std::optional<double> length = film->duration();
  starter_();
  const bool isSomewhere = at > 0 && (!length || at < *length);
  if (isSomewhere && film->isPlaying()) film->gotoTime(at);
}

void MovieBar::goTo(int value) {
  const std::shared_ptr<ShownMovie> film = this->film();
  if (!film) return;
  const bool isEnd = value >= place_->maximum();
  if (isEnd && !place_->isSliderDown()) {
    goToEnd(*film);
  } else {
    film->gotoTime((isEnd ? value - 1 : value) / kMilliseconds);
  }
}

void MovieBar::goToEnd(ShownMovie& film) {
  if (const std::optional<double> length = film.duration()) film.gotoTime(*length);
}

void MovieBar::beginDrag() {
  const std::shared_ptr<ShownMovie> film = this->film();
  if (!film || !film->isPlaying() || film->isPaused()) return;
  dragged_ = film;
  film->setPaused(true);
}

void MovieBar::endDrag() {
  const std::shared_ptr<ShownMovie> held = dragged_.lock();
  dragged_.reset();
  const std::shared_ptr<ShownMovie> film = this->film();
  if (film && place_->value() >= place_->maximum()) {
    goToEnd(*film);
  } else if (held) {
    held->setPaused(false);
  }
  follow();
}

void MovieBar::setSettings(Settings& settings) {
  settings_ = &settings;
  readLoudness();
}

void MovieBar::readLoudness() {
  if (settings_ == nullptr) return;
  Loudness remembered;
  bool isNumber = false;
  const int percent = shown(settings_->value(kVolumeKey).value_or("")).toInt(&isNumber);
  if (isNumber) remembered.percent = std::clamp(percent, 0, kLoudest);
  remembered.isMuted = settings_->value(kMutedKey) == "yes";
  useLoudness(remembered);
}

void MovieBar::setLoudness(const Loudness& loudness) {
  useLoudness(loudness);
  if (settings_ == nullptr) return;
  settings_->setValue(kVolumeKey, std::to_string(loudness.percent));
  settings_->setValue(kMutedKey, loudness.isMuted ? "yes" : "no");
}

void MovieBar::useLoudness(const Loudness& loudness) {
  loudness_ = loudness;
  if (const std::shared_ptr<ShownMovie> film = this->film()) film->setLoudness(loudness);
  showLoudness();
}

int MovieBar::widthWithoutSliders() const {
  // A bar that shows no time yet is arranged as it will be with one.
  const int shortest = time_->fontMetrics().horizontalAdvance(texts::timeOf(clockTime(0), clockTime(0)));
  const int time = std::max({time_->minimumWidth(), time_->minimumSizeHint().width(), shortest});
  return time + 2 * play_->sizeHint().width() + 2 * kGap;
}

bool MovieBar::needsTwoRows(int width) const {
  return width < widthWithoutSliders() + kGap + kVolumeWidth + kGap + kLeastPlaceInOneRow;
}

int MovieBar::heightForWidth(int width) const {
  const int row = kGap / 2 + play_->sizeHint().height();
  return needsTwoRows(width) ? row + place_->sizeHint().height() : row;
}

QSize MovieBar::minimumSizeHint() const {
  return {std::max(place_->minimumSizeHint().width(), widthWithoutSliders()), grid_->minimumSize().height()};
}

void MovieBar::arrange() {
  volume_->setVisible(width() >= widthWithoutSliders() + kGap + kVolumeWidth);
  const bool hasTwoRows = needsTwoRows(width());
  if (hasTwoRows == hasTwoRows_) return;
  hasTwoRows_ = hasTwoRows;
  grid_->removeWidget(place_);
  if (hasTwoRows) {
    grid_->addWidget(place_, 0, 0, 1, grid_->columnCount());
  } else {
    grid_->addWidget(place_, 1, kPlaceColumn);
  }
  grid_->setColumnStretch(kPlaceColumn, hasTwoRows ? 0 : 1);
  grid_->setColumnStretch(kPlaceColumn + 1, hasTwoRows ? 1 : 0);
  time_->setAlignment((hasTwoRows ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
  updateGeometry();
}

void MovieBar::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  readLoudness();
}

void MovieBar::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  arrange();
}

void MovieBar::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Space:
      return pressPlay();
    case Qt::Key_M:
      return mute_->click();
    case Qt::Key_Up:
    case Qt::Key_Down:
      return volume_->triggerAction(event->key() == Qt::Key_Up ? QAbstractSlider::SliderSingleStepAdd
                                                               : QAbstractSlider::SliderSingleStepSub);
    default:
      return QWidget::keyPressEvent(event);
  }
}

}  // namespace zelvo::platform::qt
