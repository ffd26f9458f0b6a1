/// A picture button of the platform's own whose picture changes at the first crossing of the pointer, for good.
/// Thread: main.
#pragma once

#include <memory>

#include "controls/hosted_view.h"

namespace zelvo::controls {

class ButtonHover final : public HostedView {
 public:
  ButtonHover(platform::ViewHost& host, platform::BaseButton& base) : HostedView(host), base_(base) {}

  /// Replaces the tracking area by a new one, each time.
  void updateTrackingAreas() override;
  void mouseEntered(const platform::TrackingEvent& event) override;
  void mouseExited(const platform::TrackingEvent& event) override;

 private:
  platform::BaseButton& base_;
  std::shared_ptr<const platform::TrackingArea> trackingArea_;
};

}  // namespace zelvo::controls
