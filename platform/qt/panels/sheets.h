/// Sheets of the window: its panels.
#pragma once

#include "platform/main_queue.h"
#include "platform/qt/panels/panel_stack.h"
#include "platform/sheets.h"

namespace zelvo::platform::qt {

/// Thread: any; calls from workers are taken over to the main thread in order.
/// Lifetime: the stack and the queue outlive it.
class QtSheets final : public Sheets {
 public:
  QtSheets(PanelStack& stack, MainQueue& queue) : stack_(stack), queue_(queue) {}
  void beginSheet(Window& sheet, Window& over, std::function<bool()> stillWanted) override;
  void endSheet(Window& sheet) override;

 private:
  PanelStack& stack_;
  MainQueue& queue_;
};

}  // namespace zelvo::platform::qt
