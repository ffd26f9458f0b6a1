/// A button with one tracking area and a hand cursor: the part that five of the six buttons share.
/// Thread: main.
#pragma once

#include <cstdint>
#include <memory>

#include "controls/hosted_view.h"

namespace zelvo::controls {

/// Tracking-area options of the buttons of a panel (545) ...
inline constexpr std::uint32_t kTrackedInKeyWindow =
    platform::kTrackingMouseEnteredAndExited | platform::kTrackingActiveInKeyWindow | platform::kTrackingInVisibleRect;
/// ... and of those that react wherever the program is active (577).
inline constexpr std::uint32_t kTrackedInActiveApp =
    platform::kTrackingMouseEnteredAndExited | platform::kTrackingActiveInActiveApp | platform::kTrackingInVisibleRect;

class TrackedButton : public HostedView {
 public:
  /// Draws the base button, then what `drawLook` adds, and has the cursor rectangles made again, so that the cursor
  /// follows whatever changed the look.
  void drawRect(platform::Canvas& canvas, const platform::Rect& rect) override;
  /// Attaches the tracking area if it is not, and enters or leaves the button according to where the pointer is now.
  void updateTrackingAreas() override;
  /// The pointing hand over the whole bounds, where the class allows it.
  void resetCursorRects() override;
  /// Makes the tracking area if there is none.
  void ensureTrackingArea();

 protected:
  TrackedButton(platform::ViewHost& host, platform::BaseButton& base, std::uint32_t trackingOptions)
      : HostedView(host), base_(base), trackingOptions_(trackingOptions) {}

  [[nodiscard]] platform::BaseButton& base() const { return base_; }
  virtual void drawLook(platform::Canvas& canvas);
  [[nodiscard]] virtual bool showsHandCursor() const = 0;

 private:
  platform::BaseButton& base_;
  std::uint32_t trackingOptions_;
  std::shared_ptr<const platform::TrackingArea> trackingArea_;
};

}  // namespace zelvo::controls
