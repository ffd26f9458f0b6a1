/// What a panel needs of what shows it.
/// Thread: main.
#pragma once

#include <QWidget>

#include "platform/main_queue.h"
#include "platform/panel_controls.h"
#include "platform/qt/drawing/pictures.h"

namespace zelvo::platform::qt {

class PanelFrame;

/// Lifetime: outlives its panels.
class PanelOwner {
 public:
  virtual ~PanelOwner() = default;

  /// A panel was given a button.
  virtual void buttonMade(const HostedButton& button) = 0;
  /// The button is about to be destroyed with its panel.
  virtual void buttonDestroyed(const HostedButton& button) = 0;
  /// The panel is about to be destroyed; it may still be shown.
  virtual void panelDestroyed(PanelFrame& panel) = 0;

  virtual void orderOut(PanelFrame& panel) = 0;
  virtual void bringToFront(PanelFrame& panel) = 0;
  /// What the panel holds has changed, and with it the room that it wants.
  virtual void placeAgain(PanelFrame& panel) = 0;

  /// What panels cover and belong to.
  [[nodiscard]] virtual QWidget& content() const = 0;
  [[nodiscard]] virtual MainQueue& queue() const = 0;
  [[nodiscard]] virtual Pictures& pictures() const = 0;
};

}  // namespace zelvo::platform::qt
