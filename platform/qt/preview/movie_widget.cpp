#include "platform/qt/preview/movie_widget.h"

#include <QHideEvent>
#include <QPainter>
#include <QTransform>
#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/qt/language.h"

namespace zelvo::platform::qt {

namespace {

constexpr QSize kUsualSize(480, 270);
constexpr int kSentenceMargin = 24;  // points on each side
constexpr int kSentenceWidth = 420;  // points at most, so that lines stay easy to read

}  // namespace

MovieWidget::MovieWidget(QWidget* parent) : HostedWidget(parent) {
  setMinimumSize(kUsualSize / 4);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  movieChanged();
}

MovieWidget::~MovieWidget() {
  if (movie_) movie_->endShow();
}

void MovieWidget::setMovie(std::shared_ptr<Movie> movie) {
  auto shown = std::dynamic_pointer_cast<ShownMovie>(std::move(movie));
  if (shown == movie_) return;
  if (movie_) movie_->endShow();
  movie_ = std::move(shown);
  if (isVisible()) look();
  movieChanged();
}

void MovieWidget::look() {
  if (movie_) movie_->beginShow([this] { movieChanged(); });
}

void MovieWidget::movieChanged() {
  const QString name = !movie_               ? translated("Preview, no film yet")
                       : movie_->isPaused()  ? translated("Preview of the film, paused")
                       : movie_->isPlaying() ? translated("Preview of the film, playing")
                                             : translated("Preview of the film, not playing");
  if (accessibleName() != name) setAccessibleName(name);
  if (accessibleDescription() != sentence()) setAccessibleDescription(sentence());
  update();
  if (observer_) observer_();
}

QSize MovieWidget::sizeHint() const { return kUsualSize; }

void MovieWidget::showEvent(QShowEvent* event) {
  HostedWidget::showEvent(event);
  look();
  movieChanged();
}

void MovieWidget::hideEvent(QHideEvent* event) {
  HostedWidget::hideEvent(event);
  if (event->spontaneous()) return;                  // minimised: the film plays on
  const std::shared_ptr<ShownMovie> movie = movie_;  // who is told of its end may set another
  if (movie) movie->pauseShow();
  movieChanged();
}

void MovieWidget::paintBase(QPainter& painter) {
  painter.fillRect(rect(), palette().brush(backgroundRole()));
  if (paintPicture(painter)) return;
  const int width = std::min(rect().width() - 2 * kSentenceMargin, kSentenceWidth);
  QRect place(0, 0, std::max(width, 1), rect().height());
  place.moveCenter(rect().center());
  painter.setPen(palette().color(foregroundRole()));
  painter.setFont(font());
  painter.drawText(place, Qt::AlignCenter | Qt::TextWordWrap, sentence());
}

bool MovieWidget::paintPicture(QPainter& painter) {
  if (!movie_ || movie_->shape().isEmpty()) return false;
  const QTransform toDevice = painter.deviceTransform();
  const qreal ratio = toDevice.m11();
  const QSize room = (QSizeF(size()) * ratio).toSize();
  const QSize fitted = movie_->shape().scaled(room, Qt::KeepAspectRatio).expandedTo({1, 1});
  const QImage picture = movie_->picture(fitted);
  if (picture.isNull()) return false;
  // One pixel of the picture is one of the device, also where the widget begins between two of them.
  const QPointF ground(std::round(toDevice.dx()) - toDevice.dx(), std::round(toDevice.dy()) - toDevice.dy());
  const QPoint corner((room.width() - fitted.width()) / 2, (room.height() - fitted.height()) / 2);
  painter.save();
  painter.scale(1 / ratio, 1 / ratio);
  painter.drawImage(ground + corner, picture);
  painter.restore();
  return true;
}

QString MovieWidget::sentence() const {
  return movie_ ? movie_->remark() : translated("Your repaired film will be shown here.");
}

}  // namespace zelvo::platform::qt
