/// Hosts whose window, pointer and repaints are the test's. Each writes down what its client asks of it as
/// "name.operation(value)"; the client's drawing lands in the same list of events.
/// Thread: main.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/headless/elements.h"
#include "platform/headless/events.h"
#include "platform/view.h"

namespace zelvo::platform::headless {

enum class MouseEventKind { down, dragged, up, moved };

/// Does nothing by itself: no event, no repaint and no resynchronising that the test did not ask for.
class RecordingViewHost : public ViewHost, public Named {
 public:
  /// `takesMouse`: the element has a use of its own for mouse events, as buttons and movies have and plain views lack.
  RecordingViewHost(std::string name, Events& events, const Rect& frame, bool takesMouse = false);

  void addTrackingArea(std::shared_ptr<const TrackingArea> area) override;
  void removeTrackingArea(const std::shared_ptr<const TrackingArea>& area) override;
  [[nodiscard]] std::vector<std::shared_ptr<const TrackingArea>> trackingAreas() const override { return areas_; }
  [[nodiscard]] std::optional<Point> mouseLocationOutsideOfEventStream() const override { return pointer_; }
  void invalidateCursorRects() override;
  void addCursorRect(const Rect& rect, CursorShape shape) override;
  void carry(std::unique_ptr<ViewClient> client) override;
  [[nodiscard]] Rect bounds() const override { return {0, 0, frame_.width, frame_.height}; }
  void setFrame(const Rect& frame) override;
  void setNeedsDisplay() override;
  void drawBase(Canvas& canvas, const Rect& rect) override;
  void setWantsLayer(bool wantsLayer) override;
  void setShadow(const Shadow& shadow) override;

  /// Draws the part `rect`, the whole without one; at the end come the cursor rectangles, if somebody asked.
  void paint(std::optional<Rect> rect = std::nullopt);
  /// Moves the pointer, in the view's coordinates, and tells the tracking areas when it crosses the bounds.
  void movePointer(std::optional<Point> to);
  /// Lets the pointer be elsewhere without an event, as when the view moves under it.
  void placePointer(std::optional<Point> at) { pointer_ = at; }
  /// Has the client resynchronise, as a window does after showing, moving or resizing a view.
  void resynchronise() const;
  /// Shows a mouse event to the client. \return true when it goes no further, be it by the client or by the element.
  bool deliver(MouseEventKind kind, const Point& at);

  [[nodiscard]] ViewClient* client() const { return client_.get(); }
  [[nodiscard]] Rect frame() const { return frame_; }
  [[nodiscard]] bool needsDisplay() const { return needsDisplay_; }
  [[nodiscard]] CursorShape cursorAt(const Point& point) const;

 private:
  struct CursorRect {
    Rect rect;
    CursorShape shape = CursorShape::arrow;
  };
  void rebuildCursorRects();

  Events& drawing_;
  Rect frame_;
  bool takesMouse_;
  bool needsDisplay_ = false;
  bool isPainting_ = false;
  bool cursorRectsAreInvalid_ = false;
  std::optional<Point> pointer_;
  std::vector<std::shared_ptr<const TrackingArea>> areas_;
  std::vector<CursorRect> cursorRects_;
  std::unique_ptr<ViewClient> client_;
};

/// The platform's own button below a self-drawn one.
class RecordingBaseButton final : public BaseButton, public Named {
 public:
  RecordingBaseButton(std::string name, Events* events) : Named(name, events), element_(std::move(name), events) {}

  void setEnabled(bool enabled) override {
    element_.setEnabled(enabled);
    if (enabledObserver_) enabledObserver_(enabled);
  }
  void setHidden(bool hidden) override { element_.setHidden(hidden); }
  void setState(State state) override { element_.setState(state); }
  [[nodiscard]] State state() const override { return element_.state(); }
  void setImage(std::string_view name) override { element_.setImage(name); }
  [[nodiscard]] std::string title() const override { return title_.text(); }
  void setAttributedTitle(const AttributedText& title) override;
  void setHighlightsBy(std::uint32_t mask) override;
  void setEnabledObserver(std::function<void(bool enabled)> observer) override {
    enabledObserver_ = std::move(observer);
    if (enabledObserver_) enabledObserver_(element_.isEnabled());
  }

  [[nodiscard]] const HeadlessButton& element() const { return element_; }
  [[nodiscard]] const AttributedText& attributedTitle() const { return title_; }
  /// A title without looks, as an interface gives it.
  void setTitle(std::string title) { title_ = {{{std::move(title), {}}}}; }

 private:
  HeadlessButton element_;
  AttributedText title_;
  std::function<void(bool enabled)> enabledObserver_;
};

/// Hosts one above the other, the lowest first, in the coordinates of their frames.
class HostPile {
 public:
  void add(RecordingViewHost& host) { hosts_.push_back(&host); }
  void remove(const RecordingViewHost& host);
  /// Gives a mouse event to the highest host below the point, and to the next lower one while nobody stops it.
  void deliver(MouseEventKind kind, const Point& at) const;

 private:
  std::vector<RecordingViewHost*> hosts_;
};

}  // namespace zelvo::platform::headless
