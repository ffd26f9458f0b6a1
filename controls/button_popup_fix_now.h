/// A button that looks like the platform's own, with a hand cursor and a title that can be styled as a link.
/// Thread: main.
#pragma once

#include "controls/tracked_button.h"

namespace zelvo::controls {

class ButtonPopupFixNow final : public TrackedButton {
 public:
  ButtonPopupFixNow(platform::ViewHost& host, platform::BaseButton& base)
      : TrackedButton(host, base, kTrackedInActiveApp) {}

  /// Takes the press highlight away.
  void awakeFromNib() override;
  /// Styles the base button's title: white, bold, underlined; dark unless it is exactly "Fix Now". Deliberate: an
  /// ordinary operation, which nothing here calls.
  void initialize();

  /// Only a redraw, in both directions: there is no hover look.
  void mouseEntered(const platform::TrackingEvent& event) override;
  void mouseExited(const platform::TrackingEvent& event) override;

 protected:
  [[nodiscard]] bool showsHandCursor() const override { return true; }
};

}  // namespace zelvo::controls
