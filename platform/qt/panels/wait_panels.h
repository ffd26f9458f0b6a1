/// Notices with a progress bar as panels of the window.
/// Thread: main.
#pragma once

#include "platform/panels.h"
#include "platform/qt/panels/modal_panel.h"
#include "platform/qt/panels/panel_stack.h"

namespace zelvo::platform::qt {

/// Asks ten times a second how far the work is. What has ended already is not shown at all.
class QtWaitPanels final : public WaitPanels {
 public:
  QtWaitPanels(PanelStack& stack, const ModalEnd& end) : stack_(stack), end_(end) {}
  [[nodiscard]] bool runWaitPanel(const WaitPanel& notice) override;

 private:
  PanelStack& stack_;
  const ModalEnd& end_;
};

}  // namespace zelvo::platform::qt
