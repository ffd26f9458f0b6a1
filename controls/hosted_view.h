/// What every client here starts from: a view that looks and behaves like its element alone.
/// Thread: main.
#pragma once

#include "platform/view.h"

namespace zelvo::controls {

class HostedView : public platform::ViewClient {
 public:
  HostedView(const HostedView&) = delete;
  HostedView& operator=(const HostedView&) = delete;

  void awakeFromNib() override {}
  /// Draws the element's own look.
  void drawRect(platform::Canvas& canvas, const platform::Rect& rect) override;
  void updateTrackingAreas() override {}
  void resetCursorRects() override {}
  [[nodiscard]] std::optional<bool> acceptsFirstResponder() const override { return std::nullopt; }

  void mouseEntered(const platform::TrackingEvent&) override {}
  void mouseExited(const platform::TrackingEvent&) override {}
  [[nodiscard]] platform::MouseEventFate mouseDown(const platform::MouseEvent& event) override;
  [[nodiscard]] platform::MouseEventFate mouseDragged(const platform::MouseEvent& event) override;
  [[nodiscard]] platform::MouseEventFate mouseUp(const platform::MouseEvent& event) override;
  [[nodiscard]] platform::MouseEventFate mouseMoved(const platform::MouseEvent& event) override;
  [[nodiscard]] std::optional<std::uint32_t> draggingSourceOperationMaskForLocal(bool) const override {
    return std::nullopt;
  }

 protected:
  /// `host` carries this view and outlives it.
  explicit HostedView(platform::ViewHost& host) : host_(host) {}
  [[nodiscard]] platform::ViewHost& host() const { return host_; }

 private:
  platform::ViewHost& host_;
};

/// Draws a frame of `width` points that covers the outermost points of `bounds` and nothing outside them. The canvas's
/// colours are afterwards what they were.
void strokeInnerFrame(platform::Canvas& canvas, const platform::Rect& bounds, double width,
                      const platform::Colour& colour);

}  // namespace zelvo::controls
