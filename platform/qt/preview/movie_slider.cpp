#include "platform/qt/preview/movie_slider.h"

#include <QAccessibleWidget>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/qt/drawing/appearance.h"

namespace zelvo::platform::qt {

namespace {

constexpr int kHeight = 32;
constexpr double kTrack = 4.0;   // its height
constexpr double kHandle = 6.0;  // its radius
constexpr double kFocusWidth = 2.0;
/// From the widget's edge to the end of the track, so that a handle with its frame has room.
constexpr double kEnd = kHandle + kFocusWidth + 1;

/// A slider whose value is told in words, too.
class SaidSlider final : public QAccessibleWidget, public QAccessibleValueInterface {
 public:
  explicit SaidSlider(MovieSlider& slider) : QAccessibleWidget(&slider, QAccessible::Slider), slider_(slider) {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
  }
  QString text(QAccessible::Text kind) const override {
    // Many readers know no words for a value, but all read the description.
    const bool isValue = kind == QAccessible::Value || kind == QAccessible::Description;
    return isValue ? slider_.words() : QAccessibleWidget::text(kind);
  }
  QVariant currentValue() const override { return slider_.value() / slider_.unit(); }
  void setCurrentValue(const QVariant& value) override {
    const double wished = value.toDouble() * slider_.unit();
    if (slider_.isEnabled() && std::isfinite(wished)) {
      slider_.setValue(static_cast<int>(std::clamp<double>(wished, slider_.minimum(), slider_.maximum())));
    }
  }
  QVariant minimumValue() const override { return slider_.minimum() / slider_.unit(); }
  QVariant maximumValue() const override { return slider_.maximum() / slider_.unit(); }
  QVariant minimumStepSize() const override { return slider_.singleStep() / slider_.unit(); }

 private:
  MovieSlider& slider_;
};

QAccessibleInterface* accessibleSlider(const QString&, QObject* object) {
  auto* const slider = dynamic_cast<MovieSlider*>(object);
  return slider == nullptr ? nullptr : new SaidSlider(*slider);  // Qt's cache owns it
}

}  // namespace

MovieSlider::MovieSlider(QWidget* parent) : QAbstractSlider(parent) {
  QAccessible::installFactory(accessibleSlider);  // once, however often it is asked
  setOrientation(Qt::Horizontal);
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  connect(this, &QAbstractSlider::valueChanged, this, [this](int value) {
    update();
    if (!isShowing_ && receiver_) receiver_(value);
  });
}

void MovieSlider::showValue(int value, int maximum) {
  const bool was = std::exchange(isShowing_, true);
  if (maximum != this->maximum()) {
    setMaximum(maximum);
    update();
  }
  if (!isSliderDown()) setValue(value);
  isShowing_ = was;
}

void MovieSlider::setWords(const QString& words) {
  if (words == words_) return;
  words_ = words;
  QAccessibleEvent changed(this, QAccessible::DescriptionChanged);
  QAccessible::updateAccessibility(&changed);
}

QSize MovieSlider::sizeHint() const { return {120, kHeight}; }
QSize MovieSlider::minimumSizeHint() const { return {40, kHeight}; }

double MovieSlider::placeOf(int value) const {
  const double span = std::max(1, maximum() - minimum());
  return kEnd + (width() - 2 * kEnd) * (value - minimum()) / span;
}

int MovieSlider::valueAt(double place) const {
  const double share = std::clamp((place - kEnd) / std::max(1.0, width() - 2 * kEnd), 0.0, 1.0);
  return minimum() + static_cast<int>(std::lround(share * (maximum() - minimum())));
}

bool MovieSlider::event(QEvent* event) {
  // Whatever takes the slider away takes the handle out of the hand.
  const bool goes = event->type() == QEvent::Hide || (event->type() == QEvent::EnabledChange && !isEnabled());
  if (goes) letGo();
  if (event->type() == QEvent::Enter || event->type() == QEvent::Leave) update();
  return QAbstractSlider::event(event);
}

void MovieSlider::letGo() {
  if (!isSliderDown()) return;
  setSliderDown(false);
  if (holdObserver_) holdObserver_(false);
}

void MovieSlider::keyPressEvent(QKeyEvent* event) {
  // What is not about going left or right is the bar's.
  if (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down) return event->ignore();
  QAbstractSlider::keyPressEvent(event);
}

void MovieSlider::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || isSliderDown()) return event->ignore();
  setSliderDown(true);
  if (holdObserver_) holdObserver_(true);
  setValue(valueAt(event->position().x()));
}

void MovieSlider::mouseMoveEvent(QMouseEvent* event) {
  if (!isSliderDown()) return event->ignore();
  setValue(valueAt(event->position().x()));
}

void MovieSlider::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !isSliderDown()) return event->ignore();
  setValue(valueAt(event->position().x()));
  letGo();
}

void MovieSlider::focusInEvent(QFocusEvent* event) {
  if (event->reason() != Qt::ActiveWindowFocusReason) showsFocus_ = event->reason() != Qt::MouseFocusReason;
  QAbstractSlider::focusInEvent(event);
}

void MovieSlider::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  const double middle = height() / 2.0;
  const QRectF track(kEnd, middle - kTrack / 2, std::max(0.0, width() - 2 * kEnd), kTrack);
  painter.setBrush(line(palette()));
  painter.drawRoundedRect(track, kTrack / 2, kTrack / 2);
  if (!isEnabled()) return;
  const double handle = placeOf(value());
  painter.setBrush(accent(palette()));
  painter.drawRoundedRect(QRectF(track.left(), track.top(), handle - track.left(), kTrack), kTrack / 2, kTrack / 2);
  if (underMouse() || isSliderDown()) painter.setBrush(hoverFrame(palette()));
  painter.drawEllipse(QPointF(handle, middle), kHandle, kHandle);
  if (hasFocus() && showsFocus_) {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(focusColour(palette()), kFocusWidth));
    painter.drawEllipse(QPointF(handle, middle), kHandle + kFocusWidth, kHandle + kFocusWidth);
  }
}

}  // namespace zelvo::platform::qt
