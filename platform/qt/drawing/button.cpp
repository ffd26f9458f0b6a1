#include "platform/qt/drawing/button.h"

#include <QEvent>
#include <QFocusEvent>
#include <QFontMetrics>
#include <QPaintEvent>
#include <utility>

#include "platform/qt/drawing/appearance.h"
#include "platform/qt/drawing/canvas.h"
#include "platform/qt/drawing/text.h"

namespace zelvo::platform::qt {

namespace {

constexpr int kPushHeight = 36;
constexpr int kPushLeastWidth = 112;
constexpr int kPushMargin = 20;
constexpr int kPictureTitlePixels = 16;
constexpr double kFrameWidth = 1.0;
constexpr double kHoverFrameWidth = 3.0;
constexpr double kFocusWidth = 2.0;

/// Not in a panel, which keeps the keyboard inside by itself.
bool isOnAPage(const QWidget& widget) {
  for (const QWidget* above = widget.parentWidget(); above != nullptr; above = above->parentWidget()) {
    if (dynamic_cast<const Window*>(above) != nullptr) return above->isWindow();
  }
  return true;
}

}  // namespace

QtButton::QtButton(MainQueue& queue, Pictures& pictures, const QString& title, Look look, QWidget* parent)
    : QPushButton(title, parent),
      queue_(queue),
      pictures_(pictures),
      look_(look),
      title_(title),
      enabled_(queue, true, [this](const bool& enabled) { showEnabled(enabled); }),
      host_(new QtViewHost(*this, [this](QPainter& painter) { paintBase(painter); })) {
  setAutoDefault(true);
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  setFont(textFont(kSmallPixels));
  if (look == Look::picture) setToolTip(title);
  connect(this, &QAbstractButton::clicked, this, [this] { pressed(); });
}

void QtButton::setEnabled(bool enabled) { enabled_.set(enabled); }

void QtButton::showEnabled(bool enabled) {
  // The toolkit would hand the keyboard on to the next button, and after the last to the first, which is Home.
  if (!enabled && window()->focusWidget() == this && isOnAPage(*this)) clearFocus();
  QPushButton::setEnabled(enabled);
}

void QtButton::setHidden(bool hidden) {
  queue_.perform([this, hidden] { QPushButton::setHidden(hidden); });
}

void QtButton::setState(State state) {
  state_ = state;
  queue_.perform([this, state] { showState(state); });
}

void QtButton::showState(State state) {
  if (!isTwoState_) return;
  setText(state == State::on ? otherTitle_ : title_);
  update();
}

void QtButton::setImage(std::string_view name) {
  queue_.perform([this, image = std::string(name)] {
    image_ = image;
    update();
  });
}

std::string QtButton::title() const { return plain(text()); }

void QtButton::setAttributedTitle(const AttributedText& title) {
  title_ = shown(title.text());
  setText(title_);
  if (!title.runs.empty()) {
    const TextAttributes& looks = title.runs.front().attributes;
    setFont(fontOf(looks));
    titleStyle_ = looks.paragraph.value_or(kCentred);
    if (looks.foreground) {
      QPalette own = palette();
      own.setColor(QPalette::ButtonText, shown(*looks.foreground));
      own.setColor(QPalette::Link, shown(*looks.foreground));
      setPalette(own);
    }
  }
  update();
}

void QtButton::setEnabledObserver(std::function<void(bool enabled)> observer) {
  enabledObserver_ = std::move(observer);
  if (enabledObserver_) enabledObserver_(isEnabled());
}

void QtButton::setTitle(const QString& title) {
  title_ = title;
  setText(title);
  updateGeometry();
}

void QtButton::setOutlined(bool outlined) {
  isOutlined_ = outlined;
  update();
}

void QtButton::setTwoState(const QString& otherTitle) {
  // Not checkable: its title says what comes next, and to a screen reader a checked box of that name would be a riddle.
  isTwoState_ = true;
  otherTitle_ = otherTitle;
}

void QtButton::nextCheckState() {
  if (!isTwoState_ || !isVisible()) return;
  const State next = state_ == State::on ? State::off : State::on;
  state_ = next;
  showState(next);
}

void QtButton::pressed() {
  // A screen reader may press what it found a moment ago, on a page that has gone.
  if (action_ && isVisible()) action_(*this);
}

QSize QtButton::sizeHint() const {
  if (look_ == Look::picture) {
    if (pictureSize_.isValid()) return pictureSize_;
    const Size drawn = pictures_.size(image_);
    return {static_cast<int>(drawn.width), static_cast<int>(drawn.height)};
  }
  const QFontMetrics metrics(font());
  const int width = std::max(metrics.horizontalAdvance(title_), metrics.horizontalAdvance(otherTitle_));
  if (look_ == Look::link) return {width + 2, metrics.height() + 4};
  return {std::max(kPushLeastWidth, width + 2 * kPushMargin), kPushHeight};
}

bool QtButton::event(QEvent* event) {
  // A framed button lights up under the pointer, as the self-drawn ones do.
  if (look_ == Look::push && (event->type() == QEvent::Enter || event->type() == QEvent::Leave)) update();
  return QPushButton::event(event);
}

void QtButton::changeEvent(QEvent* event) {
  QPushButton::changeEvent(event);
  if (event->type() == QEvent::EnabledChange && enabledObserver_) enabledObserver_(isEnabled());
}

void QtButton::focusInEvent(QFocusEvent* event) {
  // The ring is for who steers by the keyboard; a click shows by itself where it was. A window that comes back finds it
  // as it was.
  if (event->reason() != Qt::ActiveWindowFocusReason) showsFocus_ = event->reason() != Qt::MouseFocusReason;
  QPushButton::focusInEvent(event);
}

void QtButton::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  if (isOutlined_) {
    paintBase(painter);
  } else {
    host_->paint(painter, event->rect());
  }
  if (hasFocus() && showsFocus_) paintFocus(painter);
}

