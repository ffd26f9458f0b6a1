#include "platform/headless/view_host.h"

#include <algorithm>
#include <utility>

#include "platform/headless/recording_canvas.h"

namespace zelvo::platform::headless {

namespace {

std::string_view nameOf(MouseEventKind kind) {
  switch (kind) {
    case MouseEventKind::down:
      return "mouseDown";
    case MouseEventKind::dragged:
      return "mouseDragged";
    case MouseEventKind::up:
      return "mouseUp";
    case MouseEventKind::moved:
      break;
  }
  return "mouseMoved";
}

MouseEventFate shown(ViewClient& client, MouseEventKind kind, const MouseEvent& event) {
  switch (kind) {
    case MouseEventKind::down:
      return client.mouseDown(event);
    case MouseEventKind::dragged:
      return client.mouseDragged(event);
    case MouseEventKind::up:
      return client.mouseUp(event);
    case MouseEventKind::moved:
      break;
  }
  return client.mouseMoved(event);
}

}  // namespace

RecordingViewHost::RecordingViewHost(std::string name, Events& events, const Rect& frame, bool takesMouse)
    : Named(std::move(name), &events), drawing_(events), frame_(frame), takesMouse_(takesMouse) {}

void RecordingViewHost::addTrackingArea(std::shared_ptr<const TrackingArea> area) {
  note("addTrackingArea(" + written(area->rect) + "; " + std::to_string(area->options) +
       (area->userInfo ? "; with user information)" : ")"));
  areas_.push_back(std::move(area));
}

void RecordingViewHost::removeTrackingArea(const std::shared_ptr<const TrackingArea>& area) {
  note("removeTrackingArea()");
  std::erase(areas_, area);
}

void RecordingViewHost::invalidateCursorRects() {
  note("invalidateCursorRects()");
  cursorRectsAreInvalid_ = true;
  if (!isPainting_) rebuildCursorRects();
}

void RecordingViewHost::addCursorRect(const Rect& rect, CursorShape shape) {
  note("addCursorRect(" + written(rect) + (shape == CursorShape::pointingHand ? "; pointing hand)" : "; arrow)"));
  cursorRects_.push_back({rect, shape});
}

void RecordingViewHost::rebuildCursorRects() {
  cursorRectsAreInvalid_ = false;
  cursorRects_.clear();
  if (client_) client_->resetCursorRects();
}

void RecordingViewHost::carry(std::unique_ptr<ViewClient> client) {
  areas_.clear();
  cursorRects_.clear();
  client_ = std::move(client);
}

void RecordingViewHost::setFrame(const Rect& frame) {
  note("setFrame(" + written(frame) + ")");
  frame_ = frame;
}

void RecordingViewHost::setNeedsDisplay() {
  note("setNeedsDisplay()");
  needsDisplay_ = true;
}

void RecordingViewHost::drawBase(Canvas&, const Rect& rect) { note("drawBase(" + written(rect) + ")"); }

void RecordingViewHost::setWantsLayer(bool wantsLayer) {
  note(wantsLayer ? "setWantsLayer(yes)" : "setWantsLayer(no)");
}

void RecordingViewHost::setShadow(const Shadow& shadow) {
  note("setShadow(" + written(shadow.colour) + "; offset " + written(shadow.offset.width) + ", " +
       written(shadow.offset.height) + "; blur " + written(shadow.blurRadius) + ")");
}

void RecordingViewHost::paint(std::optional<Rect> rect) {
  needsDisplay_ = false;
  isPainting_ = true;
  RecordingCanvas canvas(drawing_);
  if (client_) {
    client_->drawRect(canvas, rect.value_or(bounds()));
  } else {
    drawBase(canvas, rect.value_or(bounds()));
  }
  if (canvas.savedStates() != 0) note("paint left states saved: " + std::to_string(canvas.savedStates()));
  isPainting_ = false;
  if (cursorRectsAreInvalid_) rebuildCursorRects();
}

void RecordingViewHost::movePointer(std::optional<Point> to) {
  const bool wasInside = pointer_ && pointInRect(*pointer_, bounds());
  const bool isInside = to && pointInRect(*to, bounds());
  pointer_ = to;
  if (wasInside == isInside) return;
  const auto areas = areas_;  // an owner may replace its area when told
  for (const auto& area : areas) {
    const TrackingEvent event{area->userInfo ? &*area->userInfo : nullptr};
    if (isInside) {
      area->owner.mouseEntered(event);
    } else {
      area->owner.mouseExited(event);
    }
  }
}

void RecordingViewHost::resynchronise() const {
  if (client_) client_->updateTrackingAreas();
}

bool RecordingViewHost::deliver(MouseEventKind kind, const Point& at) {
  if (client_ && shown(*client_, kind, {at}) == MouseEventFate::stopsHere) return true;
  if (takesMouse_) note("element." + std::string(nameOf(kind)) + "()");
  return takesMouse_;
}

CursorShape RecordingViewHost::cursorAt(const Point& point) const {
  const auto found = std::find_if(cursorRects_.rbegin(), cursorRects_.rend(),
                                  [&](const CursorRect& one) { return pointInRect(point, one.rect); });
  return found == cursorRects_.rend() ? CursorShape::arrow : found->shape;
}

void RecordingBaseButton::setAttributedTitle(const AttributedText& title) {
  note("setAttributedTitle(" + title.text() + ")");
  title_ = title;
}

void RecordingBaseButton::setHighlightsBy(std::uint32_t mask) { note("setHighlightsBy(" + std::to_string(mask) + ")"); }

void HostPile::remove(const RecordingViewHost& host) { std::erase(hosts_, &host); }

void HostPile::deliver(MouseEventKind kind, const Point& at) const {
  for (auto host = hosts_.rbegin(); host != hosts_.rend(); ++host) {
    const Rect frame = (*host)->frame();
    if (pointInRect(at, frame) && (*host)->deliver(kind, {at.x - frame.x, at.y - frame.y})) return;
  }
}

}  // namespace zelvo::platform::headless
