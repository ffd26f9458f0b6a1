// Making an overlay:
//   1. place the base view;
//   2. give it a layer and the shadow;
//   3. announce it;
//   4. only then listen to the announcements of others.
#include "controls/view_transparent.h"

namespace zelvo::controls {

namespace {

using platform::MouseEventFate;
using platform::Notification;

constexpr platform::Shadow kShadow{platform::kGrey, {0, 0}, 5.0};

/// 32-bit, going round at its ends: the count is neither clamped nor checked.
std::int32_t wrappedSum(std::int32_t count, std::int32_t step) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(count) + static_cast<std::uint32_t>(step));
}

}  // namespace

std::unique_ptr<ViewTransparent> ViewTransparent::initWithFrame(const platform::Rect& frame, platform::ViewHost* host,
                                                                platform::NotificationCentre& centre) {
  if (host == nullptr) return nullptr;
  host->setFrame(frame);
  host->setWantsLayer(true);
  host->setShadow(kShadow);
  std::unique_ptr<ViewTransparent> overlay(new ViewTransparent(*host, centre));
  // Deliberate: announced before it observes, so that it never hears itself while every older overlay does.
  centre.post({kViewTransparentAdded, overlay.get()});
  ViewTransparent* const observer = overlay.get();
  centre.addObserver(observer, kViewTransparentAdded,
                     [observer](const Notification& note) { observer->viewTransparentAddedNote(note); });
  centre.addObserver(observer, kViewTransparentRemoved,
                     [observer](const Notification& note) { observer->viewTransparentRemovedNote(note); });
  return overlay;
}

ViewTransparent::ViewTransparent(platform::ViewHost& host, platform::NotificationCentre& centre)
    : HostedView(host), centre_(centre) {}

ViewTransparent::~ViewTransparent() { centre_.removeObserver(this); }

void ViewTransparent::viewTransparentAddedNote(const Notification& note) {
  if (note.object != this) viewsOverlaidCount_ = wrappedSum(viewsOverlaidCount_, 1);
}

void ViewTransparent::viewTransparentRemovedNote(const Notification& note) {
  // Deliberate: one that never counted the departing overlay subtracts as well, below 0 if need be. Overlays go in the
  // reverse order of their coming, and then every count is what it was.
  if (note.object != this) viewsOverlaidCount_ = wrappedSum(viewsOverlaidCount_, -1);
}

void ViewTransparent::postRemovedNotification() { centre_.post({kViewTransparentRemoved, this}); }

// Entering and leaving do nothing either, as in every hosted view.
MouseEventFate ViewTransparent::mouseDown(const platform::MouseEvent&) { return MouseEventFate::stopsHere; }
MouseEventFate ViewTransparent::mouseDragged(const platform::MouseEvent&) { return MouseEventFate::stopsHere; }
MouseEventFate ViewTransparent::mouseUp(const platform::MouseEvent&) { return MouseEventFate::stopsHere; }
MouseEventFate ViewTransparent::mouseMoved(const platform::MouseEvent&) { return MouseEventFate::stopsHere; }

}  // namespace zelvo::controls
