/// The movie view of the preview: no drag starts in it, and a press neither starts nor stops the movie. Only the
/// application plays.
/// Thread: main.
#pragma once

#include "controls/hosted_view.h"

namespace zelvo::controls {

class NoDragMovieView final : public HostedView {
 public:
  /// `host` carries the movie itself as its element.
  explicit NoDragMovieView(platform::ViewHost& host) : HostedView(host) {}
  /// draggingSourceOperationMaskForLocal: 0 inside the program and outside of it, which allows no drag.
  [[nodiscard]] std::optional<std::uint32_t> draggingSourceOperationMaskForLocal(bool) const override { return 0U; }
  [[nodiscard]] platform::MouseEventFate mouseDown(const platform::MouseEvent& event) override;
  [[nodiscard]] platform::MouseEventFate mouseDragged(const platform::MouseEvent& event) override;
  [[nodiscard]] platform::MouseEventFate mouseUp(const platform::MouseEvent& event) override;
};

}  // namespace zelvo::controls
