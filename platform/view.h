/// The two sides of a self-drawn control. The client knows what it looks like and what the pointer does to it; the host
/// is the element of the window that carries it, draws for it and tells it what happens. Coordinates are the view's
/// own: points, from its upper left corner (geometry.h).
/// Thread: main.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/attributed_text.h"
#include "platform/canvas.h"
#include "platform/geometry.h"
#include "platform/tracking.h"

namespace zelvo::platform {

struct MouseEvent {
  Point location;
};

/// What becomes of a mouse event that a client was shown: the carried element does with it what it does by itself (a
/// button is pressed, a plain view lets it through to what lies below), or it goes no further.
enum class MouseEventFate { leftToElement, stopsHere };

/// What the pointer does to a client. Entering and leaving come from tracking areas, or from the client itself.
class PointerClient : public TrackingOwner {
 public:
  [[nodiscard]] virtual MouseEventFate mouseDown(const MouseEvent& event) = 0;
  [[nodiscard]] virtual MouseEventFate mouseDragged(const MouseEvent& event) = 0;
  [[nodiscard]] virtual MouseEventFate mouseUp(const MouseEvent& event) = 0;
  [[nodiscard]] virtual MouseEventFate mouseMoved(const MouseEvent& event) = 0;
  /// The drags that may start here, as a set of bits; 0 allows none. `local` says whether the drop would be inside this
  /// program. Nothing: the element answers for itself.
  [[nodiscard]] virtual std::optional<std::uint32_t> draggingSourceOperationMaskForLocal(bool local) const = 0;
};

/// A self-drawn control. What it does not decide it leaves to its element.
/// Decision: controls, A button is a client, a host and a base
class ViewClient : public PointerClient {
 public:
  /// The interface is complete. Told once, before the first drawing.
  virtual void awakeFromNib() = 0;
  /// Draws the control; `rect` is the part that needs it.
  virtual void drawRect(Canvas& canvas, const Rect& rect) = 0;
  /// The view was shown, moved or resized, or its window became active or inactive: the pointer may be inside or
  /// outside without an event that said so. Never told while a client is being drawn.
  virtual void updateTrackingAreas() = 0;
  /// The cursor rectangles were thrown away; this is the time for `CursorHost::addCursorRect`.
  virtual void resetCursorRects() = 0;
  /// Whether the view takes the keyboard. Nothing: the element answers for itself.
  [[nodiscard]] virtual std::optional<bool> acceptsFirstResponder() const = 0;
};

/// Tells a client's tracking areas about the pointer.
class TrackingHost {
 public:
  virtual ~TrackingHost() = default;
  /// From now on the area's owner is told, under the conditions of its options. Never tells it within the call.
  virtual void addTrackingArea(std::shared_ptr<const TrackingArea> area) = 0;
  virtual void removeTrackingArea(const std::shared_ptr<const TrackingArea>& area) = 0;
  [[nodiscard]] virtual std::vector<std::shared_ptr<const TrackingArea>> trackingAreas() const = 0;
  /// Where the pointer is at this moment, whatever events are still under way. Nothing when the view is in no window or
  /// the display does not tell. // Decision: controls, An unknown pointer is outside
  [[nodiscard]] virtual std::optional<Point> mouseLocationOutsideOfEventStream() const = 0;
};

enum class CursorShape { arrow, pointingHand };

/// Shapes the pointer over a client. Where no rectangle lies it is an arrow; where several lie the last added holds.
class CursorHost {
 public:
  virtual ~CursorHost() = default;
  /// Asks for `ViewClient::resetCursorRects`, which comes at the end of the running drawing, or at once outside of one.
  /// Decision: controls, Cursors follow drawings
  virtual void invalidateCursorRects() = 0;
  virtual void addCursorRect(const Rect& rect, CursorShape shape) = 0;
};

/// Offset in points to the right and downward; the edge is softened over `blurRadius` points.
struct Shadow {
  Colour colour;
  Size offset;
  double blurRadius = 0;
  [[nodiscard]] bool operator==(const Shadow&) const = default;
};

/// Carries a client. What the host draws of the keyboard's focus it draws after the client, so that no fill hides it.
class ViewHost : public TrackingHost, public CursorHost {
 public:
  /// Takes a client over, or none. The former one is released, and its tracking areas and cursor rectangles with it.
  virtual void carry(std::unique_ptr<ViewClient> client) = 0;
  /// Origin (0, 0) and the size of the view.
  [[nodiscard]] virtual Rect bounds() const = 0;
  /// Places the view in what holds it, in that one's coordinates.
  virtual void setFrame(const Rect& frame) = 0;
  /// Asks for a redraw of everything. Nothing is drawn within the call, and asking often draws once.
  virtual void setNeedsDisplay() = 0;
  /// Draws what the element would be without a client: a button's frame, title and image; the movie of a movie view;
  /// nothing of a plain view.
  virtual void drawBase(Canvas& canvas, const Rect& rect) = 0;
  /// Gives the view a layer of its own, which its shadow needs.
  virtual void setWantsLayer(bool wantsLayer) = 0;
  virtual void setShadow(const Shadow& shadow) = 0;
};

/// For `setHighlightsBy`: a press changes nothing.
inline constexpr std::uint32_t kHighlightNone = 0;

/// What a self-drawn button leaves to the platform's own: being pressed and being enabled, the title and the image that
/// `ViewHost::drawBase` shows and a screen reader tells.
class BaseButton : public Button {
 public:
  [[nodiscard]] virtual std::string title() const = 0;
  virtual void setAttributedTitle(const AttributedText& title) = 0;
  /// How a press shows, as a set of bits.
  virtual void setHighlightsBy(std::uint32_t mask) = 0;
  /// From now on `observer` is told when the button is enabled or disabled by whomever, and at once how it is now.
  /// A client that draws that state itself keeps up by it. Thread: main.
  virtual void setEnabledObserver(std::function<void(bool enabled)> observer) = 0;
};

/// Makes a client for `host` and has it carried: the first argument of the client is the host, `more` follow.
/// \return the client, which lives until the host carries another.
template <class Client, class... More>
Client& makeCarried(ViewHost& host, More&&... more) {
  auto client = std::make_unique<Client>(host, std::forward<More>(more)...);
  Client& made = *client;
  host.carry(std::move(client));
  return made;
}

}  // namespace zelvo::platform
