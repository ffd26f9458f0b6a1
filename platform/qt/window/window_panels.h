/// The fixed panels of the window, each under its outlet's name.
/// Thread: main.
#pragma once

#include "platform/qt/drawing/elements.h"
#include "platform/qt/panels/panel_frame.h"
#include "platform/qt/panels/panel_stack.h"
#include "platform/qt/panels/sheet_head.h"
#include "platform/qt/window/rejection_text.h"

namespace zelvo::platform::qt {

struct WindowPanels {
  /// They belong to the widget that `stack` lies over.
  explicit WindowPanels(PanelStack& stack);

  PanelFrame& filenotselectedwindow;
  QtButton& filenotselectedokbutton;
  PanelFrame& stoprepairwindow;
  QtButton& stoprepairokbutton;
  QtButton& stoprepaircancelbutton;
  PanelFrame& invalidfilewindow;
  QtSheetHead invalidfilehead;
  QtTextField invalidfiletext;
  QtButton& invalidfileokbutton;
  PanelFrame& filenotsupportedwindow;
  RejectionText rejectionreason;
  QtButton& filenotsupportedokbutton;
  PanelFrame& repaircompletedwindow;
  QtButton& repaircompletedokbutton;
  PanelFrame& saveprogresspanel;
  FlatProgressBar& saveBar;
  QtProgressBar saveprogressbar;
  QtTextField savedbytestext;
  QtButton& stopsavingbutton;
  PanelFrame& stopsavingwindow;
  QtButton& stopsavingOKbutton;
  QtButton& stopsavingCancelbutton;
  PanelFrame& savecompletedwindow;
  QtSheetHead savecompletedhead;
  QtTextField savecompletedtext;
  QtButton& savecompletedokbutton;
  PanelFrame& PreviewErrorWindow;
  QtButton& PreviewErrorokbutton;

  /// True for the panels that tell how something long has ended.
  [[nodiscard]] bool tellsOfAnEnd(const PanelFrame& panel) const;
};

}  // namespace zelvo::platform::qt
