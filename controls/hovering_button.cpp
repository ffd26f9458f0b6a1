#include "controls/hovering_button.h"

#include "controls/view_transparent.h"

namespace zelvo::controls {

bool HoveringButton::liesOnTopmostOverlay() const {
  // Deliberate: without an overlay the answer is no, so that a button outside of any panel never lights up.
  return viewTransparent_ != nullptr && viewTransparent_->viewsOverlaidCount() == 0;
}

void HoveringButton::mouseEntered(const platform::TrackingEvent&) {
  if (!mayHover()) return;
  hovering_ = true;
  host().setNeedsDisplay();
}

void HoveringButton::mouseExited(const platform::TrackingEvent&) {
  hovering_ = false;
  host().setNeedsDisplay();
}

}  // namespace zelvo::controls
