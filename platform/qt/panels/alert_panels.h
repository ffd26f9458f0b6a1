/// Alerts as panels of the window.
/// Thread: main.
#pragma once

#include "platform/panels.h"
#include "platform/qt/panels/modal_panel.h"
#include "platform/qt/panels/panel_stack.h"

namespace zelvo::platform::qt {

/// The buttons stand in the order other, alternate, default; the keyboard starts at the default one. The end of the
/// program answers as Esc does, and an alert that is asked for after it is not shown. Alerts may be asked for while
/// others wait.
class QtAlertPanels final : public AlertPanels {
 public:
  QtAlertPanels(PanelStack& stack, const ModalEnd& end) : stack_(stack), end_(end) {}
  int runAlertPanel(const AlertPanel& alert) override;

 private:
  PanelStack& stack_;
  const ModalEnd& end_;
};

}  // namespace zelvo::platform::qt