void QtButton::paintBase(QPainter& painter) {
  switch (look_) {
    case Look::push:
      paintPush(painter);
      break;
    case Look::picture:
      paintPicture(painter);
      break;
    case Look::link:
      paintLink(painter);
      break;
  }
}

void QtButton::strokeFrame(QPainter& painter, double width, const QColor& colour) const {
  // The canvas lets it end at whole pixels; a pen would lie beside them at most scales.
  QtCanvas canvas(painter);
  canvas.setStrokeColour(plain(colour));
  canvas.strokeRectWithWidth(insetRect(host_->bounds(), width / 2, width / 2), width);
}

void QtButton::paintPush(QPainter& painter) const {
  const bool isPressed = isDown() && highlightsBy_ != kHighlightNone;
  painter.save();
  painter.fillRect(rect(), isPressed ? line(palette()) : surface(palette()));
  if (isEnabled() && underMouse()) {
    strokeFrame(painter, kHoverFrameWidth, hoverFrame(palette()));
  } else {
    strokeFrame(painter, kFrameWidth, isEnabled() ? accent(palette()) : line(palette()));
  }
  painter.setFont(font());
  painter.setPen(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::ButtonText));
  const bool isTruncated = titleStyle_.lineBreakMode == LineBreakMode::truncatingTail;
  const auto alignment = titleStyle_.alignment == TextAlignment::left ? Qt::AlignLeft : Qt::AlignHCenter;
  painter.drawText(rect(), static_cast<int>(alignment | Qt::AlignVCenter),
                   isTruncated ? fontMetrics().elidedText(text(), Qt::ElideRight, width()) : text());
  painter.restore();
}

void QtButton::paintPicture(QPainter& painter) {
  painter.save();
  if (!isEnabled()) painter.setOpacity(0.45);
  const bool isPressed = isDown() && highlightsBy_ != kHighlightNone;
  if (isPressed) painter.setOpacity(painter.opacity() * 0.8);
  pictures_.draw(painter, image_, QRectF(rect()));
  if (showsTitle_) {
    painter.setFont(textFont(kPictureTitlePixels, QFont::DemiBold));
    painter.setPen(palette().color(QPalette::HighlightedText));
    painter.drawText(rect(), Qt::AlignCenter, text());
  }
  painter.restore();
}

void QtButton::paintLink(QPainter& painter) const {
  painter.save();
  QFont underlined = font();
  underlined.setUnderline(true);
  painter.setFont(underlined);
  painter.setPen(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::Link));
  painter.drawText(rect(), Qt::AlignCenter, text());
  painter.restore();
}

void QtButton::paintFocus(QPainter& painter) const {
  // Two rings, one of which stands out on whatever the button is filled with. The outer one is drawn last, so that no
  // pixel between the two is lost to rounding.
  if (look_ != Look::link) strokeFrame(painter, 2 * kFocusWidth, surface(palette()));
  strokeFrame(painter, kFocusWidth, focusColour(palette()));
}

}  // namespace zelvo::platform::qt
