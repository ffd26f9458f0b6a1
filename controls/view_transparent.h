/// The see-through overlay that lies over the window's content while a panel is shown inside the window. It swallows
/// the mouse, and it knows how many later overlays lie above it: the buttons of its panel light up only when there are
/// none.
/// Thread: main.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "controls/hosted_view.h"
#include "platform/notification_centre.h"

namespace zelvo::controls {

/// Posted by a new overlay, with itself as the object: it lies above all there are.
inline constexpr std::string_view kViewTransparentAdded = "ViewTransparent added";
/// Posted for an overlay that is about to go, with it as the object.
inline constexpr std::string_view kViewTransparentRemoved = "ViewTransparent removed";

class ViewTransparent final : public HostedView, public platform::NotificationSender {
 public:
  /// initWithFrame: places the view, gives it its shadow and announces it. `centre` must outlive the overlay.
  /// \return the overlay, which `host` is to carry; nothing without a host to place, and nothing is announced then.
  [[nodiscard]] static std::unique_ptr<ViewTransparent> initWithFrame(const platform::Rect& frame,
                                                                      platform::ViewHost* host,
                                                                      platform::NotificationCentre& centre);
  /// Stops observing. Deliberate: announces no removal; whoever takes the overlay down does that before.
  ~ViewTransparent() override;

  /// Overlays that were made after this one and have not announced their removal; below 0 when they went in the wrong
  /// order.
  [[nodiscard]] std::int32_t viewsOverlaidCount() const { return viewsOverlaidCount_; }
  /// setviewsOverlaidCount: with its small v.
  void setviewsOverlaidCount(std::int32_t count) { viewsOverlaidCount_ = count; }

  /// viewTransparentAddedNote: counts an overlay that is not this one.
  void viewTransparentAddedNote(const platform::Notification& note);
  /// viewTransparentRemovedNote: counts one less for an overlay that is not this one.
  void viewTransparentRemovedNote(const platform::Notification& note);
  /// To be called before the overlay is taken out of the window.
  void postRemovedNotification();

  [[nodiscard]] std::optional<bool> acceptsFirstResponder() const override { return true; }
  [[nodiscard]] platform::MouseEventFate mouseDown(const platform::MouseEvent& event) override;
  [[nodiscard]] platform::MouseEventFate mouseDragged(const platform::MouseEvent& event) override;
  [[nodiscard]] platform::MouseEventFate mouseUp(const platform::MouseEvent& event) override;
  [[nodiscard]] platform::MouseEventFate mouseMoved(const platform::MouseEvent& event) override;

 private:
  ViewTransparent(platform::ViewHost& host, platform::NotificationCentre& centre);

  platform::NotificationCentre& centre_;
  std::int32_t viewsOverlaidCount_ = 0;
};

/// The count of an overlay that may be absent: 0 without one.
[[nodiscard]] inline std::int32_t viewsOverlaidCountOf(const ViewTransparent* overlay) {
  return overlay == nullptr ? 0 : overlay->viewsOverlaidCount();
}

}  // namespace zelvo::controls
