/// The white, framed background of a result area.
/// Thread: main.
#pragma once

#include "controls/hosted_view.h"

namespace zelvo::controls {

class ViewCleanResult final : public HostedView {
 public:
  explicit ViewCleanResult(platform::ViewHost& host) : HostedView(host) {}
  /// A frame on the outermost 4 points, white inside.
  void drawRect(platform::Canvas& canvas, const platform::Rect& rect) override;
  [[nodiscard]] std::optional<bool> acceptsFirstResponder() const override { return true; }
};

}  // namespace zelvo::controls
