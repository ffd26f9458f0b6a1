/// A button that looks different while the pointer is over it, as long as no later overlay lies above its panel.
/// Thread: main.
#pragma once

#include "controls/tracked_button.h"

namespace zelvo::controls {

class ViewTransparent;

class HoveringButton : public TrackedButton {
 public:
  /// True while the pointer is inside and hovering was allowed when it came.
  [[nodiscard]] bool hovering() const { return hovering_; }
  /// setViewTransparent: the overlay whose count gates the hover look and the hand cursor. Borrowed: the panel keeps it
  /// alive while its buttons exist. Without one there is neither.
  void setViewTransparent(ViewTransparent* overlay) { viewTransparent_ = overlay; }

  void mouseEntered(const platform::TrackingEvent& event) override;
  void mouseExited(const platform::TrackingEvent& event) override;

 protected:
  using TrackedButton::TrackedButton;

  /// Whether an overlay is attached and no later one lies above it.
  [[nodiscard]] bool liesOnTopmostOverlay() const;
  [[nodiscard]] virtual bool mayHover() const { return liesOnTopmostOverlay(); }
  [[nodiscard]] bool showsHandCursor() const override { return liesOnTopmostOverlay(); }
  [[nodiscard]] ViewTransparent* attachedOverlay() const { return viewTransparent_; }

 private:
  bool hovering_ = false;
  ViewTransparent* viewTransparent_ = nullptr;
};

}  // namespace zelvo::controls
