#include "platform/qt/drawing/view_host.h"

#include <QCursor>
#include <QEvent>
#include <QGraphicsDropShadowEffect>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QWidget>
#include <algorithm>
#include <utility>

#include "platform/qt/drawing/canvas.h"

namespace zelvo::platform::qt {

QtViewHost::QtViewHost(QWidget& widget, BaseLook base) : QObject(&widget), widget_(widget), base_(std::move(base)) {
  widget.installEventFilter(this);
  widget.setMouseTracking(true);
}

QtViewHost::~QtViewHost() = default;

void QtViewHost::addTrackingArea(std::shared_ptr<const TrackingArea> area) { areas_.push_back(std::move(area)); }

void QtViewHost::removeTrackingArea(const std::shared_ptr<const TrackingArea>& area) { std::erase(areas_, area); }

std::optional<Point> QtViewHost::mouseLocationOutsideOfEventStream() const {
  if (!widget_.isVisible()) return std::nullopt;
  // Where a program is told of the pointer only inside its own windows, the last known place may be an old one.
  const bool pointerIsAlwaysKnown = QGuiApplication::platformName() == QLatin1String("xcb") ||
                                    QGuiApplication::platformName() == QLatin1String("offscreen");
  if (!pointerIsAlwaysKnown && !widget_.window()->underMouse()) return std::nullopt;
  const QPointF place = widget_.mapFromGlobal(QPointF(QCursor::pos()));
  return Point{place.x(), place.y()};
}

void QtViewHost::invalidateCursorRects() {
  cursorRectsAreInvalid_ = true;
  if (!isPainting_) rebuildCursorRects();
}

void QtViewHost::addCursorRect(const Rect& rect, CursorShape shape) { cursorRects_.push_back({rect, shape}); }

void QtViewHost::rebuildCursorRects() {
  cursorRectsAreInvalid_ = false;
  cursorRects_.clear();
  if (client_) client_->resetCursorRects();
  showCursor();
}

void QtViewHost::showCursor() {
  // Where the pointer is not over the view, the shape for when it comes is that of the middle.
  const Rect all = bounds();
  Point place{all.width / 2, all.height / 2};
  if (const auto pointer = mouseLocationOutsideOfEventStream(); pointer && pointInRect(*pointer, all)) place = *pointer;
  const auto found = std::find_if(cursorRects_.rbegin(), cursorRects_.rend(),
                                  [&](const CursorRect& one) { return pointInRect(place, one.rect); });
  const bool pointing = found != cursorRects_.rend() && found->shape == CursorShape::pointingHand;
  const Qt::CursorShape shape = pointing ? Qt::PointingHandCursor : Qt::ArrowCursor;
  if (widget_.cursor().shape() != shape) widget_.setCursor(shape);
}

void QtViewHost::carry(std::unique_ptr<ViewClient> client) {
  areas_.clear();
  cursorRects_.clear();
  client_ = std::move(client);
  isAwake_ = false;
  showCursor();
  if (widget_.isVisible()) resynchronise();
  widget_.update();
}

Rect QtViewHost::bounds() const {
  return {0, 0, static_cast<double>(widget_.width()), static_cast<double>(widget_.height())};
}

void QtViewHost::setFrame(const Rect& frame) {
  widget_.setGeometry(QRectF(frame.x, frame.y, frame.width, frame.height).toAlignedRect());
}

void QtViewHost::setNeedsDisplay() { widget_.update(); }

void QtViewHost::drawBase(Canvas& canvas, const Rect&) {
  const auto* const ours = dynamic_cast<QtCanvas*>(&canvas);
  if (ours != nullptr && base_) base_(ours->painter());
}

void QtViewHost::setWantsLayer(bool wantsLayer) {
  wantsLayer_ = wantsLayer;
  applyShadow();
}

void QtViewHost::setShadow(const Shadow& shadow) {
  shadow_ = shadow;
  applyShadow();
}

void QtViewHost::applyShadow() {
  if (!wantsLayer_ || !shadow_) {
    widget_.setGraphicsEffect(nullptr);
    return;
  }
  auto* const effect = new QGraphicsDropShadowEffect(&widget_);
  effect->setColor(shown(shadow_->colour));
  effect->setOffset(shadow_->offset.width, shadow_->offset.height);
  effect->setBlurRadius(shadow_->blurRadius);
  widget_.setGraphicsEffect(effect);
}

void QtViewHost::wake() {
  if (isAwake_ || !client_) return;
  isAwake_ = true;
  client_->awakeFromNib();
}

void QtViewHost::paint(QPainter& painter, const QRect& rect) {
  wake();
  isPainting_ = true;
  {
    QtCanvas canvas(painter);
    const Rect part{static_cast<double>(rect.x()), static_cast<double>(rect.y()), static_cast<double>(rect.width()),
                    static_cast<double>(rect.height())};
    if (client_) {
      client_->drawRect(canvas, part);
    } else if (base_) {
      base_(painter);
    }
  }
  isPainting_ = false;
  if (cursorRectsAreInvalid_) rebuildCursorRects();
}

void QtViewHost::resynchronise() {
  wake();
  if (client_ && !isPainting_) client_->updateTrackingAreas();
}

bool QtViewHost::isLive(const TrackingArea& area) const {
  if ((area.options & kTrackingMouseEnteredAndExited) == 0) return false;
  if ((area.options & kTrackingActiveAlways) != 0) return true;
  if ((area.options & kTrackingActiveInActiveApp) != 0) {
    return QGuiApplication::applicationState() == Qt::ApplicationActive;
  }
  return (area.options & kTrackingActiveInKeyWindow) != 0 && widget_.isActiveWindow();
}

void QtViewHost::reportTrackers(bool entered) {
  const auto areas = areas_;  // an owner may replace its area when told
  for (const auto& area : areas) {
    // One that is told of leaving although it was not told of entering looks as it did.
    if (entered && !isLive(*area)) continue;
    const TrackingEvent event{area->userInfo ? &*area->userInfo : nullptr};
    if (entered) {
      area->owner.mouseEntered(event);
    } else {
      area->owner.mouseExited(event);
    }
  }
}

bool QtViewHost::mouseEvent(QMouseEvent& event) {
  if (!client_) return false;
  const MouseEvent told{{event.position().x(), event.position().y()}};
  MouseEventFate fate = MouseEventFate::leftToElement;
  if (event.type() == QEvent::MouseButtonRelease) {
    fate = client_->mouseUp(told);
  } else if (event.type() != QEvent::MouseMove) {
    fate = client_->mouseDown(told);
  } else if (event.buttons() != Qt::NoButton) {
    fate = client_->mouseDragged(told);
  } else {
    fate = client_->mouseMoved(told);
  }
  if (event.type() == QEvent::MouseMove) showCursor();
  if (fate == MouseEventFate::leftToElement) return false;
  event.accept();
  return true;
}

void QtViewHost::watchWhatHoldsIt() {
  for (const QPointer<QWidget>& holder : holders_) {
    if (holder) holder->removeEventFilter(this);
  }
  holders_.clear();
  for (QWidget* holder = &widget_; !holder->isWindow();) {
    holder = holder->parentWidget();
    holder->installEventFilter(this);
    holders_.emplace_back(holder);
  }
}

bool QtViewHost::widgetEvent(QEvent& event) {
  switch (event.type()) {
    case QEvent::Show:
      watchWhatHoldsIt();
      [[fallthrough]];
    case QEvent::Move:
    case QEvent::Resize:
      if (widget_.isVisible()) resynchronise();
      return false;
    case QEvent::Enter:
      showCursor();
      reportTrackers(true);
      return false;
    case QEvent::Leave:
      reportTrackers(false);
      return false;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseMove:
      return mouseEvent(static_cast<QMouseEvent&>(event));
    default:
      return false;
  }
}

bool QtViewHost::eventFilter(QObject* watched, QEvent* event) {
  if (watched == &widget_) return widgetEvent(*event);
  // No event comes to a widget that moves together with what holds it, or whose window becomes active.
  const auto kind = event->type();
  const bool isActivation = kind == QEvent::WindowActivate || kind == QEvent::WindowDeactivate;
  const bool concernsIt = isActivation ? watched == widget_.window() : kind == QEvent::Move || kind == QEvent::Resize;
  if (concernsIt && widget_.isVisible()) resynchronise();
  return false;
}

}  // namespace zelvo::platform::qt
