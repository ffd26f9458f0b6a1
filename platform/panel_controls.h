/// Panels that are shown inside the window, and what is self-drawn about them: their buttons, and the overlay between
/// the window's content and the panel. The window makes the elements and says when; what they look like and what the
/// overlay means to the buttons is decided above.
#pragma once

#include <vector>

#include "platform/geometry.h"
#include "platform/view.h"

namespace zelvo::platform {

/// A button that carries a client: one element, seen as what carries and as what is pressed.
struct HostedButton {
  ViewHost& host;
  BaseButton& base;
};

/// Thread: main.
class PanelControls {
 public:
  virtual ~PanelControls() = default;

  /// A button of a panel was made, with its title, and waits for a client.
  virtual void buttonMade(const HostedButton& button) = 0;
  /// The button is about to go, and its client with it.
  virtual void buttonDestroyed(const HostedButton& button) = 0;

  /// A panel with these buttons is about to be shown above `overlay`, which covers `frame` of the content. Each showing
  /// has an overlay of its own.
  virtual void panelBegins(ViewHost& overlay, const Rect& frame, const std::vector<ViewHost*>& buttons) = 0;
  /// The panel above `overlay` ends, and `overlay` is about to be taken out of the window. It lives on until its panel
  /// begins again or goes.
  virtual void panelEnds(ViewHost& overlay) = 0;
};

}  // namespace zelvo::platform
