/// The head of a fixed panel as the logic sees it.
/// Thread: any; calls from workers are taken over to the main thread in order.
#pragma once

#include "platform/main_queue.h"
#include "platform/qt/panels/panel_frame.h"
#include "platform/sheet_head.h"

namespace zelvo::platform::qt {

/// Name of the sign's picture.
[[nodiscard]] const char* pictureOf(SheetSign sign);

class QtSheetHead final : public SheetHead {
 public:
  QtSheetHead(MainQueue& queue, PanelFrame& panel) : queue_(queue), panel_(panel) {}
  void setTitle(std::string_view title) override;
  void setSign(SheetSign sign) override;

 private:
  MainQueue& queue_;
  PanelFrame& panel_;
};

}  // namespace zelvo::platform::qt
