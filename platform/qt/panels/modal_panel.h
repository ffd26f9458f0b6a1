/// Waiting for the answer of a panel while events are served.
/// Thread: main.
#pragma once

#include <QEventLoop>

#include "platform/qt/panels/panel_frame.h"
#include "platform/qt/panels/panel_stack.h"

namespace zelvo::platform::qt {

/// Whether the program is ending: a modal panel that is still to open does not. Thread: main.
class ModalEnd {
 public:
  virtual ~ModalEnd() = default;
  [[nodiscard]] virtual bool terminated() const = 0;
};

/// Shows `panel` above everything and serves events until `loop` is told to end, by a button of the panel or by the end
/// of the program. Then takes the panel out of the window. A window that is not shown yet is shown for it.
void runModally(PanelStack& stack, PanelFrame& panel, QEventLoop& loop);

}  // namespace zelvo::platform::qt
