#include "controls/button_hover.h"

#include <string_view>

#include "controls/tracked_button.h"

namespace zelvo::controls {

namespace {

constexpr std::string_view kCrossedImage = "help-2";

}  // namespace

void ButtonHover::updateTrackingAreas() {
  HostedView::updateTrackingAreas();
  if (trackingArea_) {
    host().removeTrackingArea(trackingArea_);
    trackingArea_.reset();
  }
  // No rectangle: the options make it the visible bounds.
  trackingArea_ = std::make_shared<const platform::TrackingArea>(
      platform::TrackingArea{kTrackedInKeyWindow, *this, std::nullopt, platform::Rect{}});
  host().addTrackingArea(trackingArea_);
}

// Deliberate: both directions set the same picture, so that the first crossing replaces it and it stays.
void ButtonHover::mouseEntered(const platform::TrackingEvent&) { base_.setImage(kCrossedImage); }

void ButtonHover::mouseExited(const platform::TrackingEvent&) { base_.setImage(kCrossedImage); }

}  // namespace zelvo::controls
