/// Notices with a progress bar as panels of the window.
/// Thread: main.
#pragma once

#include "platform/panels.h"
#include "platform/qt/panel_stack.h"
#include "platform/qt/qt_application.h"

namespace zelvo::platform::qt {

/// Asks ten times a second how far the work is. What has ended already is not shown at all.
class QtWaitPanels final : public WaitPanels {
 public:
  QtWaitPanels(PanelStack& stack, const QtApplication& application) : stack_(stack), application_(application) {}
  [[nodiscard]] bool runWaitPanel(const WaitPanel& notice) override;

 private:
  PanelStack& stack_;
  const QtApplication& application_;
};

}  // namespace zelvo::platform::qt
