#include "controls/tracked_button.h"

#include <algorithm>

namespace zelvo::controls {

void TrackedButton::drawLook(platform::Canvas&) {}

void TrackedButton::drawRect(platform::Canvas& canvas, const platform::Rect& rect) {
  HostedView::drawRect(canvas, rect);
  drawLook(canvas);
  host().invalidateCursorRects();
}

void TrackedButton::ensureTrackingArea() {
  if (trackingArea_) return;
  trackingArea_ = std::make_shared<const platform::TrackingArea>(
      platform::TrackingArea{trackingOptions_, *this, std::nullopt, host().bounds()});
}

void TrackedButton::updateTrackingAreas() {
  HostedView::updateTrackingAreas();
  ensureTrackingArea();
  const auto attached = host().trackingAreas();
  if (std::find(attached.begin(), attached.end(), trackingArea_) == attached.end()) {
    host().addTrackingArea(trackingArea_);
  }
  // The pointer may have come or gone without an event, because the button moved or something opened over it.
  // Not knowing where it is counts as outside.
  // Decision: controls, An unknown pointer is outside
  const auto pointer = host().mouseLocationOutsideOfEventStream();
  if (pointer && platform::pointInRect(*pointer, host().bounds())) {
    mouseEntered({});
  } else {
    mouseExited({});
  }
}

void TrackedButton::resetCursorRects() {
  HostedView::resetCursorRects();
  if (showsHandCursor()) host().addCursorRect(host().bounds(), platform::CursorShape::pointingHand);
}

}  // namespace zelvo::controls
